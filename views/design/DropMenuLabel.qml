// What stands in a menu's entry: the place of the check mark, and the text.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string text
    required property color color
    required property bool checked

    property bool hasMark: true

    readonly property real markBox: 16

    implicitWidth: words.x + words.implicitWidth
    implicitHeight: words.implicitHeight

    Symbol {
        x: Math.round((root.markBox - width) / 2)
        anchors.verticalCenter: parent.verticalCenter
        visible: root.checked && root.hasMark
        name: "checkmark"
        pointSize: 10
        weight: Font.DemiBold
        color: root.color
    }

    Label {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        x: Tokens.spacing.xs + (root.hasMark ? root.markBox : 0)
        width: parent.width - x
        text: root.text
        color: root.color
        Accessible.ignored: true
    }
}
