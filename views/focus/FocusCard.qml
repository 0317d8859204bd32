// The focus block: a ring for the phase, its buttons, its lengths, and the application that may keep playing.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Card {
    id: root

    required property FocusPresenter focusBlock

    readonly property real ringSide: 96
    readonly property real ringWidth: 7

    title: qsTr("Focus")

    Item {
        width: parent.width
        height: Math.max(ring.height, words.height)

        RingProgress {
            id: ring

            anchors.verticalCenter: parent.verticalCenter
            width: root.ringSide
            height: root.ringSide
            progress: root.focusBlock.progress
            useGradient: true
            lineWidth: root.ringWidth

            Column {
                anchors.centerIn: parent

                Figures {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: root.focusBlock.timeText
                    font: Tokens.metricLarge
                }

                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: root.focusBlock.phaseWord
                    font: Tokens.caption1
                    color: Tokens.textTertiary
                }
            }
        }

        Column {
            id: words

            anchors.left: ring.right
            anchors.leftMargin: Tokens.spacing.l
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Label {
                width: parent.width
                text: root.focusBlock.heading
                font: Tokens.cardTitle
            }

            Paragraph {
                width: parent.width
                bottomPadding: Tokens.spacing.s
                text: root.focusBlock.explanation
                font: Tokens.caption1
                color: Tokens.textSecondary
            }

            Flow {
                width: parent.width
                spacing: Tokens.spacing.s

                PrimaryButton {
                    id: mainAction

                    text: root.focusBlock.primaryText
                    symbol: root.focusBlock.primarySymbol
                    onClicked: root.focusBlock.primaryAction()
                }

                // As high as its neighbour, which the quieter button is not.
                Item {
                    visible: root.focusBlock.running
                    width: cancel.width
                    height: mainAction.height

                    GhostButton {
                        id: cancel

                        anchors.verticalCenter: parent.verticalCenter
                        text: qsTr("Cancel")
                        onClicked: root.focusBlock.cancel()
                    }
                }
            }
        }
    }

    LabelledSlider {
        width: parent.width
        label: qsTr("Focus duration")
        valueText: root.focusBlock.focusLengthText
        value: root.focusBlock.focusLength
        onMoved: (value) => root.focusBlock.setFocusLength(value)
    }

    LabelledSlider {
        width: parent.width
        label: qsTr("Break duration")
        valueText: root.focusBlock.breakLengthText
        value: root.focusBlock.breakLength
        onMoved: (value) => root.focusBlock.setBreakLength(value)
    }

    Item {
        width: parent.width
        height: appButton.height

        Label {
            id: appLabel

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Keep playing")
            font: Tokens.face(12)
            color: Tokens.textSecondary
            Accessible.ignored: true
        }

        MenuButton {
            id: appButton

            anchors.right: parent.right
            width: Math.min(implicitWidth, parent.width - appLabel.width - Tokens.spacing.m)
            text: qsTr("Keep playing: %1").arg(root.focusBlock.focusAppName)
            menu: ChoiceMenu {
                choices: root.focusBlock.appMenu
            }
            contentItem: MenuButtonLabel {
                text: root.focusBlock.focusAppName
                font: Tokens.face(12, Font.Medium)
            }
        }
    }
}
