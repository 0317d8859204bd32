// The running phase: a ring with the time, words, and what can be done next.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Surface {
    id: root

    required property FocusCanvasPresenter presenter

    readonly property real ringSide: 130
    readonly property real ringWidth: 8
    readonly property real trackOpacity: 0.06

    padding: Tokens.spacing.xl
    corner: Tokens.corner.tile
    elevated: true

    Item {
        width: parent.width
        height: Math.max(ring.height, words.height)

        RingProgress {
            id: ring

            objectName: "ring"
            anchors.verticalCenter: parent.verticalCenter
            width: root.ringSide
            height: root.ringSide
            progress: root.presenter.progress
            track: Tokens.alpha(Tokens.white, root.trackOpacity)
            useGradient: true
            lineWidth: root.ringWidth

            Accessible.role: Accessible.ProgressBar
            Accessible.name: qsTr("%1, %2", "ready, 25:00").arg(root.presenter.phaseWord).arg(root.presenter.timeText)

            Column {
                anchors.centerIn: parent

                Figures {
                    objectName: "time"
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: root.presenter.timeText
                    font: Tokens.metricLarge
                }

                Label {
                    objectName: "phase"
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: root.presenter.phaseWord
                    font: Tokens.caption1
                    color: Tokens.textTertiary
                }
            }
        }

        Column {
            id: words

            anchors.left: ring.right
            anchors.leftMargin: Tokens.spacing.xl
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Tokens.spacing.xs

            Label {
                objectName: "heading"
                width: parent.width
                text: root.presenter.heading
                font: Tokens.displayL
                Accessible.role: Accessible.Heading
            }

            Paragraph {
                objectName: "explanation"
                width: parent.width
                bottomPadding: Tokens.spacing.m
                text: root.presenter.explanation
                color: Tokens.textSecondary
            }

            Flow {
                width: parent.width
                spacing: Tokens.spacing.s

                PrimaryButton {
                    id: mainAction

                    objectName: "primary"
                    text: root.presenter.primaryText
                    symbol: root.presenter.primarySymbol
                    large: true
                    onClicked: root.presenter.primaryAction()
                }

                // As high as its neighbour, which the quieter button is not.
                Item {
                    visible: root.presenter.running
                    width: cancel.width
                    height: mainAction.height

                    GhostButton {
                        id: cancel

                        anchors.verticalCenter: parent.verticalCenter
                        text: qsTr("Cancel")
                        onClicked: root.presenter.cancel()
                    }
                }
            }
        }
    }
}
