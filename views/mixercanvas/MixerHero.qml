// The mixer's greeting, its Whisper button, and the wave.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property MixerCanvasPresenter presenter

    readonly property real gap: 14
    readonly property real column: Math.floor((width - gap) / 2)

    implicitHeight: Math.max(words.implicitHeight, wave.implicitHeight)

    Column {
        id: words

        width: root.column
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        Row {
            spacing: 6

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                name: "slider.horizontal.3"
                pointSize: 11
                weight: Font.Medium
                color: Tokens.brandSage
            }

            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Live mixer")
                font: Tokens.captionStrong
                color: Tokens.textSecondary
            }
        }

        Paragraph {
            objectName: "greeting"
            width: parent.width
            text: root.presenter.greeting
            font: Tokens.tracked(Tokens.heroDisplay, -0.6)
            Accessible.role: Accessible.Heading
        }

        Paragraph {
            objectName: "subtitle"
            width: parent.width
            bottomPadding: 4
            text: root.presenter.subtitle
            font: Tokens.face(15)
            color: Tokens.textSecondary
        }

        WhisperButton {
            text: root.presenter.whisperText
            on: root.presenter.whisperOn
            onClicked: root.presenter.toggleWhisper()
        }
    }

    WaveCard {
        id: wave

        anchors.right: parent.right
        width: root.column
        height: parent.height
        presenter: root.presenter
    }
}
