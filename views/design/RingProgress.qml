// A ring that fills clockwise from the top, with room for something in its middle.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property real progress
    property color track: Tokens.cardStroke
    property color fill: Tokens.brandSage
    property bool useGradient: false
    property real lineWidth: 4
    property bool animate: true
    default property alias center: middle.data

    implicitWidth: 44
    implicitHeight: 44

    RingArc {
        anchors.fill: parent
        progress: root.progress
        track: root.track
        fill: root.fill
        useGradient: root.useGradient
        lineWidth: root.lineWidth

        Behavior on progress {
            enabled: root.animate && root.visible

            Spring {
                response: 0.6
                dampingFraction: 0.85
            }
        }
    }

    Item {
        id: middle

        anchors.fill: parent
        anchors.margins: root.lineWidth
    }
}
