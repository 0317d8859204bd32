// What stands on a button that opens a menu: a symbol or none, the present choice, and the two chevrons.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string text
    property string symbol: ""
    property real symbolSize: 11
    property color color: Tokens.textPrimary
    property font font: Tokens.face(12)
    property real gap: 5
    property string chevron: "chevron.up.chevron.down"
    // Up to the chevron's end; a text that is cut rarely fills the width it is given.
    readonly property alias truncated: words.truncated
    readonly property real shownWidth: tail.x + tail.width

    implicitWidth: (lead.visible ? lead.width + gap : 0) + words.implicitWidth + gap + tail.width
    implicitHeight: Math.max(words.implicitHeight, lead.height)

    Symbol {
        id: lead

        anchors.verticalCenter: parent.verticalCenter
        visible: root.symbol.length > 0
        name: root.symbol
        pointSize: root.symbolSize
        color: root.color
    }

    Label {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        x: lead.visible ? lead.width + root.gap : 0
        width: Math.min(implicitWidth, parent.width - x - root.gap - tail.width)
        text: root.text
        font: root.font
        color: root.color
        Accessible.ignored: true
    }

    Symbol {
        id: tail

        anchors.verticalCenter: parent.verticalCenter
        // Beside what is shown of a text that is cut.
        x: words.x + Math.ceil(words.contentWidth) + root.gap
        name: root.chevron
        pointSize: 8
        weight: Font.DemiBold
        color: Tokens.textTertiary
    }
}
