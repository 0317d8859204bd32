// Shows where in a longer list one is. Place it beside or over the list.
import QtQuick
import Quillmere.Design

Rectangle {
    id: root

    required property Flickable list

    readonly property real thickness: 4
    readonly property real shortest: 24
    readonly property real whole: list.contentHeight + list.topMargin + list.bottomMargin
    readonly property real share: whole > 0 ? Math.min(1, list.height / whole) : 1
    readonly property real travel: whole > list.height
        ? Math.max(0, Math.min(1, (list.contentY - list.originY + list.topMargin) / (whole - list.height))) : 0

    anchors.right: list.right
    anchors.rightMargin: 2
    y: list.y + list.topMargin + travel * (list.height - list.topMargin - list.bottomMargin - height)
    width: thickness
    height: Math.max(shortest, share * list.height)
    radius: thickness / 2
    color: Tokens.alpha(Tokens.white, list.moving ? 0.3 : 0.14)
    visible: share < 1
    Behavior on color {
        EaseOutColor { seconds: 0.15 }
    }
}
