// Mutes an application, or lets it be heard again.
import QtQuick
import Quillmere.Design
import Quillmere.Views

SubtleIconButton {
    id: root

    required property AppRowPresenter row

    text: (row.muted ? qsTr("Unmute %1") : qsTr("Mute %1")).arg(row.name)
    tip: row.muteTip
    symbol: row.muteSymbol
    symbolSize: 10
    color: Tokens[row.muteColor]
    onClicked: root.row.toggleMute()
}
