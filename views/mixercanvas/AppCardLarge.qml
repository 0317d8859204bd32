// One application in the main window: icon, name, level, output and mute.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property AppRowPresenter row
    // Whether something joins the card below.
    property bool flatBottom: false

    readonly property bool hovering: pointer.hovered
    readonly property real rowHeight: 72
    readonly property real iconSide: 38
    readonly property real nameWidth: 180
    readonly property real percentWidth: 72
    readonly property real slotWidth: 60
    readonly property real gap: Tokens.spacing.m
    readonly property real hoverSeconds: 0.15

    implicitHeight: rowHeight

    Accessible.role: Accessible.ListItem
    Accessible.name: row.name
    Accessible.description: row.toolTip

    HoverHandler {
        id: pointer
    }

    UnevenPanel {
        objectName: "ground"
        anchors.fill: parent
        flatBottom: root.flatBottom
        color: root.hovering ? Tokens.cardBGHover : Tokens.cardBG
        stroke: root.hovering ? Tokens.cardStrokeHover : Tokens.cardStroke

        Behavior on color {
            EaseOutColor { seconds: root.hoverSeconds }
        }
        Behavior on stroke {
            EaseOutColor { seconds: root.hoverSeconds }
        }
    }

    Item {
        objectName: "content"
        anchors.fill: parent
        anchors.leftMargin: Tokens.spacing.l
        anchors.rightMargin: Tokens.spacing.l
        opacity: root.row.muted ? Tokens.mutedRow : 1

        AppIcon {
            id: icon

            anchors.verticalCenter: parent.verticalCenter
            side: root.iconSide
            tileSymbolSize: 16
            source: root.row.iconSource
        }

        Column {
            id: words

            anchors.left: icon.right
            anchors.leftMargin: root.gap
            anchors.verticalCenter: parent.verticalCenter
            width: root.nameWidth
            spacing: 2

            Item {
                width: parent.width
                height: nameLabel.implicitHeight

                NameLabel {
                    id: nameLabel

                    objectName: "name"
                    width: Math.min(implicitWidth, parent.width - pulse.width - Tokens.spacing.s - pulse.haloExtra / 2)
                    text: root.row.name
                    font: Tokens.bodyEmphasis
                    Accessible.ignored: true
                }

                LivePulse {
                    id: pulse

                    objectName: "pulse"
                    anchors.left: nameLabel.right
                    anchors.leftMargin: Tokens.spacing.s
                    anchors.verticalCenter: nameLabel.verticalCenter
                    size: 6
                    color: Tokens.brandCoral
                    opacity: root.row.live ? 1 : 0
                    Behavior on opacity {
                        EaseOut { seconds: 0.18 }
                    }
                }
            }

            NameLabel {
                objectName: "subtitle"
                width: parent.width
                text: root.row.cardSubtitle
                font: Tokens.caption1
                color: Tokens.textTertiary
            }
        }

        AppLevelSlider {
            anchors.left: words.right
            anchors.leftMargin: root.gap
            anchors.right: percent.left
            anchors.rightMargin: root.gap
            anchors.verticalCenter: parent.verticalCenter
            height: 20
            row: root.row
        }

        Item {
            id: percent

            anchors.right: slot.left
            anchors.rightMargin: root.gap
            anchors.verticalCenter: parent.verticalCenter
            width: root.percentWidth
            height: figures.implicitHeight

            Figures {
                id: figures

                objectName: "percent"
                anchors.right: parent.right
                text: root.row.percentText
                font: Tokens.face(13, Font.Medium)
                color: Tokens[root.row.cardPercentColor]
            }
        }

        Item {
            id: slot

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: root.slotWidth
            height: mute.height

            Row {
                anchors.right: parent.right
                spacing: 4

                RouteButton {
                    row: root.row
                    side: 24
                    symbolSize: 12
                }

                MuteButton {
                    id: mute

                    row: root.row
                }
            }
        }
    }
}
