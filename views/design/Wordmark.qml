// The program's name as drawn letters.
import QtQuick
import Quillmere.Design

Item {
    id: root

    property real defaultHeight: 18
    property color color: Tokens.textPrimary

    readonly property real textShare: 0.85

    implicitHeight: defaultHeight
    implicitWidth: drawn.available ? Math.ceil(height * drawn.aspect) : written.implicitWidth

    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("quillmere")

    TemplateImage {
        id: drawn

        mark: "wordmark"
        width: Math.ceil(root.height * aspect)
        height: root.height
        color: root.color
    }

    Label {
        id: written

        visible: !drawn.available
        text: qsTr("quillmere")
        font: Tokens.face(root.height * root.textShare, Font.DemiBold)
        color: root.color
        Accessible.ignored: true
    }
}
