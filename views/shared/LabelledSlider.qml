// A slider with its name at the left and its value at the right above it.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string label
    required property string valueText
    required property real value

    signal moved(real value)

    implicitHeight: name.implicitHeight + 6 + slider.height

    Label {
        id: name

        anchors.left: parent.left
        anchors.right: shown.left
        anchors.rightMargin: Tokens.spacing.s
        text: root.label
        font: Tokens.face(12)
        color: Tokens.textSecondary
        Accessible.ignored: true
    }

    Label {
        id: shown

        anchors.right: parent.right
        anchors.baseline: name.baseline
        text: root.valueText
        font: Tokens.face(12, Font.Medium)
        color: Tokens.textPrimary
    }

    LevelSlider {
        id: slider

        anchors.bottom: parent.bottom
        width: parent.width
        height: 18
        label: root.label
        value: root.value
        onMoved: (value) => root.moved(value)
    }
}
