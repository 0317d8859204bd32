// Every component in its states.
import QtQuick
import Quillmere.Design

Row {
    id: root

    spacing: Tokens.spacing.xl

    component Sample: Column {
        property string title

        width: 340
        spacing: Tokens.spacing.m

        SectionCaps {
            text: parent.title
        }
    }

    Column {
        spacing: Tokens.spacing.xl

        Sample {
            title: "Marks"

            Row {
                spacing: Tokens.spacing.l

                BrandLogo { size: 64 }
                BrandLogo { size: 32 }
                BrandLogo { size: 20 }
                Wordmark { anchors.verticalCenter: parent.verticalCenter }
            }

            Row {
                spacing: Tokens.spacing.l

                Wordmark { height: 14 }
                Wordmark { height: 28; color: Tokens.brandMint }
                ShushIcon { size: 14; color: Tokens.textSecondary }
                ShushIcon { size: 28 }
                ShushIcon { size: 56; color: Tokens.brandSage }
            }
        }

        Sample {
            title: "Sliders"

            component Line: Row {
                id: line

                property string title
                property bool live: false
                property bool ducked: false
                property bool muted: false
                property real level: 0
                property real gain: 0.6

                spacing: Tokens.spacing.m

                Label {
                    width: 96
                    text: line.title
                    font: Tokens.bodyEmphasis
                    anchors.verticalCenter: parent.verticalCenter
                }

                LevelSlider {
                    label: line.title
                    width: 180
                    height: 18
                    value: line.gain
                    isLive: line.live
                    isDucked: line.ducked
                    isMuted: line.muted
                    level: line.level
                    onMoved: (value) => line.gain = value
                }

                Label {
                    text: Math.floor(line.gain * 100) + "%"
                    font: Tokens.metric
                    color: line.muted ? Tokens.textTertiary : Tokens.textSecondary
                    anchors.verticalCenter: parent.verticalCenter
                }
            }

            Line { title: "Silent" }
            Line { title: "Live"; live: true }
            Line { title: "Muted, live"; live: true; muted: true }
            Line { title: "Ducked"; ducked: true; gain: 0.3 }
            Line { title: "Ducked, live"; ducked: true; live: true }
            Line { title: "Level"; level: 0.5 }
            Line { title: "Nought"; gain: 0 }
            Line { title: "Little"; gain: 0.02; live: true }
            Line { title: "Full"; gain: 1; live: true }
        }

        Sample {
            title: "Tags"

            Row {
                spacing: Tokens.spacing.s

                StatusTag { text: "Live"; accent: Tokens.brandCoral; showsDot: true; pulses: true }
                StatusTag { text: "Idle"; accent: Tokens.textTertiary; showsDot: true }
                StatusTag { text: "Active"; accent: Tokens.brandSage }
                StatusTag { text: "Unsaved changes"; accent: Tokens.brandAmber }
            }

            Row {
                spacing: Tokens.spacing.l

                LivePulse { size: 6; color: Tokens.brandCoral }
                LivePulse { size: 8; color: Tokens.brandCoral }
                LivePulse { size: 16; color: Tokens.brandSage }
                Toggle { label: "One"; checked: true }
                Toggle { label: "Two" }
            }
        }

        Sample {
            title: "Buttons"

            Row {
                spacing: Tokens.spacing.m

                PrimaryButton { text: "Continue"; symbol: "arrow.right"; symbolTrails: true; large: true }
                PrimaryButton { text: "Save changes"; anchors.verticalCenter: parent.verticalCenter }
                PrimaryButton { text: "Saved"; enabled: false; anchors.verticalCenter: parent.verticalCenter }
            }

            Row {
                spacing: Tokens.spacing.m

                GhostButton { text: "Open quillmere"; symbol: "arrow.up.right.square" }
                GhostButton { text: "Cancel" }
                SubtleIconButton { text: "Quit"; symbol: "power" }
                SubtleIconButton { text: "Mute"; symbol: "speaker.wave.2" }
                SubtleIconButton { text: "Unmute"; symbol: "speaker.slash.fill"; color: Tokens.brandRed }
            }
        }
    }

    Column {
        spacing: Tokens.spacing.xl

        Sample {
            title: "Surfaces"

            Repeater {
                model: [Surface.Plain, Surface.Raised, Surface.Accent]

                Surface {
                    id: card

                    required property int modelData

                    width: 340
                    variant: modelData

                    Label {
                        text: ["plain", "raised", "accent"][card.modelData]
                        font: Tokens.cardTitle
                    }
                }
            }

            Hairline { width: 340 }
        }

        Sample {
            title: "Rings"

            Row {
                spacing: Tokens.spacing.l

                Repeater {
                    model: [0, 0.25, 0.7, 1]

                    RingProgress {
                        id: ring

                        required property real modelData

                        progress: modelData
                        fill: Tokens.brandCoral

                        Symbol {
                            anchors.centerIn: parent
                            name: "dot.radiowaves.right"
                            color: ring.fill
                        }
                    }
                }

                RingProgress {
                    width: 96
                    height: 96
                    progress: 0.82
                    useGradient: true
                    lineWidth: 8

                    Figures {
                        anchors.centerIn: parent
                        text: "12:34"
                        font: Tokens.metricLarge
                    }
                }
            }
        }

        Sample {
            title: "Wave"

            Repeater {
                model: [1, 3, 0]

                Surface {
                    id: waveCard

                    required property int modelData

                    width: 340
                    corner: Tokens.corner.tile
                    elevated: true
                    elevation: Tokens.elevation.hero

                    LiveSignalWave {
                        x: 18
                        width: parent.width - 36
                        liveCount: waveCard.modelData
                        averageGain: 0.8
                    }
                }
            }
        }
    }

    Column {
        spacing: Tokens.spacing.xl

        Sample {
            title: "Type"

            Label { text: "Hero display"; font: Tokens.heroDisplay }
            Label { text: "Display XL"; font: Tokens.displayXL }
            Label { text: "Display L"; font: Tokens.displayL }
            Label { text: "Display M"; font: Tokens.displayM }
            Label { text: "Card title"; font: Tokens.cardTitle }
            Label { text: "Body text 0123456789"; font: Tokens.bodyText }
            Label { text: "Body emphasis"; font: Tokens.bodyEmphasis }
            Label { text: "Caption"; font: Tokens.caption1; color: Tokens.textSecondary }
            Label { text: "Caption strong"; font: Tokens.captionStrong; color: Tokens.textSecondary }
            Label { text: "Metric 0123456789%"; font: Tokens.metric; color: Tokens.textSecondary }
            Figures { text: "0123456789"; font: Tokens.metricLarge }
        }

        Sample {
            title: "Menus"

            MenuButton {
                id: menuButton

                text: "Output device"
                contentItem: ButtonLabel {
                    text: menuButton.text
                    symbol: "chevron.up.chevron.down"
                    symbolTrails: true
                    symbolSize: 8
                    font: Tokens.bodyEmphasis
                    color: Tokens.textPrimary
                }
                menu: DropMenu {
                    DropMenuItem { text: "System default"; checkable: true; checked: true }
                    DropMenuDivider {}
                    DropMenuItem { text: "Built-in speakers" }
                    DropMenuItem { text: "Headphones" }
                }
            }
        }
    }
}
