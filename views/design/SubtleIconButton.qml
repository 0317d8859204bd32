// A symbol in a square of 24 that shows itself as a button only when pressed. text is its accessible name.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    property string symbol: ""
    property real symbolSize: 12
    property int symbolWeight: Font.Medium
    property color color: Tokens.textSecondary

    readonly property real side: 24

    implicitWidth: side
    implicitHeight: side
    tip: text

    background: Rectangle {
        radius: Tokens.corner.chip
        color: root.down ? Tokens.cardBGHover : Tokens.clear
    }

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            pointSize: root.symbolSize
            weight: root.symbolWeight
            color: root.color
        }
    }
}
