// The greeting.
import QtQuick
import Quillmere.Design

StepShell {
    id: root

    readonly property real widestText: 480

    spacing: 32

    Item {
        width: parent.width
        height: mark.height + 2 * mark.y

        Wordmark {
            id: mark

            y: 8
            anchors.horizontalCenter: parent.horizontalCenter
            defaultHeight: 44
            color: Tokens.textPrimary
        }
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(root.widestText, parent.width)
        spacing: 10

        CentredText {
            objectName: "headline"
            width: parent.width
            text: qsTr("The per-app volume mixer macOS forgot to ship.")
            font: Tokens.tracked(Tokens.face(26, Font.DemiBold), -0.5)
            Accessible.role: Accessible.Heading
        }

        CentredText {
            width: parent.width
            text: qsTr("Find the app that's making noise. Auto-duck music when calls start. One slider per app — finally.")
            color: Tokens.textSecondary
        }
    }

    Flow {
        id: pills

        // As wide as its pills, so that they stand in the middle.
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(parent.width, first.width + second.width + third.width + 2 * spacing)
        spacing: Tokens.spacing.s

        FeaturePill {
            id: first

            icon: "bolt.fill"
            text: qsTr("Mystery Sound Finder")
        }

        FeaturePill {
            id: second

            icon: "waveform.badge.minus"
            text: qsTr("Auto-Duck calls")
        }

        FeaturePill {
            id: third

            icon: "moon.fill"
            text: qsTr("Focus profiles")
        }
    }
}
