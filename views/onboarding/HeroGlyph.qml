// The large symbol over a step, with a halo and a ring.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string systemName

    readonly property real side: 100
    readonly property real haloSide: 80
    readonly property real haloBlur: 14
    readonly property real haloOpacity: 0.55
    readonly property real ringOpacity: 0.3

    implicitWidth: side
    implicitHeight: side

    SoftShadow {
        objectName: "halo"
        anchors.centerIn: parent
        width: root.haloSide
        height: width
        corner: width / 2
        useGradient: true
        opacity: root.haloOpacity
        blurRadius: root.haloBlur
        offsetDown: 0
        cutOut: false
    }

    Rectangle {
        objectName: "ring"
        anchors.fill: parent
        radius: width / 2
        color: Tokens.clear
        border.width: 1
        border.color: Tokens.alpha(Tokens.brandSage, root.ringOpacity)
        antialiasing: true
    }

    Symbol {
        objectName: "symbol"
        anchors.centerIn: parent
        name: root.systemName
        pointSize: 36
        weight: Font.Light
        color: Tokens.white
    }
}
