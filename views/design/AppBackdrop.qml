// The ground of a whole window: the canvas colour with a breath of blue along the top.
import QtQuick
import Quillmere.Design

Rectangle {
    id: root

    readonly property real bandHeight: 360
    readonly property real bandLight: 0.07

    color: Tokens.canvasBG

    Rectangle {
        width: parent.width
        height: Math.min(root.bandHeight, parent.height)
        // Light added to an opaque ground is a colour of its own, so no blending is needed.
        gradient: Gradient {
            GradientStop {
                position: 0
                color: Tokens.lightened(Tokens.canvasBG, Tokens.brandSage, root.bandLight)
            }
            GradientStop {
                position: 1
                color: Tokens.canvasBG
            }
        }
    }
}
