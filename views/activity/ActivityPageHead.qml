// What stands above the rows of the activity.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property ActivityCanvasPresenter presenter
    required property real sidePadding

    readonly property real narrowestTile: 220

    implicitHeight: column.implicitHeight

    Column {
        id: column

        x: root.sidePadding
        width: root.width - 2 * x
        topPadding: Tokens.spacing.xl
        // The card of the rows begins a little before the first of them.
        bottomPadding: root.presenter.anyApps ? Tokens.spacing.s + Tokens.spacing.m : 0
        spacing: Tokens.spacing.xl

        Column {
            width: parent.width
            spacing: 4

            SectionCaps {
                text: qsTr("Activity")
            }

            Label {
                objectName: "heading"
                width: parent.width
                text: qsTr("What's been making noise")
                font: Tokens.tracked(Tokens.displayXL, -0.5)
                horizontalAlignment: Text.AlignLeft
                Accessible.role: Accessible.Heading
            }
        }

        Grid {
            id: tiles

            objectName: "tiles"
            readonly property real tileWidth: Math.floor((width - (columns - 1) * spacing) / columns)
            // Up to the edge, on whole pixels.
            readonly property real lastWidth: width - (columns - 1) * (tileWidth + spacing)

            function widthOf(place: int): real {
                return place % columns === columns - 1 ? lastWidth : tileWidth;
            }

            width: parent.width
            spacing: Tokens.spacing.m
            // Full rows only: three beside each other would leave the fourth alone below them.
            columns: {
                const fitting = Math.floor((width + spacing) / (root.narrowestTile + spacing));
                return fitting >= 4 ? 4 : fitting >= 2 ? 2 : 1;
            }

            RingStatTile {
                width: tiles.widthOf(0)
                label: qsTr("Live now")
                value: root.presenter.liveValue
                progress: root.presenter.liveProgress
                ringColor: Tokens.brandCoral
                icon: "dot.radiowaves.right"
            }

            RingStatTile {
                width: tiles.widthOf(1)
                label: qsTr("Apps connected")
                value: root.presenter.appsValue
                progress: root.presenter.appsProgress
                ringColor: Tokens.brandSage
                icon: "rectangle.connected.to.line.below"
            }

            RingStatTile {
                width: tiles.widthOf(2)
                label: qsTr("Profiles")
                value: root.presenter.profilesValue
                progress: root.presenter.profilesProgress
                ringColor: Tokens.brandMint
                icon: "rectangle.stack"
            }

            RingStatTile {
                width: tiles.widthOf(3)
                label: qsTr("Auto-Duck triggers")
                value: root.presenter.triggersValue
                progress: root.presenter.triggersProgress
                ringColor: Tokens.brandAmber
                icon: "waveform.badge.minus"
            }
        }

        Column {
            width: parent.width
            spacing: Tokens.spacing.m

            Item {
                width: parent.width
                height: trackedHeading.implicitHeight

                Label {
                    id: trackedHeading

                    text: qsTr("Currently tracked")
                    font: Tokens.displayM
                    Accessible.role: Accessible.Heading
                }

                Label {
                    anchors.right: parent.right
                    anchors.baseline: trackedHeading.baseline
                    text: qsTr("Live snapshot")
                    font: Tokens.caption1
                    color: Tokens.textTertiary
                }
            }

            EmptyState {
                objectName: "emptyState"
                width: parent.width
                visible: !root.presenter.anyApps
                symbol: "waveform.path"
                title: qsTr("No activity yet.")
                explanation: qsTr("Start an audio app and it'll show up here in real time.")
            }
        }
    }
}
