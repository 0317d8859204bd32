// Tells that a call turns music down. It slides in from above and out again.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property bool shown
    required property string text

    readonly property real fillOpacity: 0.08
    readonly property real gap: 8

    implicitHeight: shown ? strip.height : 0
    opacity: shown ? 1 : 0
    visible: implicitHeight > 0 || opacity > 0
    clip: implicitHeight < strip.height

    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Behavior on implicitHeight {
        Spring {
            response: 0.35
            dampingFraction: 0.85
        }
    }
    Behavior on opacity {
        Spring {
            response: 0.35
            dampingFraction: 0.85
        }
    }

    Rectangle {
        id: strip

        y: root.height - height
        width: root.width
        height: words.implicitHeight + 2 * Tokens.spacing.s
        color: Tokens.alpha(Tokens.brandSage, root.fillOpacity)

        Symbol {
            id: badge

            anchors.left: parent.left
            anchors.leftMargin: Tokens.spacing.l
            anchors.verticalCenter: parent.verticalCenter
            name: "waveform.badge.minus"
            pointSize: 11
            weight: Font.Medium
            color: Tokens.brandSage
        }

        Label {
            id: words

            anchors.left: badge.right
            anchors.leftMargin: root.gap
            anchors.right: parent.right
            anchors.rightMargin: Tokens.spacing.l
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font: Tokens.caption1
            color: Tokens.textSecondary
            Accessible.ignored: true
        }
    }
}
