// The button for what a page is there for.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    property string symbol: ""
    property bool symbolTrails: false
    property bool large: false

    readonly property real corner: 9
    readonly property real shadowOpacity: 0.3
    readonly property real shadowOffset: 2
    readonly property real shadowRadius: 5
    readonly property real disabledOpacity: 0.4

    horizontalPadding: large ? 18 : 14
    verticalPadding: large ? 9 : 7
    focusCorner: corner
    opacity: enabled ? 1 : disabledOpacity

    scale: down ? 0.98 : 1
    Behavior on scale {
        Spring {
            response: 0.18
            dampingFraction: 0.85
        }
    }

    background: Item {
        SoftShadow {
            anchors.fill: parent
            corner: root.corner
            color: Tokens.alpha(Tokens.brandSage, root.shadowOpacity)
            blurRadius: root.shadowRadius
            offsetDown: root.shadowOffset
            cutOut: false
        }

        GradientFill {
            anchors.fill: parent
            radius: root.corner
            visible: !root.down
        }

        Rectangle {
            anchors.fill: parent
            radius: root.corner
            color: Tokens.brandSage
            visible: root.down
        }
    }

    contentItem: ButtonLabel {
        text: root.text
        symbol: root.symbol
        symbolTrails: root.symbolTrails
        font: Tokens.face(root.large ? 13 : 12, Font.DemiBold)
        color: Tokens.white
    }
}
