// A text in the look's own way: plain, so that a name can never bring mark-up, and cut with an ellipsis.
import QtQuick
import Quillmere.Design

Text {
    font: Tokens.bodyText
    color: Tokens.textPrimary
    textFormat: Text.PlainText
    elide: Text.ElideRight
    verticalAlignment: Text.AlignVCenter
    renderType: Text.NativeRendering

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text.length === 0
}
