// The saved profiles: a click applies one.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Card {
    id: root

    required property ProfileListModel list

    readonly property real rowHeight: 36
    readonly property real iconSide: 24

    title: qsTr("Profiles")

    Column {
        width: parent.width
        spacing: 2

        Repeater {
            model: root.list

            Item {
                id: entry

                required property int index
                required property string name
                required property string sizeText
                required property bool active

                readonly property bool showsControls: pointer.hovered || copy.visualFocus || bin.visualFocus

                width: parent.width
                height: root.rowHeight

                HoverHandler {
                    id: pointer
                }

                PlainButton {
                    anchors.fill: parent
                    anchors.leftMargin: -Tokens.spacing.s
                    anchors.rightMargin: -Tokens.spacing.s
                    text: qsTr("Apply %1").arg(entry.name)
                    onClicked: root.list.apply(entry.index)
                    background: Rectangle {
                        radius: Tokens.corner.chip
                        color: entry.active ? Tokens.cardBGSelected : pointer.hovered ? Tokens.cardBGHover : Tokens.clear
                    }
                }

                Symbol {
                    id: stack

                    anchors.verticalCenter: parent.verticalCenter
                    name: entry.active ? "checkmark" : "rectangle.stack"
                    pointSize: 12
                    weight: Font.Medium
                    width: 16
                    color: entry.active ? Tokens.brandSage : Tokens.textSecondary
                }

                Label {
                    anchors.left: stack.right
                    anchors.leftMargin: Tokens.spacing.s
                    anchors.right: controls.left
                    anchors.rightMargin: Tokens.spacing.s
                    anchors.verticalCenter: parent.verticalCenter
                    text: entry.name
                    font: Tokens.face(12, Font.Medium)
                    horizontalAlignment: Text.AlignLeft
                    Accessible.ignored: true
                }

                Label {
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: entry.sizeText
                    font: Tokens.caption1
                    color: Tokens.textTertiary
                    opacity: entry.showsControls ? 0 : 1
                }

                Row {
                    id: controls

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    opacity: entry.showsControls ? 1 : 0

                    SubtleIconButton {
                        id: copy

                        text: qsTr("Duplicate %1").arg(entry.name)
                        tip: qsTr("Duplicate")
                        symbol: "plus"
                        symbolSize: 10
                        onClicked: root.list.duplicate(entry.index)
                    }

                    SubtleIconButton {
                        id: bin

                        text: qsTr("Delete %1").arg(entry.name)
                        tip: qsTr("Delete")
                        symbol: "trash"
                        symbolSize: 10
                        onClicked: root.list.remove(entry.index)
                    }
                }
            }
        }
    }

    GhostButton {
        text: qsTr("Save current as new profile…")
        symbol: "plus"
        onClicked: root.list.saveCurrent()
    }
}
