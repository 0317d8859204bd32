// A rounded rectangle with a border, whose top or bottom corners may be square so that it joins what stands there.
import QtQuick
import Quillmere.Design

Item {
    id: root

    property real radius: Tokens.corner.tile
    property color color: Tokens.cardBG
    property color stroke: Tokens.cardStroke
    property bool flatTop: false
    property bool flatBottom: false

    readonly property real topRadius: flatTop ? 0 : radius
    readonly property real bottomRadius: flatBottom ? 0 : radius

    // What is round goes on beyond a square edge, where it isn't seen.
    clip: flatTop || flatBottom

    Panel {
        anchors.fill: parent
        anchors.topMargin: root.flatTop ? -root.radius : 0
        anchors.bottomMargin: root.flatBottom ? -root.radius : 0
        radius: root.radius
        color: root.color
        stroke: root.stroke
    }

    // One line parts it from what it joins: the upper one's.
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        visible: root.flatBottom
        color: root.stroke
    }
}
