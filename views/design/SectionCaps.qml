// The small capitals over a section.
import QtQuick
import Quillmere.Design

Label {
    font: Tokens.capitals(Tokens.sectionCaps, 0.8)
    color: Tokens.textTertiary
}
