// A count with a ring that shows how much of something it is.
import QtQuick
import Quillmere.Design

Surface {
    id: root

    required property string label
    required property string value
    required property real progress
    required property color ringColor
    required property string icon

    readonly property real ringSide: 52
    readonly property real ringWidth: 5

    implicitHeight: ringSide + 2 * padding
    corner: Tokens.corner.tile
    padding: Tokens.spacing.l

    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("%1: %2", "Live now: 3").arg(label).arg(value)

    RingProgress {
        id: ring

        objectName: "ring"
        width: root.ringSide
        height: root.ringSide
        progress: root.progress
        fill: root.ringColor
        lineWidth: root.ringWidth

        Symbol {
            anchors.centerIn: parent
            name: root.icon
            pointSize: 15
            weight: Font.Medium
            color: root.ringColor
        }
    }

    Column {
        anchors.left: ring.right
        anchors.leftMargin: Tokens.spacing.m
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 0

        Label {
            objectName: "value"
            width: parent.width
            text: root.value
            font: Tokens.displayXL
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }

        Label {
            objectName: "label"
            width: parent.width
            text: root.label
            font: Tokens.face(12)
            color: Tokens.textSecondary
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }
    }
}
