// A setting: what it does, in words, and its switch.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string title
    property string help: ""
    required property bool on

    signal toggled(bool on)

    implicitHeight: Math.max(words.implicitHeight, toggle.implicitHeight)

    Column {
        id: words

        anchors.left: parent.left
        anchors.right: toggle.left
        anchors.rightMargin: Tokens.spacing.l
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Paragraph {
            width: parent.width
            text: root.title
            font: Tokens.bodyEmphasis
            Accessible.ignored: true
        }

        Paragraph {
            objectName: "help"
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
        anchors.verticalCenter: parent.verticalCenter
        label: root.title
        checked: root.on
        onToggled: {
            const wanted = checked;
            // It shows what is so, not what was asked for.
            checked = Qt.binding(() => root.on);
            root.toggled(wanted);
        }
        Accessible.description: root.help
    }
}
