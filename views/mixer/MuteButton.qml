// Mutes an application, or lets it be heard again.
import QtQuick
import Quillmere.Design
import Quillmere.Views

SubtleIconButton {
    id: root

    required property AppRowPresenter row

    text: qsTr("%1 %2", "Mute Spotify").arg(row.muteTip).arg(row.name)
    tip: row.muteTip
    symbol: row.muteSymbol
    symbolSize: 10
    color: Tokens[row.muteColor]
    onClicked: root.row.toggleMute()
}
