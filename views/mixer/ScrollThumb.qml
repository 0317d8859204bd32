// Shows where in a longer list one is. Place it beside or over the list.
import QtQuick
import Quillmere.Design

Rectangle {
    id: root

    required property Flickable list

    readonly property real thickness: 4
    readonly property real shortest: 24
    readonly property real share: list.contentHeight > 0 ? Math.min(1, list.height / list.contentHeight) : 1
    readonly property real travel: list.contentHeight > list.height
        ? Math.max(0, Math.min(1, (list.contentY - list.originY) / (list.contentHeight - list.height))) : 0

    anchors.right: list.right
    anchors.rightMargin: 2
    y: list.y + travel * (list.height - height)
    width: thickness
    height: Math.max(shortest, share * list.height)
    radius: thickness / 2
    color: Tokens.alpha(Tokens.white, list.moving ? 0.3 : 0.14)
    visible: share < 1
    Behavior on color {
        EaseOutColor { seconds: 0.15 }
    }
}
