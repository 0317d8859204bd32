// The main window: the mixer at the left, the automations at the right.
import QtQuick
import Quillmere.Design
import Quillmere.Views

AppBackdrop {
    id: root

    required property MainWindowPresenter presenter

    readonly property real headerHeight: 64
    readonly property real sideWidth: 352

    HoverGuard {}

    Item {
        id: header

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Tokens.spacing.xl
        anchors.rightMargin: Tokens.spacing.xl
        height: root.headerHeight

        Wordmark {
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            height: 20
        }

        Row {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Tokens.spacing.m

            SleepTimerControl {
                anchors.verticalCenter: parent.verticalCenter
                timer: root.presenter.sleepTimer
            }

            WhisperButton {
                anchors.verticalCenter: parent.verticalCenter
                text: root.presenter.whisperText
                on: root.presenter.whisperOn
                onClicked: root.presenter.toggleWhisper()
            }
        }
    }

    MixerPage {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Tokens.spacing.xl
        anchors.left: header.left
        anchors.right: side.left
        anchors.rightMargin: Tokens.spacing.xl
        presenter: root.presenter
    }

    Flickable {
        id: side

        objectName: "side"
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        anchors.right: header.right
        width: root.sideWidth
        contentHeight: cards.implicitHeight
        boundsBehavior: Flickable.StopAtBounds
        clip: contentHeight > height

        Column {
            id: cards

            width: parent.width
            bottomPadding: Tokens.spacing.xl
            spacing: Tokens.spacing.l

            FocusCard {
                width: parent.width
                focusBlock: root.presenter.focus
            }

            DuckCard {
                width: parent.width
                duck: root.presenter.duck
            }

            ProfilesCard {
                width: parent.width
                list: root.presenter.profileList
                profiles: root.presenter.profiles
            }

            Card {
                width: parent.width
                title: qsTr("Settings")

                SettingRow {
                    width: parent.width
                    title: qsTr("Scroll over an app row to adjust its volume")
                    help: qsTr("Use the trackpad or mouse wheel over any app row to nudge its gain by 0.5%.")
                    on: root.presenter.scrollAdjusts
                    onToggled: (on) => root.presenter.scrollAdjusts = on
                }

                Hairline {
                    width: parent.width
                }

                SettingRow {
                    width: parent.width
                    title: qsTr("Show duck banner during calls")
                    help: qsTr("Slim banner appears at the top of the menu-bar widget while music is auto-ducked.")
                    on: root.presenter.showsDuckBanner
                    onToggled: (on) => root.presenter.showsDuckBanner = on
                }

                Hairline {
                    width: parent.width
                }

                SettingRow {
                    width: parent.width
                    title: qsTr("Pause music when headphones disconnect")
                    help: qsTr("When AirPods or wired headphones drop, quillmere sends a global pause to all media-playing apps.")
                    on: root.presenter.pausesOnDisconnect
                    onToggled: (on) => root.presenter.pausesOnDisconnect = on
                }
            }
        }
    }

    ScrollFade {
        list: side
        topGround: root.groundAt(header.height)
    }

    ScrollThumb {
        list: side
        anchors.rightMargin: -Tokens.spacing.m
    }
}
