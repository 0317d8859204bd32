// One of Auto-Duck's lists of applications.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Surface {
    id: root

    required property string title
    required property string subtitle
    required property string addLabel
    required property DuckListModel apps

    signal add()

    Column {
        width: parent.width
        spacing: Tokens.spacing.m

        Item {
            width: parent.width
            height: words.height

            Column {
                id: words

                anchors.left: parent.left
                anchors.right: count.left
                anchors.rightMargin: Tokens.spacing.l
                spacing: 2

                Label {
                    width: parent.width
                    text: root.title
                    font: Tokens.cardTitle
                    Accessible.role: Accessible.Heading
                }

                Paragraph {
                    width: parent.width
                    text: root.subtitle
                    font: Tokens.caption1
                    color: Tokens.textSecondary
                }
            }

            Label {
                id: count

                objectName: "count"
                anchors.right: parent.right
                text: root.apps.countText
                font: Tokens.face(12, Font.Medium)
                color: Tokens.textSecondary
            }
        }

        Column {
            id: rows

            width: parent.width
            visible: root.apps.count > 0 // qmllint disable

            Accessible.role: Accessible.List
            Accessible.name: root.title

            Repeater {
                model: root.apps

                DuckAppRow {
                    width: rows.width
                    onToggled: (on) => root.apps.setOn(index, on)
                }
            }

            move: Transition {
                EaseOut {
                    property: "y"
                    seconds: 0.2
                }
            }
        }

        GhostButton {
            objectName: "add"
            text: root.addLabel
            symbol: "plus"
            onClicked: root.add()
        }
    }
}
