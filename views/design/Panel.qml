// A rounded rectangle with a border over its fill. A Rectangle's own border takes the fill's place, which shows where
// both are translucent.
import QtQuick
import Quillmere.Design

Rectangle {
    id: root

    property color stroke: Tokens.cardStroke

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: Tokens.clear
        border.width: 1
        border.color: root.stroke
    }
}
