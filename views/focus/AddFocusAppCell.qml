// The way to another application that may keep playing during focus.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    readonly property real cellWidth: 56
    readonly property real tileSide: 48
    readonly property real tileCorner: 10

    width: cellWidth
    text: qsTr("Add app")
    tip: qsTr("Add an app from your Applications folder")
    focusCorner: tileCorner
    topPadding: Tokens.spacing.xs
    bottomPadding: Tokens.spacing.xs

    contentItem: Column {
        spacing: Tokens.spacing.xs

        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            width: root.tileSide
            height: root.tileSide

            DashedBorder {
                anchors.fill: parent
                radius: root.tileCorner
                color: root.hovered ? Tokens.textSecondary : Tokens.textTertiary
            }

            Symbol {
                anchors.centerIn: parent
                name: "plus"
                pointSize: 16
                color: root.hovered ? Tokens.textPrimary : Tokens.textSecondary
            }
        }

        FocusCellName {
            width: parent.width
            text: root.text
        }
    }
}
