// Takes everything down to a whisper, and back.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    required property bool on

    readonly property real corner: 9
    readonly property real gap: 6
    readonly property color contentColor: on ? Tokens.white : Tokens.textPrimary

    horizontalPadding: 12
    verticalPadding: 7
    focusCorner: corner
    tip: qsTr("Fades every app down to a whisper. One more tap brings everything back.")

    background: Item {
        GradientFill {
            anchors.fill: parent
            radius: root.corner
            visible: root.on
        }

        Panel {
            anchors.fill: parent
            radius: root.corner
            color: root.on ? Tokens.clear : root.hovered ? Tokens.cardBGHover : Tokens.cardBG
            stroke: root.on ? Tokens.alpha(Tokens.brandSage, 0.4) : Tokens.cardStroke
        }
    }

    contentItem: Row {
        spacing: root.gap

        ShushIcon {
            anchors.verticalCenter: parent.verticalCenter
            size: 13
            color: root.contentColor
            Accessible.ignored: true
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font: Tokens.face(12, Font.Medium)
            color: root.contentColor
            Accessible.ignored: true
        }
    }
}
