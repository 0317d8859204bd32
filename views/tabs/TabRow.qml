// One open tab: its letter, its title, whether it is the current one.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    required property string title
    required property string letter
    required property bool active

    readonly property real gap: 8
    readonly property real tagOpacity: 0.12

    implicitHeight: 28
    horizontalPadding: 10
    verticalPadding: 5
    // Not the button's text, where an ampersand makes a shortcut of the letter behind it.
    Accessible.name: title
    Accessible.description: active ? qsTr("active") : ""

    background: Rectangle {
        radius: Tokens.corner.chip
        color: Tokens.cardBGHover
        opacity: root.hovered ? 1 : 0
        Behavior on opacity {
            EaseOut { seconds: 0.12 }
        }
    }

    Item {
        x: root.leftPadding
        y: root.topPadding
        width: root.availableWidth
        height: root.availableHeight

        TabTile {
            id: tile

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            letter: root.letter
            active: root.active
        }

        Label {
            anchors.left: tile.right
            anchors.leftMargin: root.gap
            anchors.right: tag.left
            anchors.rightMargin: root.active ? root.gap : 0
            anchors.verticalCenter: parent.verticalCenter
            text: root.title
            font: Tokens.face(12)
            color: root.active ? Tokens.textPrimary : Tokens.textSecondary
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }

        Rectangle {
            id: tag

            anchors.right: arrow.left
            anchors.rightMargin: arrow.visible ? root.gap : 0
            anchors.verticalCenter: parent.verticalCenter
            visible: root.active
            width: visible ? word.implicitWidth + 12 : 0
            height: word.implicitHeight + 4
            radius: height / 2
            color: Tokens.alpha(Tokens.brandSage, root.tagOpacity)

            Label {
                id: word

                anchors.centerIn: parent
                text: qsTr("active")
                font: Tokens.face(9, Font.Medium)
                color: Tokens.brandSage
                Accessible.ignored: true
            }
        }

        Symbol {
            id: arrow

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: root.hovered
            width: visible ? implicitWidth : 0
            name: "arrow.up.right"
            pointSize: 9
            weight: Font.Medium
            color: Tokens.textTertiary
        }
    }
}
