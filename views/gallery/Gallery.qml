// The gallery's window.
import QtQuick
import QtQuick.Window
import Quillmere.Design

Window {
    id: root

    required property string page
    required property list<string> symbolNames

    width: 1120
    height: 980
    visible: true
    title: qsTr("quillmere gallery")
    color: Tokens.canvasBG

    AppBackdrop {
        anchors.fill: parent
    }

    SymbolSheet {
        anchors.fill: parent
        anchors.margins: Tokens.spacing.xl
        visible: root.page === "symbols"
        symbolNames: root.symbolNames
    }

    ComponentSheet {
        anchors.fill: parent
        anchors.margins: Tokens.spacing.xl
        visible: root.page !== "symbols"
    }
}
