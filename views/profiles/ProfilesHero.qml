// Which profile is in effect.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property bool anyActive
    required property string title
    required property string detail

    readonly property real tileSide: 44

    implicitHeight: Math.max(tile.height, words.height)

    Rectangle {
        id: tile

        width: root.tileSide
        height: root.tileSide
        anchors.verticalCenter: parent.verticalCenter
        radius: Tokens.corner.card
        color: root.anyActive ? Tokens.cardBGSelected : Tokens.cardBGHover

        Symbol {
            anchors.centerIn: parent
            name: "rectangle.stack"
            pointSize: 18
            color: root.anyActive ? Tokens.brandSage : Tokens.textSecondary
        }
    }

    Column {
        id: words

        anchors.left: tile.right
        anchors.leftMargin: Tokens.spacing.m
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        SectionCaps {
            objectName: "heroCaption"
            width: parent.width
            visible: root.anyActive
            text: qsTr("Active profile")
        }

        Label {
            objectName: "heroTitle"
            width: parent.width
            text: root.title
            font: Tokens.displayM
            horizontalAlignment: Text.AlignLeft
            maximumLineCount: 1
        }

        Label {
            objectName: "heroDetail"
            width: parent.width
            text: root.detail
            font: Tokens.caption1
            color: Tokens.textSecondary
        }
    }
}
