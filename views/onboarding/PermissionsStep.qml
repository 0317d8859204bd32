// The offer of the optional permissions.
import QtQuick
import Quillmere.Design
import Quillmere.Views

StepShell {
    id: root

    required property PermissionsPresenter permissions

    readonly property real widestText: 460
    readonly property real widestCard: 480

    spacing: 24

    HeroGlyph {
        anchors.horizontalCenter: parent.horizontalCenter
        systemName: "lock.shield.fill"
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(root.widestText, parent.width)
        spacing: 10

        CentredText {
            objectName: "headline"
            width: parent.width
            text: qsTr("A couple of optional permissions")
            font: Tokens.tracked(Tokens.face(24, Font.DemiBold), -0.4)
            Accessible.role: Accessible.Heading
        }

        CentredText {
            width: parent.width
            text: qsTr("Grant now, or skip and we'll ask again when you turn on the related feature.")
            color: Tokens.textSecondary
        }
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(root.widestCard, parent.width)
        spacing: 12

        PermissionCard {
            objectName: "accessibility"
            width: parent.width
            icon: "command"
            title: qsTr("Accessibility")
            detail: qsTr("Required for global keyboard shortcuts (mute Slack from anywhere).")
            permission: root.permissions.accessibility
        }

        PermissionCard {
            objectName: "focusStatus"
            width: parent.width
            icon: "moon.fill"
            title: qsTr("Focus Status")
            detail: qsTr("Lets profiles auto-switch when you change macOS Focus modes.")
            permission: root.permissions.focusStatus
        }
    }
}
