// An entry of a presenter's menu, or a divider between entries.
import QtQuick
import Quillmere.Design

DropMenuItem {
    id: root

    required property int index
    required property string title
    required property bool divider
    required checked

    readonly property real dividerHeight: 9

    text: title
    enabled: !divider
    activeFocusOnTab: !divider
    implicitHeight: divider ? dividerHeight : lineHeight

    Accessible.ignored: divider

    Hairline {
        anchors.verticalCenter: parent.verticalCenter
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Tokens.spacing.s
        anchors.rightMargin: Tokens.spacing.s
        visible: root.divider
        color: Tokens.cardStrokeHover
    }
}
