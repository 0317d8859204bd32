// The quiet button beside or instead of a primary one.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    property string symbol: ""
    property bool symbolTrails: false

    readonly property real corner: 8
    readonly property real pressedOpacity: 0.7
    readonly property real disabledOpacity: 0.4

    horizontalPadding: 12
    verticalPadding: 6
    focusCorner: corner
    opacity: !enabled ? disabledOpacity : down ? pressedOpacity : 1

    background: Panel {
        radius: root.corner
        color: root.hovered ? Tokens.cardBGHover : Tokens.cardBG
        stroke: root.hovered ? Tokens.cardStrokeHover : Tokens.cardStroke
    }

    contentItem: ButtonLabel {
        text: root.text
        symbol: root.symbol
        symbolTrails: root.symbolTrails
        font: Tokens.face(12, Font.Medium)
        color: Tokens.textPrimary
    }
}
