// The popover: header, master, what sounds, the duck banner, and a footer.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Rectangle {
    id: root

    required property MixerPanelPresenter presenter

    // The list scrolls only where the whole would not fit on the screen, and the whole where even a short list wouldn't.
    readonly property real screenMargin: 48
    readonly property real leastMargin: 12
    readonly property real leastList: 110
    // What the screen has for it.
    property real room: Math.min(Screen.height, Screen.desktopAvailableHeight)
    readonly property real tallest: Math.max(room - screenMargin, Math.min(chrome + leastList, room - leastMargin))
    readonly property real gap: 10
    readonly property real countFadeSeconds: 0.15
    readonly property real chrome: column.topPadding + header.height + outputSection.height + listTitle.height
                                   + listGap + Tokens.spacing.xs + banner.height + footer.height + column.bottomPadding
    readonly property real listGap: 6

    width: 340
    height: Math.min(column.implicitHeight, tallest)
    color: Tokens.canvasBG

    HoverGuard {}

    Flickable {
        objectName: "whole"
        anchors.fill: parent
        contentHeight: column.implicitHeight
        interactive: contentHeight > height
        clip: interactive
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: column

            width: root.width
            topPadding: Tokens.spacing.s
            bottomPadding: Tokens.spacing.s

            // Header.
            Item {
                id: header

                width: parent.width
                height: whisperButton.height + Tokens.spacing.s

                Wordmark {
                    anchors.left: parent.left
                    anchors.leftMargin: Tokens.spacing.l
                    anchors.verticalCenter: whisperButton.verticalCenter
                    color: Tokens.textPrimary
                }

                SubtleIconButton {
                    id: whisperButton

                    anchors.right: openButton.left
                    anchors.rightMargin: root.gap
                    text: root.presenter.whisperToolTip
                    onClicked: root.presenter.toggleWhisper()
                    contentItem: Item {
                        ShushIcon {
                            anchors.centerIn: parent
                            size: 14
                            color: Tokens[root.presenter.whisperColor]
                            Accessible.ignored: true
                        }
                    }
                }

                SubtleIconButton {
                    id: openButton

                    anchors.right: parent.right
                    anchors.rightMargin: Tokens.spacing.l
                    text: qsTr("Open quillmere window")
                    symbol: "arrow.up.right.square"
                    symbolSize: 12
                    onClicked: root.presenter.openWindow()
                }
            }

            // Output.
            Item {
                id: outputSection

                width: parent.width
                height: outputTitle.height + 6 + outputRow.height + 2 * Tokens.spacing.s

                HoverHandler {
                    onHoveredChanged: root.presenter.output.hovering = hovered
                }

                Item {
                    id: outputTitle

                    x: Tokens.spacing.l
                    y: Tokens.spacing.s
                    width: parent.width - 2 * x
                    height: 14

                    SectionCaps {
                        anchors.left: parent.left
                        anchors.verticalCenter: parent.verticalCenter
                        text: qsTr("Output")
                    }

                    Label {
                        objectName: "masterPercent"
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        text: root.presenter.output.percentText
                        font: Tokens.metric
                        color: Tokens.textSecondary
                        opacity: root.presenter.output.percentVisible ? 1 : 0
                        Behavior on opacity {
                            EaseOut { seconds: 0.15 }
                        }
                    }
                }

                OutputRow {
                    id: outputRow

                    anchors.top: outputTitle.bottom
                    anchors.topMargin: 6
                    x: Tokens.spacing.l
                    width: parent.width - 2 * x
                    output: root.presenter.output
                }
            }

            // What sounds.
            Item {
                width: parent.width
                height: listTitle.height + root.listGap + Math.max(list.height, emptyState.visible ? emptyState.height : 0)
                        + Tokens.spacing.xs

                Item {
                    id: listTitle

                    x: Tokens.spacing.l
                    width: parent.width - 2 * x
                    height: 14

                    SectionCaps {
                        anchors.left: parent.left
                        anchors.verticalCenter: parent.verticalCenter
                        text: qsTr("Now playing")
                    }

                    Row {
                        objectName: "liveCount"
                        anchors.right: parent.right
                        height: parent.height
                        spacing: 4
                        opacity: root.presenter.anyLive ? 1 : 0
                        visible: opacity > 0
                        Behavior on opacity {
                            EaseOut { seconds: root.countFadeSeconds }
                        }

                        LivePulse {
                            anchors.verticalCenter: parent.verticalCenter
                            color: Tokens.brandCoral
                        }

                        Label {
                            anchors.verticalCenter: parent.verticalCenter
                            text: root.presenter.liveCountText
                            font: Tokens.metric
                            color: Tokens.brandCoral
                        }
                    }
                }

                AppListView {
                    id: list

                    objectName: "rows"
                    anchors.top: listTitle.bottom
                    anchors.topMargin: root.listGap
                    x: Tokens.spacing.s
                    width: parent.width - 2 * x
                    height: Math.min(contentHeight, Math.max(root.leastList, root.tallest - root.chrome))
                    spacing: 1
                    model: root.presenter.rows
                    Accessible.name: qsTr("Now playing")

                    delegate: AppElement {
                        id: element

                        width: ListView.view.width
                        rowHeight: appRow.rowHeight
                        tabsGap: 1

                        tabsList: CompactTabsList {
                            tabs: element.row.tabs
                        }

                        AppRow {
                            id: appRow

                            width: parent.width
                            row: element.row
                            tipTarget: list
                        }
                    }
                }

                ScrollFade {
                    list: list
                    depth: 12
                    marksMore: true
                }

                ScrollThumb {
                    list: list
                    anchors.rightMargin: -Tokens.spacing.s + 2
                }

                Column {
                    id: emptyState

                    objectName: "emptyState"
                    anchors.top: listTitle.bottom
                    anchors.topMargin: root.listGap
                    width: parent.width
                    topPadding: 22
                    bottomPadding: 22
                    spacing: 8
                    visible: !root.presenter.anyLive

                    Symbol {
                        anchors.horizontalCenter: parent.horizontalCenter
                        name: "waveform"
                        pointSize: 22
                        weight: Font.Light
                        color: Tokens.textTertiary
                    }

                    Label {
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: qsTr("Quiet right now.")
                        font: Tokens.bodyEmphasis
                        color: Tokens.textSecondary
                    }

                    Label {
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: qsTr("Apps appear here when they make sound.")
                        font: Tokens.caption1
                        color: Tokens.textTertiary
                    }

                    Item {
                        anchors.horizontalCenter: parent.horizontalCenter
                        width: openGhost.implicitWidth
                        height: openGhost.implicitHeight + 4

                        GhostButton {
                            id: openGhost

                            y: 4
                            text: qsTr("Open quillmere")
                            symbol: "arrow.up.right.square"
                            onClicked: root.presenter.openWindow()
                        }
                    }
                }
            }

            DuckBanner {
                id: banner

                width: parent.width
                shown: root.presenter.bannerShown
                text: root.presenter.bannerText
            }

            // Footer.
            Item {
                id: footer

                width: parent.width
                height: Tokens.spacing.xs + Tokens.spacing.s + quitButton.height + Tokens.spacing.s

                MenuButton {
                    id: profileButton

                    anchors.left: parent.left
                    anchors.leftMargin: Tokens.spacing.l
                    anchors.verticalCenter: quitButton.verticalCenter
                    width: Math.min(implicitWidth, sleepControl.x - x - 6)
                    text: qsTr("Profile: %1").arg(root.presenter.profiles.activeName)
                    menu: ChoiceMenu {
                        choices: root.presenter.profiles.menu
                    }
                    contentItem: MenuButtonLabel {
                        symbol: "rectangle.stack"
                        symbolSize: 11
                        text: root.presenter.profiles.activeName
                        color: Tokens.textSecondary
                        gap: 4
                    }
                }

                SleepTimerControl {
                    id: sleepControl

                    anchors.right: quitButton.left
                    anchors.rightMargin: 6
                    anchors.verticalCenter: quitButton.verticalCenter
                    timer: root.presenter.sleepTimer
                }

                SubtleIconButton {
                    id: quitButton

                    anchors.right: parent.right
                    anchors.rightMargin: Tokens.spacing.l
                    anchors.bottom: parent.bottom
                    anchors.bottomMargin: Tokens.spacing.s
                    text: qsTr("Quit quillmere")
                    symbol: "power"
                    symbolSize: 10
                    onClicked: root.presenter.quit()
                }
            }
        }
    }

    // The edge of a window that has no frame.
    Rectangle {
        objectName: "edge"
        anchors.fill: parent
        color: Tokens.clear
        border.width: 1
        border.color: Tokens.windowStroke
    }
}
