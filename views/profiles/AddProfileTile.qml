// The tile that saves the present mixer as a new profile.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    readonly property real tileSide: 36

    text: qsTr("New profile")
    tip: ""
    horizontalPadding: Tokens.spacing.s
    verticalPadding: Tokens.spacing.s
    focusCorner: Tokens.corner.card

    Accessible.description: line.text

    background: Rectangle {
        radius: Tokens.corner.card
        color: root.hovered ? Tokens.cardBGHover : Tokens.clear
    }

    contentItem: Item { // qmllint disable deferred-property-id
        implicitHeight: root.tileSide

        Item {
            id: tile

            width: root.tileSide
            height: root.tileSide
            anchors.verticalCenter: parent.verticalCenter

            DashedBorder {
                anchors.fill: parent
                radius: Tokens.spacing.s
                color: root.hovered ? Tokens.textSecondary : Tokens.textTertiary
            }

            Symbol {
                anchors.centerIn: parent
                name: "plus"
                pointSize: 14
                color: Tokens.textSecondary
            }
        }

        Column {
            anchors.left: tile.right
            anchors.leftMargin: Tokens.spacing.m
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1

            Label {
                width: parent.width
                text: root.text
                font: Tokens.bodyEmphasis
                Accessible.ignored: true
            }

            Label {
                id: line

                width: parent.width
                text: qsTr("Capture the current mixer")
                font: Tokens.caption1
                color: Tokens.textTertiary
                Accessible.ignored: true
            }
        }
    }
}
