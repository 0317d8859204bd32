// A small capsule with a word about a state, with or without a dot.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string text
    property color accent: Tokens.textSecondary
    property bool showsDot: false
    property bool pulses: false
    // Before the text, in the text's colour.
    property string symbol: ""

    readonly property bool neutral: Qt.colorEqual(accent, Tokens.textTertiary) || Qt.colorEqual(accent, Tokens.textSecondary)

    readonly property real dotSize: 6
    readonly property real dotBox: 8
    readonly property real gap: 5
    readonly property real paddingAcross: 8
    readonly property real paddingDown: 3
    readonly property real neutralFill: 0.05
    readonly property real accentFill: 0.14
    readonly property real accentBorder: 0.3

    implicitWidth: row.implicitWidth + 2 * paddingAcross
    implicitHeight: row.implicitHeight + 2 * paddingDown

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Panel {
        anchors.fill: parent
        radius: height / 2
        color: root.neutral ? Tokens.alpha(Tokens.white, root.neutralFill) : Tokens.alpha(root.accent, root.accentFill)
        stroke: root.neutral ? Tokens.cardStroke : Tokens.alpha(root.accent, root.accentBorder)
    }

    Row {
        id: row

        anchors.centerIn: parent
        spacing: root.gap

        Item {
            visible: root.showsDot
            anchors.verticalCenter: parent.verticalCenter
            width: root.pulses ? root.dotBox : root.dotSize
            height: width

            LivePulse {
                visible: root.pulses
                anchors.centerIn: parent
                size: root.dotSize
                color: root.accent
            }

            Rectangle {
                visible: !root.pulses
                anchors.centerIn: parent
                width: root.dotSize
                height: width
                radius: width / 2
                color: root.accent
                antialiasing: true
            }
        }

        Symbol {
            visible: root.symbol.length > 0
            anchors.verticalCenter: parent.verticalCenter
            // The line's height is the text's: a symbol must not make the tag taller.
            width: implicitWidth
            height: words.implicitHeight
            name: root.symbol
            pointSize: 10
            weight: Font.DemiBold
            color: words.color
        }

        Label {
            id: words

            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font: Tokens.captionStrong
            color: root.neutral ? Tokens.textSecondary : root.accent
            Accessible.ignored: true
        }
    }
}
