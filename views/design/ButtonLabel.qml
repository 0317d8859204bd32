// What stands on a button: a symbol, a word, or both with the symbol before or behind.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string text
    required property string symbol
    required property font font
    required property color color
    property bool symbolTrails: false
    property real symbolSize: font.pixelSize
    property int symbolWeight: font.weight

    property real gap: 6

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    Row {
        id: row

        anchors.centerIn: parent
        spacing: root.gap
        layoutDirection: root.symbolTrails ? Qt.RightToLeft : Qt.LeftToRight

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.symbol.length > 0
            name: root.symbol
            pointSize: root.symbolSize
            weight: root.symbolWeight
            color: root.color
            // The line's height is the text's: a symbol must not make a button taller.
            height: label.implicitHeight
            width: implicitWidth
        }

        Label {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            visible: root.text.length > 0
            text: root.text
            font: root.font
            color: root.color
            Accessible.ignored: true
        }
    }
}
