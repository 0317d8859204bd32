// The head of a page: its section in small capitals, what it is about, and a word on it.
import QtQuick
import Quillmere.Design

Column {
    id: root

    required property string section
    required property string title
    property string subtitle: ""

    readonly property real widestSubtitle: 640

    width: parent ? parent.width : implicitWidth
    spacing: Tokens.spacing.xs

    SectionCaps {
        width: parent.width
        text: root.section
    }

    Label {
        objectName: "title"
        width: parent.width
        text: root.title
        font: Tokens.tracked(Tokens.displayXL, -0.5)
        Accessible.role: Accessible.Heading
    }

    Paragraph {
        objectName: "subtitle"
        width: Math.min(parent.width, root.widestSubtitle)
        visible: text.length > 0
        text: root.subtitle
        color: Tokens.textSecondary
    }
}
