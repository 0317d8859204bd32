// An entry of a menu: a check mark's place, a text.
import QtQuick
import QtQuick.Templates as T
import Quillmere.Design

T.MenuItem {
    id: root

    // Whether the place of the check mark is kept; not needed where no entry of the menu is checked.
    property bool hasMarks: true
    readonly property real lineHeight: 24

    implicitWidth: leftPadding + implicitContentWidth + rightPadding
    implicitHeight: lineHeight
    leftPadding: Tokens.spacing.xs
    rightPadding: Tokens.spacing.s
    hoverEnabled: true

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.onPressAction: root.triggered()

    contentItem: DropMenuLabel {
        text: root.text
        checked: root.checked
        hasMark: root.hasMarks
        color: !root.enabled ? Tokens.textTertiary : root.highlighted ? Tokens.white : Tokens.textPrimary
    }

    indicator: null

    background: Rectangle {
        radius: Tokens.corner.chip - 1
        color: root.highlighted && root.enabled ? Tokens.systemAccent : Tokens.clear
    }
}
