// A capsule that names something the program does.
import QtQuick
import Quillmere.Design

Panel {
    id: root

    required property string icon
    required property string text

    readonly property real paddingAcross: 12
    readonly property real paddingDown: 7
    readonly property real borderOpacity: 0.08

    implicitWidth: row.implicitWidth + 2 * paddingAcross
    implicitHeight: row.implicitHeight + 2 * paddingDown
    radius: height / 2
    color: Tokens.thinMaterial
    stroke: Tokens.alpha(Tokens.white, borderOpacity)

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 6

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: root.icon
            pointSize: 12
            weight: Font.Medium
            useGradient: true
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font: Tokens.face(12, Font.Medium)
            Accessible.ignored: true
        }
    }
}
