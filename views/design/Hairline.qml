// A line one point high, as wide as it may be.
import QtQuick
import Quillmere.Design

Rectangle {
    implicitHeight: 1
    color: Tokens.hairline
}
