// The small square with a letter that stands for a web page.
import QtQuick
import Quillmere.Design

Rectangle {
    id: root

    required property string letter
    required property bool active
    property real side: 18
    property real letterSize: 10

    readonly property real cornerShare: 0.26
    readonly property real activeOpacity: 0.25
    readonly property real restOpacity: 0.12

    width: side
    height: side
    radius: side * cornerShare
    color: Tokens.alpha(Tokens.brandSage, active ? activeOpacity : restOpacity)

    Label {
        anchors.centerIn: parent
        text: root.letter
        font: Tokens.face(root.letterSize, Font.DemiBold)
        color: root.active ? Tokens.brandSage : Tokens.textSecondary
        Accessible.ignored: true
    }
}
