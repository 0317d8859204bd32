// The settings page.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property PreferencesCanvasPresenter presenter

    CanvasPage {
        anchors.fill: parent

        CanvasTitle {
            section: qsTr("Settings")
            title: qsTr("How quillmere behaves")
        }

        Surface {
            objectName: "behaviour"
            width: parent.width
            padding: Tokens.spacing.l
            corner: Tokens.corner.card

            Column {
                width: parent.width
                spacing: Tokens.spacing.s

                LaunchAtLoginRow {
                    width: parent.width
                    launchAtLogin: root.presenter.launchAtLogin
                }

                Hairline {
                    width: parent.width
                }

                ToggleRow {
                    width: parent.width
                    title: qsTr("Scroll over an app row to adjust its volume")
                    help: qsTr("Use the trackpad or mouse wheel over any app row to nudge its gain by 0.5%.")
                    on: root.presenter.scrollAdjusts
                    onToggled: (on) => root.presenter.scrollAdjusts = on
                }

                Hairline {
                    width: parent.width
                }

                ToggleRow {
                    width: parent.width
                    title: qsTr("Show duck banner during calls")
                    help: qsTr("Slim banner appears at the top of the menu-bar widget while music is auto-ducked.")
                    on: root.presenter.showsDuckBanner
                    onToggled: (on) => root.presenter.showsDuckBanner = on
                }

                Hairline {
                    width: parent.width
                }

                ToggleRow {
                    width: parent.width
                    title: qsTr("Pause music when headphones disconnect")
                    help: qsTr("When AirPods or wired headphones drop, quillmere sends a global pause to all media-playing apps.")
                    on: root.presenter.pausesOnDisconnect
                    onToggled: (on) => root.presenter.pausesOnDisconnect = on
                }
            }
        }

        Surface {
            objectName: "permissions"
            width: parent.width
            padding: Tokens.spacing.l
            corner: Tokens.corner.card

            Column {
                width: parent.width
                spacing: Tokens.spacing.m

                Label {
                    width: parent.width
                    text: qsTr("Permissions")
                    font: Tokens.cardTitle
                    Accessible.role: Accessible.Heading
                }

                PermissionRow {
                    objectName: "accessibility"
                    width: parent.width
                    title: qsTr("Accessibility")
                    detail: qsTr("For global keyboard shortcuts.")
                    permission: root.presenter.permissions.accessibility
                }

                PermissionRow {
                    objectName: "focusStatus"
                    width: parent.width
                    title: qsTr("Focus Status")
                    detail: qsTr("For Focus-mode-bound profiles.")
                    permission: root.presenter.permissions.focusStatus
                }
            }
        }

        Surface {
            objectName: "about"
            width: parent.width
            padding: Tokens.spacing.l
            corner: Tokens.corner.card

            Column {
                width: parent.width
                spacing: Tokens.spacing.m

                Label {
                    width: parent.width
                    text: qsTr("About")
                    font: Tokens.cardTitle
                    Accessible.role: Accessible.Heading
                }

                Item {
                    width: parent.width
                    height: versionLabel.implicitHeight

                    Label {
                        id: versionLabel

                        anchors.left: parent.left
                        text: qsTr("Version")
                        color: Tokens.textSecondary
                    }

                    Label {
                        objectName: "version"
                        anchors.right: parent.right
                        text: root.presenter.version
                    }
                }

                Item {
                    width: parent.width
                    height: links.y + links.height

                    Row {
                        id: links

                        y: 4
                        spacing: 8

                        GhostButton {
                            text: qsTr("Website")
                            onClicked: root.presenter.openWebsite()
                        }

                        GhostButton {
                            text: qsTr("Send feedback")
                            onClicked: root.presenter.sendFeedback()
                        }
                    }
                }
            }
        }

        BrowserCompanions {
            objectName: "browsers"
            width: parent.width
            browsers: root.presenter.browserCompanions
        }
    }
}
