// Tells that a newer version can be had. It stays for as long as that is so.
import QtQuick
import Quillmere.Design

Item {
    id: root

    // Empty where there is nothing to tell.
    required property string text
    readonly property bool shown: text.length > 0

    readonly property real gap: 8
    readonly property real buttonFill: 0.2

    signal update

    implicitHeight: shown ? button.height + 2 * Tokens.spacing.s : 0
    visible: shown

    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    GradientFill {
        anchors.fill: parent
    }

    Symbol {
        id: arrow

        anchors.left: parent.left
        anchors.leftMargin: Tokens.spacing.l
        anchors.verticalCenter: parent.verticalCenter
        name: "arrow.down.circle.fill"
        pointSize: 13
        color: Tokens.white
    }

    Label {
        anchors.left: arrow.right
        anchors.leftMargin: root.gap
        anchors.right: button.left
        anchors.rightMargin: root.gap
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        font: Tokens.face(12, Font.Medium)
        color: Tokens.white
        horizontalAlignment: Text.AlignLeft
        Accessible.ignored: true
    }

    PlainButton {
        id: button

        anchors.right: parent.right
        anchors.rightMargin: Tokens.spacing.l
        anchors.verticalCenter: parent.verticalCenter
        horizontalPadding: 10
        verticalPadding: 4
        focusCorner: height / 2
        text: qsTr("Update")
        onClicked: root.update()

        background: Rectangle {
            radius: height / 2
            color: Tokens.alpha(Tokens.white, root.buttonFill)
        }

        contentItem: Label {
            text: button.text
            font: Tokens.face(12, Font.Medium)
            color: Tokens.white
            Accessible.ignored: true
        }
    }
}
