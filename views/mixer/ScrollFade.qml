// Lets a list fade out at its lower edge while there is more below: nothing looks cut off.
import QtQuick
import Quillmere.Design

Rectangle {
    id: root

    required property Flickable list

    readonly property real depth: 28

    anchors.left: list.left
    anchors.right: list.right
    anchors.bottom: list.bottom
    height: depth
    opacity: list.contentHeight > list.height && !list.atYEnd ? 1 : 0
    visible: opacity > 0
    gradient: Gradient {
        GradientStop {
            position: 0
            color: Tokens.alpha(Tokens.canvasBG, 0)
        }
        GradientStop {
            position: 1
            color: Tokens.canvasBG
        }
    }

    Behavior on opacity {
        EaseOut { seconds: 0.15 }
    }
}
