// Lets a list fade out at its edges while there is more beyond them: nothing looks cut off.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property Flickable list

    property real depth: 24
    // What lies behind the list, at its lower and at its upper edge.
    property color ground: Tokens.canvasBG
    property color topGround: ground
    // Whether a small sign below the list says that it goes on, where the last thing shown could be taken for the end.
    property bool marksMore: false

    // Margins around the content hide nothing.
    readonly property real above: list.contentY - list.originY
    readonly property bool moreAbove: above > 0.5
    readonly property bool moreBelow: list.contentHeight - above - list.height > 0.5

    anchors.fill: list

    Rectangle {
        objectName: "above"
        width: root.width
        height: root.depth
        opacity: root.moreAbove ? 1 : 0
        visible: opacity > 0
        gradient: Gradient {
            GradientStop {
                position: 0
                color: root.topGround
            }
            GradientStop {
                position: 1
                color: Tokens.alpha(root.topGround, 0)
            }
        }

        Behavior on opacity {
            EaseOut { seconds: 0.15 }
        }
    }

    Rectangle {
        objectName: "below"
        anchors.bottom: parent.bottom
        width: root.width
        height: root.depth
        opacity: root.moreBelow ? 1 : 0
        visible: opacity > 0
        gradient: Gradient {
            GradientStop {
                position: 0
                color: Tokens.alpha(root.ground, 0)
            }
            GradientStop {
                position: 1
                color: root.ground
            }
        }

        Behavior on opacity {
            EaseOut { seconds: 0.15 }
        }

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: parent.bottom
            visible: root.marksMore
            name: "chevron.down"
            pointSize: 8
            weight: Font.DemiBold
            color: Tokens.textSecondary
        }
    }
}
