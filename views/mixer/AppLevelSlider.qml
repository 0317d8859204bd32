// The slider of an application's level.
import QtQuick
import Quillmere.Design
import Quillmere.Views

LevelSlider {
    id: root

    required property AppRowPresenter row

    label: row.name
    value: row.gain
    isLive: row.live
    isDucked: row.ducked
    isMuted: row.muted
    scrollRule: row.scrollAdjusts ? SliderHandle.Forward : SliderHandle.PassOn
    onMoved: (value) => root.row.setGain(value)
    onScrollDelta: (delta) => root.row.scrollBy(delta)
}
