// A card: content over a rounded rectangle with a border.
import QtQuick
import Quillmere.Design

Item {
    id: root

    enum Variant {
        Plain,
        Raised,
        Accent
    }

    property int variant: Surface.Plain
    property real padding: Tokens.spacing.l
    property real corner: Tokens.corner.card
    // Whether it casts the shadow of its elevation.
    property bool elevated: false
    property shadowStyle elevation: Tokens.elevation.resting
    default property alias content: inside.data

    readonly property real raisedFill: 0.04
    readonly property real accentFill: 0.08
    readonly property real accentBorder: 0.3

    // As large as its content, padded; the content is given the full width.
    implicitWidth: inside.childrenRect.width + 2 * padding
    implicitHeight: inside.childrenRect.height + 2 * padding

    Elevated {
        anchors.fill: parent
        visible: root.elevated
        corner: root.corner
        elevation: root.elevation
    }

    Panel {
        anchors.fill: parent
        radius: root.corner
        color: root.variant === Surface.Accent ? Tokens.alpha(Tokens.brandSage, root.accentFill)
             : root.variant === Surface.Raised ? Tokens.alpha(Tokens.white, root.raisedFill)
             : Tokens.cardBG
        stroke: root.variant === Surface.Accent ? Tokens.alpha(Tokens.brandSage, root.accentBorder)
              : root.variant === Surface.Raised ? Tokens.cardStrokeHover
              : Tokens.cardStroke
    }

    Item {
        id: inside

        anchors.fill: parent
        anchors.margins: root.padding
    }
}
