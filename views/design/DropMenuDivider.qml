// A line between groups of a menu's entries.
import QtQuick
import QtQuick.Templates as T
import Quillmere.Design

T.MenuSeparator {
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    horizontalPadding: Tokens.spacing.s
    verticalPadding: Tokens.spacing.xs

    contentItem: Hairline {
        color: Tokens.cardStrokeHover
    }
}
