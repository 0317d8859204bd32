// The mix as a wave, with the number of its sources.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property MixerCanvasPresenter presenter

    readonly property real leastHeight: 150
    readonly property real fill: 0.045
    readonly property real gap: 14
    readonly property real wavePadding: 18
    readonly property real capsuleHeight: 4
    readonly property real trackFill: 0.06
    // The capsule fills up with the sources, to its whole width with so many.
    readonly property int sourcesForFull: 3
    readonly property real capsuleFill: Math.min(presenter.liveCount / sourcesForFull, 1)
    // On its way there. The share moves, not the width: the first one and a window's new size are there at once.
    property real shownFill: capsuleFill

    Behavior on shownFill {
        EaseOut { seconds: 0.4 }
    }

    implicitHeight: leastHeight

    Elevated {
        anchors.fill: parent
        corner: Tokens.corner.tile
        elevation: Tokens.elevation.hero
    }

    Panel {
        anchors.fill: parent
        radius: Tokens.corner.tile
        color: Tokens.alpha(Tokens.white, root.fill)
        stroke: Tokens.cardStroke
    }

    Item {
        anchors.fill: parent
        anchors.margins: Tokens.spacing.l

        StatusTag {
            id: tag

            objectName: "liveTag"
            text: root.presenter.liveTag
            accent: root.presenter.anyLive ? Tokens.brandCoral : Tokens.textTertiary
            showsDot: root.presenter.anyLive
            pulses: root.presenter.anyLive
        }

        Figures {
            objectName: "sources"
            anchors.right: parent.right
            anchors.verticalCenter: tag.verticalCenter
            text: root.presenter.sourcesText
            font: Tokens.caption1
            color: Tokens.textSecondary
        }

        LiveSignalWave {
            objectName: "wave"
            anchors.top: tag.bottom
            anchors.topMargin: root.gap
            anchors.bottom: capsule.top
            anchors.bottomMargin: Tokens.spacing.s
            anchors.left: parent.left
            anchors.leftMargin: root.wavePadding
            anchors.right: parent.right
            anchors.rightMargin: root.wavePadding
            liveCount: root.presenter.liveCount
            averageGain: root.presenter.averageGain
            color: Tokens.brandSage
            lineWidth: 2.6
        }

        Rectangle {
            id: capsule

            anchors.bottom: parent.bottom
            width: parent.width
            height: root.capsuleHeight
            radius: height / 2
            color: Tokens.alpha(Tokens.white, root.trackFill)

            Rectangle {
                objectName: "capsuleFill"
                width: Math.round(parent.width * root.shownFill)
                height: parent.height
                radius: height / 2
                visible: width > 0
                color: Tokens.alpha(Tokens.brandSage, 0.55)
            }
        }
    }
}
