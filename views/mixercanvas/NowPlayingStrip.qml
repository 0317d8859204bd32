// What plays, who plays it, and its transport.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property NowPlayingPresenter track

    readonly property real tileSide: 48
    readonly property real tileFill: 0.14
    readonly property real discSide: 32
    readonly property real pressedOpacity: 0.8

    implicitHeight: Math.max(tileSide, words.implicitHeight) + 2 * Tokens.spacing.l

    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Now playing")
    Accessible.description: track.title

    Elevated {
        objectName: "shadow"
        anchors.fill: parent
        corner: Tokens.corner.tile
        elevation: root.track.playing ? Tokens.elevation.hover : Tokens.elevation.resting
    }

    Panel {
        anchors.fill: parent
        radius: Tokens.corner.tile
        color: Tokens.cardBG
        stroke: Tokens.cardStroke
    }

    Rectangle {
        id: tile

        x: Tokens.spacing.l
        anchors.verticalCenter: parent.verticalCenter
        width: root.tileSide
        height: root.tileSide
        radius: Tokens.corner.card
        color: Tokens.alpha(Tokens.brandSage, root.tileFill)

        AppIcon {
            id: icon

            anchors.centerIn: parent
            visible: !missing
            side: 38
            source: root.track.iconSource
        }

        Symbol {
            objectName: "note"
            anchors.centerIn: parent
            visible: icon.missing
            name: "music.note"
            pointSize: 22
            color: Tokens.brandSage
        }
    }

    Column {
        id: words

        anchors.left: tile.right
        anchors.leftMargin: Tokens.spacing.m
        anchors.right: transport.left
        anchors.rightMargin: Tokens.spacing.l
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Item {
            width: parent.width
            height: caps.implicitHeight

            SectionCaps {
                id: caps

                text: qsTr("Now playing")
            }

            Label {
                objectName: "source"
                anchors.left: caps.right
                anchors.leftMargin: 6
                anchors.right: parent.right
                anchors.verticalCenter: caps.verticalCenter
                text: root.track.sourceText
                font: Tokens.caption1
                color: Tokens.textTertiary
                horizontalAlignment: Text.AlignLeft
            }
        }

        Label {
            objectName: "title"
            width: parent.width
            text: root.track.title
            font: Tokens.cardTitle
            horizontalAlignment: Text.AlignLeft
        }

        Label {
            objectName: "artist"
            width: parent.width
            visible: text.length > 0
            text: root.track.artist
            font: Tokens.bodyText
            color: Tokens.textSecondary
            horizontalAlignment: Text.AlignLeft
        }
    }

    Row {
        id: transport

        anchors.right: parent.right
        anchors.rightMargin: Tokens.spacing.l
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        SubtleIconButton {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Previous track")
            symbol: "backward.fill"
            symbolSize: 12
            onClicked: root.track.previous()
        }

        PlainButton {
            id: play

            width: root.discSide
            height: root.discSide
            focusCorner: width / 2
            opacity: down ? root.pressedOpacity : 1
            text: root.track.playText
            tip: text
            onClicked: root.track.togglePlayPause()

            background: Rectangle {
                objectName: "disc"
                radius: width / 2
                color: Tokens.brandSage
                antialiasing: true
            }

            contentItem: Item {
                Symbol {
                    anchors.centerIn: parent
                    name: root.track.playSymbol
                    pointSize: 13
                    color: Tokens.white
                }
            }
        }

        SubtleIconButton {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Next track")
            symbol: "forward.fill"
            symbolSize: 12
            onClicked: root.track.next()
        }
    }
}
