// What stands above the cards of the applications.
import QtQuick
import Quillmere.Design
import Quillmere.Views

FocusScope {
    id: root

    required property MixerCanvasPresenter presenter
    required property real sidePadding

    implicitHeight: column.implicitHeight

    Column {
        id: column

        x: root.sidePadding
        width: root.width - 2 * x
        topPadding: Tokens.spacing.xl
        bottomPadding: Tokens.spacing.s
        spacing: Tokens.spacing.xl

        MixerHero {
            width: parent.width
            presenter: root.presenter
        }

        NowPlayingStrip {
            objectName: "strip"
            width: parent.width
            visible: root.presenter.nowPlaying.shown
            track: root.presenter.nowPlaying
        }

        Row {
            id: features

            objectName: "features"
            readonly property real cardWidth: Math.floor((width - 2 * spacing) / 3)
            readonly property real cardHeight: Math.max(finder.implicitHeight, duck.implicitHeight, profiles.implicitHeight)

            width: parent.width
            spacing: Tokens.spacing.m

            FeatureHighlightCard {
                id: finder

                width: features.cardWidth
                height: features.cardHeight
                icon: "bolt.fill"
                accent: Tokens.brandCoral
                title: qsTr("Mystery Sound Finder")
                description: qsTr("Catch any app the moment it makes a sound, even if it's hiding in another Space.")
                stateText: root.presenter.finderState
                isActive: root.presenter.anyLive
            }

            FeatureHighlightCard {
                id: duck

                width: features.cardWidth
                height: features.cardHeight
                icon: "waveform.badge.minus"
                accent: Tokens.brandSage
                title: qsTr("Auto-Duck on calls")
                description: qsTr("Music fades when a Zoom or Slack call begins. Restores the moment you hang up.")
                stateText: root.presenter.duckState
                isActive: root.presenter.ducking
            }

            FeatureHighlightCard {
                id: profiles

                // What is left of whole points.
                width: features.width - x
                height: features.cardHeight
                icon: "rectangle.stack.fill"
                accent: Tokens.brandMint
                title: qsTr("Focus profiles")
                description: qsTr("Bind volume layouts to macOS Focus modes — Work flips Slack down automatically.")
                stateText: root.presenter.profilesState
                isActive: root.presenter.profileActive
            }
        }

        OutputCard {
            width: parent.width
            output: root.presenter.output
        }

        Column {
            width: parent.width
            spacing: Tokens.spacing.s

            Item {
                width: parent.width
                height: 16

                SectionCaps {
                    anchors.left: parent.left
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Apps")
                }

                Row {
                    objectName: "liveCount"
                    anchors.right: parent.right
                    height: parent.height
                    spacing: 5
                    visible: root.presenter.anyLive

                    LivePulse {
                        anchors.verticalCenter: parent.verticalCenter
                        size: 6
                        color: Tokens.brandCoral
                    }

                    Figures {
                        anchors.verticalCenter: parent.verticalCenter
                        text: root.presenter.liveCountText
                        font: Tokens.captionStrong
                        color: Tokens.brandCoral
                    }
                }
            }

            EmptyState {
                objectName: "emptyState"
                width: parent.width
                visible: !root.presenter.anyApps
                symbol: "waveform"
                title: qsTr("Nothing's playing.")
                explanation: qsTr("Apps appear here the moment they make any sound.")
            }
        }
    }
}
