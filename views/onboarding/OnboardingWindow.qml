// The first run: a step at a time over the backdrop, and a footer that leads through them.
import QtQuick
import Quillmere.Design
import Quillmere.Views

AppBackdrop {
    id: root

    required property OnboardingPresenter presenter

    readonly property real windowWidth: 640
    readonly property real windowHeight: 600
    readonly property real footerHeight: 64
    readonly property real footerPadding: 28
    readonly property real hairlineOpacity: 0.06

    implicitWidth: windowWidth
    implicitHeight: windowHeight

    HoverGuard {}

    // The default action, wherever the focus is; the space bar presses what has it.
    Shortcut {
        sequences: ["Return", "Enter"]
        // A key that is held goes one step.
        autoRepeat: false
        onActivated: root.presenter.next()
    }

    StepPage {
        objectName: "welcome"
        width: parent.width
        height: parent.height - footer.height
        shown: root.presenter.step === OnboardingPresenter.Welcome

        WelcomeStep {}
    }

    StepPage {
        objectName: "permissions"
        width: parent.width
        height: parent.height - footer.height
        shown: root.presenter.step === OnboardingPresenter.Permissions

        PermissionsStep {
            permissions: root.presenter.permissions
        }
    }

    Rectangle {
        id: footer

        anchors.bottom: parent.bottom
        width: parent.width
        height: root.footerHeight
        color: Tokens.thickMaterial

        Rectangle {
            width: parent.width
            height: 1
            color: Tokens.alpha(Tokens.white, root.hairlineOpacity)
        }

        ProgressDots {
            anchors.left: parent.left
            anchors.leftMargin: root.footerPadding
            anchors.verticalCenter: parent.verticalCenter
            current: root.presenter.step
            total: root.presenter.stepCount
        }

        Row {
            anchors.right: parent.right
            anchors.rightMargin: root.footerPadding
            anchors.verticalCenter: parent.verticalCenter
            spacing: Tokens.spacing.s

            GhostButton {
                objectName: "back"
                anchors.verticalCenter: parent.verticalCenter
                visible: root.presenter.canGoBack
                text: qsTr("Back")
                onClicked: root.presenter.back()
            }

            PrimaryButton {
                objectName: "continue"
                text: qsTr("Continue")
                symbol: "arrow.right"
                symbolTrails: true
                onClicked: root.presenter.next()
            }
        }
    }
}
