// What stands in a menu's entry: the place of the check mark, and the text.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string text
    required property color color
    required property bool checked

    readonly property real markBox: 16

    implicitWidth: words.x + words.implicitWidth
    implicitHeight: words.implicitHeight

    Symbol {
        x: Math.round((root.markBox - width) / 2)
        anchors.verticalCenter: parent.verticalCenter
        visible: root.checked
        name: "checkmark"
        pointSize: 10
        weight: Font.DemiBold
        color: root.color
    }

    Label {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        x: root.markBox + Tokens.spacing.xs
        width: parent.width - x
        text: root.text
        color: root.color
        Accessible.ignored: true
    }
}
