// A line at the sidebar's end that tells what goes on; without a text it takes no room.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string text
    property bool compact: false
    default property alias mark: box.data

    readonly property real markBox: 22
    readonly property real gap: 8
    readonly property real lineHeight: 22

    visible: text.length > 0
    implicitHeight: lineHeight

    Item {
        id: box

        x: Tokens.spacing.s
        width: root.markBox
        height: parent.height
    }

    Label {
        anchors.left: box.right
        anchors.leftMargin: root.gap
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: !root.compact
        text: root.text
        font: Tokens.caption1
        color: Tokens.textSecondary
        horizontalAlignment: Text.AlignLeft
    }
}
