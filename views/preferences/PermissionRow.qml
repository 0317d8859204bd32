// A permission: what it is for, and whether it is given, or the way to it.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property string title
    required property string detail
    required property PermissionPresenter permission

    implicitHeight: Math.max(words.implicitHeight, action.implicitHeight)

    Column {
        id: words

        anchors.left: parent.left
        anchors.right: granted.visible ? granted.left : action.left
        anchors.rightMargin: Tokens.spacing.l
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: root.title
            font: Tokens.bodyEmphasis
        }

        Paragraph {
            width: parent.width
            text: root.detail
            font: Tokens.caption1
            color: Tokens.textTertiary
        }

        PermissionHint {
            width: parent.width
            permission: root.permission
        }
    }

    Item {
        id: granted

        objectName: "granted"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: grantedLabel.implicitWidth
        height: grantedLabel.implicitHeight
        visible: root.permission.granted

        Accessible.role: Accessible.StaticText
        Accessible.name: qsTr("%1: %2", "Accessibility: Granted").arg(root.title).arg(root.permission.text)

        ButtonLabel {
            id: grantedLabel

            text: root.permission.text
            symbol: "checkmark.circle.fill"
            font: Tokens.captionStrong
            color: Tokens.systemGreen
        }
    }

    GhostButton {
        id: action

        objectName: "action"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: !root.permission.granted
        text: root.permission.text
        onClicked: root.permission.grant()
        Accessible.description: root.title
    }
}
