// A setting with a range: its name at the left and its value at the right, a slider below, and a word of help.
import QtQuick
import Quillmere.Design

Column {
    id: root

    required property string label
    required property string valueText
    required property real value
    property string help: ""
    property alias step: slider.step

    signal moved(real value)

    spacing: Tokens.spacing.xs + 2

    Item {
        width: parent.width
        height: name.implicitHeight

        Label {
            id: name

            anchors.left: parent.left
            anchors.right: shown.left
            anchors.rightMargin: Tokens.spacing.s
            text: root.label
            font: Tokens.bodyEmphasis
            Accessible.ignored: true
        }

        Figures {
            id: shown

            anchors.right: parent.right
            y: Math.round((parent.height - height) / 2)
            text: root.valueText
            font: Tokens.face(12, Font.Medium)
            color: Tokens.textSecondary
        }
    }

    LevelSlider {
        id: slider

        width: parent.width
        height: 20
        label: root.label
        valueText: root.valueText
        value: root.value
        onMoved: (value) => root.moved(value)
    }

    Paragraph {
        width: parent.width
        visible: text.length > 0
        text: root.help
        font: Tokens.caption1
        color: Tokens.textSecondary
    }
}
