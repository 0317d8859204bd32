// A list of applications in one paragraph, cut after a few lines; all of them stand in the tip.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design

Column {
    id: root

    required property string title
    required property string countText
    required property string names

    readonly property int mostLines: 3

    spacing: 2

    Item {
        width: parent.width
        height: heading.implicitHeight

        Label {
            id: heading

            anchors.left: parent.left
            anchors.right: count.left
            text: root.title
            font: Tokens.face(12)
            color: Tokens.textSecondary
        }

        Label {
            id: count

            anchors.right: parent.right
            text: root.countText
            font: Tokens.caption1
            color: Tokens.textTertiary
        }
    }

    Label {
        id: paragraph

        width: parent.width
        visible: text.length > 0
        text: root.names
        font: Tokens.caption1
        color: Tokens.textTertiary
        wrapMode: Text.Wrap
        maximumLineCount: root.mostLines

        HoverHandler {
            id: pointer

            enabled: paragraph.truncated
        }

        ToolTip {
            parent: paragraph
            text: paragraph.text
            visible: pointer.hovered
        }
    }
}
