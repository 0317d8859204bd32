// A browser: whether its companion is connected, and the button that makes that possible or takes it back.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string name
    required property string status
    required property bool isConnected
    required property string action

    signal acted

    implicitHeight: Math.max(words.implicitHeight, button.implicitHeight)

    Column {
        id: words

        anchors.left: parent.left
        anchors.right: button.left
        anchors.rightMargin: Tokens.spacing.l
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: root.name
            font: Tokens.bodyEmphasis
        }

        Paragraph {
            objectName: "status"
            width: parent.width
            text: root.status
            font: Tokens.caption1
            color: root.isConnected ? Tokens.systemGreen : Tokens.textTertiary
        }
    }

    GhostButton {
        id: button

        objectName: "action"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: root.action !== ""
        text: root.action
        onClicked: root.acted()
        Accessible.description: root.name
    }
}
