// A text of several lines, broken where they come out about equally long: no last word stands alone.
import QtQuick
import Quillmere.Design

Label {
    wrapMode: Text.Wrap
    elide: Text.ElideNone
    horizontalAlignment: Text.AlignLeft
    rightPadding: Math.max(0, width - Tokens.balancedWidth(text, font, width))
}
