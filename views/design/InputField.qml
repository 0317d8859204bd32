// A line of text that can be edited. The label is its accessible name; what is typed arrives as edited().
import QtQuick
import QtQuick.Templates as T
import Quillmere.Design

T.TextField {
    id: root

    required property string label
    property real corner: 8
    // Whether it stands on a card of its own.
    property bool framed: true

    signal edited(string text)

    implicitWidth: 200
    implicitHeight: Math.max(contentHeight, hint.implicitHeight) + topPadding + bottomPadding
    leftPadding: framed ? Tokens.spacing.m : 0
    rightPadding: leftPadding
    topPadding: framed ? Tokens.spacing.s : Tokens.spacing.xs
    bottomPadding: topPadding
    font: Tokens.bodyText
    color: Tokens.textPrimary
    placeholderTextColor: Tokens.textTertiary
    selectionColor: Tokens.systemAccent
    selectedTextColor: Tokens.white
    renderType: Text.NativeRendering
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true

    onTextEdited: root.edited(text)

    Accessible.role: Accessible.EditableText
    Accessible.name: label
    Accessible.editable: true

    Label {
        id: hint

        x: root.leftPadding
        y: root.topPadding
        width: root.width - root.leftPadding - root.rightPadding
        height: root.height - root.topPadding - root.bottomPadding
        visible: root.length === 0 && root.preeditText.length === 0
        text: root.placeholderText
        font: root.font
        color: root.placeholderTextColor
        Accessible.ignored: true
    }

    background: Panel {
        visible: root.framed
        radius: root.corner
        color: root.hovered || root.activeFocus ? Tokens.cardBGHover : Tokens.cardBG
        stroke: root.activeFocus ? Tokens.cardStrokeSelected : root.hovered ? Tokens.cardStrokeHover : Tokens.cardStroke
    }
}
