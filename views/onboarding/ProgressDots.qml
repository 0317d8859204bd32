// How far one is: a dot a step, the present one long.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design

Row {
    id: root

    required property int current
    required property int total

    readonly property real dotHeight: 6
    readonly property real longDot: 22
    readonly property real passedOpacity: 0.35
    readonly property real comingOpacity: 0.15

    spacing: 6

    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("Step %1 of %2").arg(current + 1).arg(total)

    Repeater {
        model: root.total

        Item {
            id: dot

            required property int index

            readonly property bool isCurrent: index === root.current

            objectName: "dot"
            width: isCurrent ? root.longDot : root.dotHeight
            height: root.dotHeight

            Behavior on width {
                Spring {
                    response: 0.3
                    dampingFraction: 0.85
                }
            }

            Rectangle {
                objectName: "plain"
                anchors.fill: parent
                visible: !dot.isCurrent
                radius: height / 2
                color: Tokens.alpha(Tokens.white, dot.index < root.current ? root.passedOpacity : root.comingOpacity)
                antialiasing: true
            }

            GradientFill {
                objectName: "bright"
                anchors.fill: parent
                visible: dot.isCurrent
                radius: height / 2
            }
        }
    }
}
