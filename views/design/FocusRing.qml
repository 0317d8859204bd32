// The ring around a control that keys will act on. Fill the control with it.
import QtQuick
import Quillmere.Design

Rectangle {
    id: root

    required property bool shown
    // The corner of the control inside.
    property real corner: Tokens.corner.chip

    readonly property real gap: 2
    readonly property real thickness: 2

    anchors.fill: parent
    anchors.margins: -(gap + thickness)
    radius: corner + gap + thickness
    color: Tokens.clear
    border.width: thickness
    border.color: Tokens.focusRing
    visible: shown
}
