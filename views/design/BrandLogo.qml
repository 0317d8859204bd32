// The brand's tile: three tracks of a mixer, with its shadow.
import QtQuick
import Quillmere.Design

Item {
    id: root

    property real size: 64

    readonly property real corner: size * 0.235

    implicitWidth: size
    implicitHeight: size

    Accessible.ignored: true

    SoftShadow {
        anchors.fill: parent
        corner: root.corner
        color: Tokens.alpha(Tokens.brandSage, 0.3)
        blurRadius: root.size * 0.2
        offsetDown: root.size * 0.06
        cutOut: false
    }

    LogoPicture {
        anchors.fill: parent
    }
}
