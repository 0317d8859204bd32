// The small pulsing dot that marks what sounds.
import QtQuick
import Quillmere.Design

Item {
    id: root

    property real size: 8
    property color color: Tokens.brandCoral

    readonly property real haloExtra: 5
    readonly property real haloBlur: 2.5
    readonly property real haloOpacity: 0.4

    implicitWidth: size
    implicitHeight: size

    Beat {
        id: beat

        running: root.opacity > 0
    }

    SoftShadow {
        anchors.centerIn: parent
        anchors.alignWhenCentered: false
        width: root.size + root.haloExtra
        height: width
        corner: width / 2
        blurRadius: root.haloBlur
        color: Tokens.alpha(root.color, root.haloOpacity)
        cutOut: false
        scale: beat.haloScale
    }

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: root.color
        antialiasing: true
    }
}
