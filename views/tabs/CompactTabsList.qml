// A browser's tabs below its row in the popover: closed at first, eight rows at most.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property TabListModel tabs
    property bool expanded: false

    readonly property real sidePadding: 28
    readonly property real topPadding: 2
    readonly property real bottomPadding: expanded ? 4 : 6
    readonly property real rowHeight: 20
    readonly property real tileSide: 14
    // How far the ground of a tab reaches beyond its tile and its title.
    readonly property real tileInset: 3

    implicitHeight: topPadding + header.height + body.height + bottomPadding

    TabsHeader {
        id: header

        x: root.sidePadding
        y: root.topPadding
        height: Math.max(14, implicitHeight)
        text: root.tabs.countText
        expanded: root.expanded
        onClicked: root.expanded = !root.expanded
    }

    Item {
        id: body

        anchors.top: header.bottom
        x: root.sidePadding
        width: root.width - 2 * root.sidePadding
        height: root.expanded ? rows.implicitHeight : 0
        visible: height > 0
        clip: height < rows.implicitHeight
        Behavior on height {
            EaseOut { seconds: 0.15 }
        }

        Column {
            id: rows

            width: parent.width

            Repeater {
                model: root.expanded || body.height > 0 ? root.tabs : null

                PlainButton {
                    id: tab

                    required property int index
                    required property string title
                    required property string letter
                    required property bool active

                    width: rows.width
                    height: root.rowHeight
                    // Not the button's text, where an ampersand makes a shortcut of the letter behind it.
                    Accessible.name: title
                    onClicked: root.tabs.activate(index)

                    background: Item {
                        Rectangle {
                            anchors.fill: parent
                            anchors.leftMargin: -root.tileInset
                            anchors.rightMargin: -root.tileInset
                            radius: Tokens.spacing.xs
                            color: tab.hovered ? Tokens.cardBGHover : Tokens.clear
                        }
                    }

                    TabTile {
                        id: tile

                        anchors.verticalCenter: parent.verticalCenter
                        side: root.tileSide
                        letterSize: 7
                        letter: tab.letter
                        active: tab.active
                    }

                    Label {
                        anchors.left: tile.right
                        anchors.leftMargin: 6
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        text: tab.title
                        font: Tokens.face(10)
                        color: tab.active ? Tokens.textPrimary : Tokens.textSecondary
                        horizontalAlignment: Text.AlignLeft
                        Accessible.ignored: true
                    }
                }
            }

            Label {
                topPadding: 1
                bottomPadding: 1
                visible: text.length > 0
                text: root.tabs.moreText
                font: Tokens.face(9)
                color: Tokens.textTertiary
            }
        }
    }
}
