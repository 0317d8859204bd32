// The application that may keep playing during focus, chosen by its icon.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Column {
    id: root

    required property FocusCanvasPresenter presenter

    readonly property real cellGap: Tokens.spacing.m
    readonly property real fadeWidth: 32
    // Around the cells, for what reaches beyond them: their rings.
    readonly property real cellEdge: Tokens.spacing.xs
    // A tile is narrower than its cell; the first one stands under the words.
    readonly property real tileInset: Tokens.spacing.xs
    // What the card behind looks like over the canvas.
    readonly property color ground: Qt.tint(Tokens.canvasBG, Tokens.cardBG)

    spacing: Tokens.spacing.m

    Column {
        width: parent.width
        spacing: 2

        Label {
            width: parent.width
            text: qsTr("Keep this app playing during focus")
            font: Tokens.bodyEmphasis
            Accessible.role: Accessible.Heading
        }

        Paragraph {
            width: parent.width
            text: qsTr("Click an app icon to keep it playing. Click again to clear. Add any app — it doesn't have to be running.")
            objectName: "help"
            font: Tokens.caption1
            color: Tokens.textSecondary
        }
    }

    Item {
        width: parent.width
        height: row.height

        Flickable {
            id: strip

            readonly property real last: Math.max(0, contentWidth - width)

            function reveal(cell: Item): void {
                const at = cell.mapToItem(row, 0, 0).x;
                contentX = Math.max(Math.min(contentX, at), at + cell.width + 2 * root.cellEdge - width);
            }

            objectName: "strip"
            x: -root.tileInset - root.cellEdge
            y: -root.cellEdge
            width: parent.width - 2 * x
            height: row.height + 2 * root.cellEdge
            contentWidth: row.width + 2 * root.cellEdge
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentWidth > width
            clip: interactive

            Row {
                id: row

                objectName: "cells"
                x: root.cellEdge
                y: root.cellEdge
                spacing: root.cellGap

                Accessible.role: Accessible.List
                Accessible.name: qsTr("Keep this app playing during focus")

                Repeater {
                    model: root.presenter.cells

                    FocusAppCell {
                        onTapped: root.presenter.cells.tap(index)
                        onRemoveAsked: root.presenter.cells.remove(index)
                        onActiveFocusChanged: if (activeFocus) strip.reveal(this)
                    }
                }

                AddFocusAppCell {
                    onClicked: root.presenter.addApp()
                    onActiveFocusChanged: if (activeFocus) strip.reveal(this)
                }
            }

            // A wheel that only goes up and down moves the row where it is longer than its place.
            WheelHandler {
                enabled: strip.interactive
                orientation: Qt.Vertical
                acceptedDevices: PointerDevice.Mouse
                onWheel: (event) => {
                    strip.contentX = Math.max(0, Math.min(strip.last, strip.contentX - event.angleDelta.y / 2));
                }
            }
        }

        // More cells lie beyond the edges.
        Rectangle {
            objectName: "moreBefore"
            x: strip.x
            width: root.fadeWidth
            height: strip.height
            visible: strip.contentX > 0.5
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop {
                    position: 0
                    color: root.ground
                }
                GradientStop {
                    position: 1
                    color: Tokens.alpha(root.ground, 0)
                }
            }
        }

        Rectangle {
            objectName: "moreBehind"
            anchors.right: strip.right
            width: root.fadeWidth
            height: strip.height
            visible: strip.contentX < strip.last - 0.5
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop {
                    position: 0
                    color: Tokens.alpha(root.ground, 0)
                }
                GradientStop {
                    position: 1
                    color: root.ground
                }
            }
        }
    }
}
