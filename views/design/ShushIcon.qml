// The quiet face of Whisper Mode.
import QtQuick
import Quillmere.Design

Item {
    id: root

    property real size: 14
    property color color: Tokens.textPrimary

    readonly property real symbolShare: 0.9

    implicitWidth: size
    implicitHeight: size

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Whisper Mode")

    TemplateImage {
        id: drawn

        anchors.fill: parent
        mark: "shush"
        color: root.color
    }

    Symbol {
        anchors.centerIn: parent
        visible: !drawn.available
        name: "mouth"
        pointSize: root.size * root.symbolShare
        weight: Font.Medium
        color: root.color
    }
}
