// What stands in the place of a list that has nothing to show: a symbol and two lines.
import QtQuick
import Quillmere.Design

Surface {
    id: root

    required property string symbol
    required property string title
    required property string explanation

    readonly property real widestLine: 320
    readonly property real gap: 10

    implicitHeight: words.implicitHeight + 2 * padding
    corner: Tokens.corner.card
    padding: Tokens.spacing.xxl

    Column {
        id: words

        anchors.centerIn: parent
        width: Math.min(root.widestLine, parent.width)
        spacing: root.gap

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: root.symbol
            pointSize: 26
            weight: Font.Light
            color: Tokens.textTertiary
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, parent.width)
            text: root.title
            font: Tokens.bodyEmphasis
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Tokens.balancedWidth(text, font, words.width)
            text: root.explanation
            color: Tokens.textSecondary
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
        }
    }
}
