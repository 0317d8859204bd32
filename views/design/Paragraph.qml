// A text of several lines, broken where they come out about equally long: no last word stands alone.
import QtQuick
import Quillmere.Design

Label {
    readonly property real spare: Math.max(0, width - Tokens.balancedWidth(text, font, width))

    wrapMode: Text.Wrap
    elide: Text.ElideNone
    horizontalAlignment: Text.AlignLeft
    leftPadding: horizontalAlignment === Text.AlignHCenter ? spare / 2 : 0
    rightPadding: spare - leftPadding
}
