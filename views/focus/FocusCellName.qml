// The name under a tile: on two lines where its words allow it. Room for both is kept, so that all cells are alike.
import QtQuick
import Quillmere.Design

Label {
    id: root

    readonly property bool wraps: !Tokens.breaksWithinWord(text, font, width)

    height: 2 * Math.ceil(metrics.height)
    font: Tokens.face(10)
    color: Tokens.textSecondary
    wrapMode: wraps ? Text.WordWrap : Text.NoWrap
    maximumLineCount: wraps ? 2 : 1
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignTop
    Accessible.ignored: true

    FontMetrics {
        id: metrics

        font: root.font
    }
}
