// One application as it is now.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property string name
    required property url iconSource
    required property bool live

    readonly property real iconSide: 22
    readonly property string stateText: live ? qsTr("live") : qsTr("idle")

    implicitHeight: 40

    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: stateText

    AppIcon {
        id: icon

        objectName: "icon"
        anchors.verticalCenter: parent.verticalCenter
        visible: !missing
        side: root.iconSide
        source: root.iconSource
    }

    Label {
        objectName: "name"
        anchors.left: parent.left
        anchors.leftMargin: root.iconSide + Tokens.spacing.m
        anchors.right: status.left
        anchors.rightMargin: Tokens.spacing.m
        anchors.verticalCenter: parent.verticalCenter
        text: root.name
        horizontalAlignment: Text.AlignLeft
        Accessible.ignored: true
    }

    Row {
        id: status

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        LivePulse {
            objectName: "pulse"
            anchors.verticalCenter: parent.verticalCenter
            visible: root.live
            size: 6
            color: Tokens.brandCoral
        }

        Label {
            objectName: "state"
            anchors.verticalCenter: parent.verticalCenter
            text: root.stateText
            font: Tokens.caption1
            color: root.live ? Tokens.brandCoral : Tokens.textTertiary
            Accessible.ignored: true
        }
    }
}
