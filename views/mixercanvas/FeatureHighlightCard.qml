// A feature and its present state.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string icon
    required property color accent
    required property string title
    required property string description
    // What the feature does now, in a word or two.
    required property string stateText
    required property bool isActive

    readonly property bool hovering: pointer.hovered
    readonly property real leastHeight: 150
    readonly property real tileSide: 38
    readonly property real tileFill: 0.16
    readonly property real restFill: 0.035
    readonly property real hoverFill: 0.05
    readonly property real hoverScale: 1.003
    readonly property real gap: 12
    // From 0 at rest to 1 while hovered.
    property real lift: hovering ? 1 : 0

    implicitHeight: Math.max(leastHeight, words.implicitHeight + 2 * Tokens.spacing.l)
    scale: 1 + (hoverScale - 1) * lift

    Behavior on lift {
        Spring {
            response: 0.25
            dampingFraction: 0.9
        }
    }

    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: stateText

    HoverHandler {
        id: pointer
    }

    Elevated {
        anchors.fill: parent
        corner: Tokens.corner.tile
        elevation: Tokens.elevation.resting
        opacity: 1 - root.lift
    }

    Elevated {
        anchors.fill: parent
        corner: Tokens.corner.tile
        elevation: Tokens.elevation.hover
        opacity: root.lift
        visible: opacity > 0
    }

    Panel {
        objectName: "ground"
        anchors.fill: parent
        radius: Tokens.corner.tile
        color: Tokens.alpha(Tokens.white, root.restFill + (root.hoverFill - root.restFill) * root.lift)
        stroke: Qt.tint(Tokens.cardStroke, Tokens.alpha(Tokens.cardStrokeHover, root.lift))
    }

    Column {
        id: words

        x: Tokens.spacing.l
        y: Tokens.spacing.l
        width: parent.width - 2 * x
        spacing: root.gap

        Item {
            width: parent.width
            height: tile.height

            Rectangle {
                id: tile

                objectName: "tile"
                width: root.tileSide
                height: root.tileSide
                radius: Tokens.corner.card
                color: Tokens.alpha(root.accent, root.tileFill)

                Symbol {
                    anchors.centerIn: parent
                    name: root.icon
                    pointSize: 16
                    color: root.accent
                }
            }

            StatusTag {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: root.stateText
                accent: root.isActive ? root.accent : Tokens.textSecondary
            }
        }

        Column {
            width: parent.width
            spacing: 4

            Paragraph {
                width: parent.width
                text: root.title
                font: Tokens.cardTitle
                color: Tokens.textPrimary
            }

            Paragraph {
                width: parent.width
                text: root.description
                font: Tokens.face(12)
                color: Tokens.textSecondary
            }
        }
    }
}
