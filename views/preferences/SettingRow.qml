// A setting: what it does, in words, and its switch.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string title
    property string help: ""
    required property bool on

    signal toggled(bool on)

    implicitHeight: words.implicitHeight

    Column {
        id: words

        anchors.left: parent.left
        anchors.right: toggle.left
        anchors.rightMargin: Tokens.spacing.m
        spacing: 2

        Paragraph {
            width: parent.width
            text: root.title
            font: Tokens.face(12, Font.Medium)
            Accessible.ignored: true
        }

        Paragraph {
            width: parent.width
            visible: text.length > 0
            text: root.help
            font: Tokens.caption1
            color: Tokens.textTertiary
        }
    }

    Toggle {
        id: toggle

        anchors.right: parent.right
        anchors.verticalCenter: words.verticalCenter
        label: root.title
        checked: root.on
        onToggled: {
            root.toggled(checked);
            checked = Qt.binding(() => root.on);
        }
    }
}
