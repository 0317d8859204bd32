// A text of several lines in the middle of its width, its lines about equally long.
import QtQuick
import Quillmere.Design

Label {
    readonly property real spare: Math.max(0, width - Tokens.balancedWidth(text, font, width))

    wrapMode: Text.Wrap
    elide: Text.ElideNone
    horizontalAlignment: Text.AlignHCenter
    leftPadding: Math.floor(spare / 2)
    rightPadding: Math.floor(spare / 2)
}
