// A permission with what it is for; it turns green when it is given.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Panel {
    id: root

    required property string icon
    required property string title
    required property string detail
    required property PermissionPresenter permission

    readonly property real padding: 14
    readonly property real gap: 14
    readonly property real tileSide: 40
    readonly property real fadeSeconds: 0.2
    readonly property real grantedBorder: 0.4
    readonly property real plainBorder: 0.08
    readonly property real grantedFill: 0.1

    implicitHeight: Math.max(tile.height, words.height) + 2 * padding
    radius: Tokens.corner.tile
    color: Tokens.thinMaterial
    stroke: permission.granted ? Tokens.alpha(Tokens.systemGreen, grantedBorder) : Tokens.alpha(Tokens.white, plainBorder)

    Behavior on stroke {
        EaseOutColor { seconds: root.fadeSeconds }
    }

    Rectangle {
        id: tile

        objectName: "tile"
        x: root.padding
        anchors.verticalCenter: parent.verticalCenter
        width: root.tileSide
        height: root.tileSide
        radius: Tokens.corner.card
        color: Tokens.cardStroke

        GradientFill {
            objectName: "tileFill"
            anchors.fill: parent
            radius: parent.radius
            opacity: root.permission.granted ? 1 : 0
            visible: opacity > 0

            Behavior on opacity {
                EaseOut { seconds: root.fadeSeconds }
            }
        }

        Symbol {
            anchors.centerIn: parent
            name: root.icon
            pointSize: 18
            weight: Font.Medium
            color: root.permission.granted ? Tokens.white : Tokens.textSecondary
        }
    }

    Column {
        id: words

        anchors.left: tile.right
        anchors.leftMargin: root.gap
        anchors.right: button.left
        anchors.rightMargin: root.gap
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: root.title
            font: Tokens.face(12, Font.DemiBold)
        }

        Paragraph {
            width: parent.width
            text: root.detail
            font: Tokens.caption1
            color: Tokens.textSecondary
        }

        PermissionHint {
            width: parent.width
            topPadding: words.spacing
            permission: root.permission
        }
    }

    Item {
        id: button

        anchors.right: parent.right
        anchors.rightMargin: root.padding
        anchors.verticalCenter: parent.verticalCenter
        width: root.permission.granted ? granted.width : action.width
        height: root.permission.granted ? granted.height : action.height

        Rectangle {
            id: granted

            objectName: "granted"
            visible: root.permission.granted
            width: grantedLabel.implicitWidth + 2 * 10
            height: grantedLabel.implicitHeight + 2 * 5
            radius: height / 2
            color: Tokens.alpha(Tokens.systemGreen, root.grantedFill)

            Accessible.role: Accessible.StaticText
            Accessible.name: qsTr("%1: %2", "Accessibility: Granted").arg(root.title).arg(root.permission.text)

            ButtonLabel {
                id: grantedLabel

                anchors.centerIn: parent
                text: root.permission.text
                symbol: "checkmark.circle.fill"
                gap: 5
                font: Tokens.captionStrong
                color: Tokens.systemGreen
            }
        }

        GhostButton {
            id: action

            objectName: "action"
            visible: !root.permission.granted
            text: root.permission.text
            symbol: root.permission.status === PermissionPresenter.Denied ? "gear" : "arrow.up.right.square"
            onClicked: root.permission.grant()
            Accessible.description: root.title
        }
    }
}
