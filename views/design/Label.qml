// A text in the look's own way: plain, so that a name can never bring mark-up, and cut with an ellipsis.
import QtQuick
import Quillmere.Design

Text {
    readonly property real capShift: lineCount === 1 ? height / 2 - baselineOffset + Tokens.capHeight(font) / 2 : 0

    font: Tokens.bodyText
    color: Tokens.textPrimary
    textFormat: Text.PlainText
    elide: Text.ElideRight
    // A name is one line, whatever its owner has put into it.
    maximumLineCount: wrapMode === Text.NoWrap ? 1 : 0x7fffffff
    verticalAlignment: Text.AlignVCenter
    renderType: Text.NativeRendering
    // What is centred is the height of the capitals: a line's box is rounded up below the letters, which lifts them. The
    // renderer puts letters on whole pixels by itself.
    anchors.alignWhenCentered: false
    anchors.verticalCenterOffset: capShift

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text.length === 0
}
