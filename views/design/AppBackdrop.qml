// The ground of a whole window: the canvas colour with a breath of blue along the top.
import QtQuick
import Quillmere.Design

Rectangle {
    id: root

    readonly property real bandHeight: 360
    readonly property real bandLight: 0.07

    /// The colour at so many points below the top.
    function groundAt(y: real): color {
        return Tokens.lightened(Tokens.canvasBG, Tokens.brandSage, bandLight * Math.max(0, 1 - y / bandHeight));
    }

    color: Tokens.canvasBG

    Rectangle {
        width: parent.width
        height: Math.min(root.bandHeight, parent.height)
        // Light added to an opaque ground is a colour of its own, so no blending is needed.
        gradient: Gradient {
            GradientStop {
                position: 0
                color: root.groundAt(0)
            }
            GradientStop {
                position: 1
                color: Tokens.canvasBG
            }
        }
    }
}
