// The mixer's page: the mix at a glance, the output, and every application.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property MixerCanvasPresenter presenter

    readonly property real heroHeight: 104
    readonly property real wideName: 180
    readonly property real tileSide: 44
    readonly property font figureFont: Tokens.face(12, Font.Medium)
    // What the list's card looks like over the canvas.
    readonly property color cardGround: Qt.tint(Tokens.canvasBG, Tokens.cardBG)

    Item {
        id: hero

        width: parent.width
        height: root.heroHeight

        Column {
            id: heroWords

            anchors.verticalCenter: parent.verticalCenter
            anchors.left: parent.left
            width: parent.width - wave.width - Tokens.spacing.xl
            spacing: Tokens.spacing.xs

            Label {
                width: parent.width
                text: root.presenter.greeting
                font: Tokens.tracked(Tokens.displayXL, -0.5)
            }

            Paragraph {
                width: parent.width
                text: root.presenter.subtitle
                font: Tokens.face(15)
                color: Tokens.textSecondary
            }
        }

        Surface {
            id: wave

            anchors.right: parent.right
            width: Math.round(parent.width * 0.42)
            height: parent.height
            corner: Tokens.corner.tile

            LiveSignalWave {
                anchors.fill: parent
                liveCount: root.presenter.liveCount
                averageGain: root.presenter.averageGain
                color: Tokens.brandSage
            }
        }
    }

    Surface {
        id: outputCard

        anchors.top: hero.bottom
        anchors.topMargin: Tokens.spacing.l
        width: parent.width
        height: root.tileSide + 2 * padding
        corner: Tokens.corner.tile

        Rectangle {
            id: outputTile

            width: root.tileSide
            height: root.tileSide
            radius: Tokens.corner.card
            color: Tokens.alpha(Tokens.brandSage, 0.14)

            Symbol {
                anchors.centerIn: parent
                name: root.presenter.output.deviceIcon
                pointSize: 18
                color: Tokens.brandSage
            }
        }

        Column {
            anchors.left: outputTile.right
            anchors.leftMargin: Tokens.spacing.m
            anchors.right: outputPercent.left
            anchors.rightMargin: Tokens.spacing.m
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            SectionCaps {
                text: qsTr("Output")
            }

            MenuButton {
                width: Math.min(implicitWidth, parent.width)
                text: qsTr("Output device: %1").arg(root.presenter.output.deviceName)
                menu: ChoiceMenu {
                    choices: root.presenter.output.deviceMenu
                }
                contentItem: MenuButtonLabel {
                    text: root.presenter.output.deviceName
                    font: Tokens.cardTitle
                    chevron: "chevron.down"
                }
            }
        }

        Figures {
            id: outputPercent

            anchors.right: outputSlider.left
            anchors.rightMargin: Tokens.spacing.m
            anchors.verticalCenter: parent.verticalCenter
            text: root.presenter.output.percentText
            font: root.figureFont
            color: Tokens.textSecondary
        }

        LevelSlider {
            id: outputSlider

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: 240
            height: 20
            label: qsTr("Output volume")
            value: root.presenter.output.masterGain
            isLive: root.presenter.output.live
            onMoved: (value) => root.presenter.output.setMasterGain(value)
        }
    }

    Item {
        id: appsTitle

        anchors.top: outputCard.bottom
        anchors.topMargin: Tokens.spacing.l
        width: parent.width
        height: 16

        SectionCaps {
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Apps")
        }

        Row {
            anchors.right: parent.right
            height: parent.height
            spacing: 6
            visible: root.presenter.liveCount > 0

            LivePulse {
                anchors.verticalCenter: parent.verticalCenter
                color: Tokens.brandCoral
            }

            Figures {
                anchors.verticalCenter: parent.verticalCenter
                text: root.presenter.liveCountText
                font: root.figureFont
                color: Tokens.brandCoral
            }
        }
    }

    Panel {
        id: listCard

        readonly property real room: root.height - y

        anchors.top: appsTitle.bottom
        anchors.topMargin: Tokens.spacing.s
        width: parent.width
        // As high as its rows, as far as there is room; an empty one takes all of it.
        height: root.presenter.anyApps ? Math.min(room, list.contentHeight + 2 * Tokens.spacing.s) : room
        radius: Tokens.corner.tile
        color: Tokens.cardBG

        ListView {
            id: list

            objectName: "rows"
            // Rows that scroll go on to the card's edge.
            anchors.fill: parent
            anchors.leftMargin: Tokens.spacing.s
            anchors.rightMargin: Tokens.spacing.s
            anchors.topMargin: 1
            anchors.bottomMargin: 1
            topMargin: Tokens.spacing.s - 1
            bottomMargin: Tokens.spacing.s - 1
            interactive: contentHeight + topMargin + bottomMargin > height
            clip: interactive
            spacing: 2
            model: root.presenter.rows
            boundsBehavior: Flickable.StopAtBounds
            cacheBuffer: 8000

            Accessible.role: Accessible.List
            Accessible.name: qsTr("Apps")

            delegate: FocusScope {
                id: element

                required property int index
                required property AppRowPresenter row

                width: ListView.view.width
                implicitHeight: appRow.height + (tabsList ? tabsList.height : 0)

                readonly property bool hasTabs: !row.tabs.isEmpty
                property BrowserTabsList tabsList: null

                function followTabs(): void {
                    if (hasTabs && !tabsList) {
                        tabsList = tabsMaker.createObject(element) as BrowserTabsList;
                    } else if (!hasTabs && tabsList) {
                        tabsList.destroy();
                        tabsList = null;
                    }
                }

                onHasTabsChanged: followTabs()
                Component.onCompleted: followTabs()

                onActiveFocusChanged: if (activeFocus) ListView.view.positionViewAtIndex(index, ListView.Contain)

                AppRow {
                    id: appRow

                    width: parent.width
                    height: 44
                    nameWidth: root.wideName
                    percentFont: root.figureFont
                    row: element.row
                }

                Component {
                    id: tabsMaker

                    BrowserTabsList {
                        x: 30
                        y: appRow.height
                        width: element.width - x
                        height: implicitHeight
                        tabs: element.row.tabs
                        browserName: element.row.name
                    }
                }
            }

            add: Transition {
                EaseOut {
                    property: "opacity"
                    from: 0
                    to: 1
                    seconds: 0.2
                }
            }
            displaced: Transition {
                EaseOut {
                    property: "y"
                    seconds: 0.2
                }
                EaseOut {
                    property: "opacity"
                    to: 1
                    seconds: 0.2
                }
            }
            move: Transition {
                EaseOut {
                    property: "y"
                    seconds: 0.2
                }
            }
        }

        ScrollFade {
            list: list
            ground: root.cardGround
        }

        ScrollThumb {
            list: list
            anchors.rightMargin: -Tokens.spacing.xs
        }

        Column {
            anchors.centerIn: parent
            spacing: 10
            visible: !root.presenter.anyApps

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "waveform"
                pointSize: 26
                weight: Font.Light
                color: Tokens.textTertiary
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Nothing's playing.")
                font: Tokens.bodyEmphasis
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Apps appear here the moment they make any sound.")
                color: Tokens.textSecondary
            }
        }
    }
}
