// What the program is and which one.
import QtQuick
import Quillmere.Design
import Quillmere.Views

AppBackdrop {
    id: root

    required property AboutPresenter presenter

    readonly property real logoSize: 64
    readonly property real wordmarkHeight: 20

    width: 320
    height: column.implicitHeight

    Accessible.role: Accessible.Dialog
    Accessible.name: qsTr("About quillmere")

    Column {
        id: column

        width: root.width
        topPadding: Tokens.spacing.xxl
        bottomPadding: Tokens.spacing.xl
        spacing: Tokens.spacing.m

        BrandLogo {
            anchors.horizontalCenter: parent.horizontalCenter
            size: root.logoSize
        }

        Item {
            width: 1
            height: Tokens.spacing.xs
        }

        Wordmark {
            anchors.horizontalCenter: parent.horizontalCenter
            height: root.wordmarkHeight
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: root.presenter.versionText
            font: Tokens.caption1
            color: Tokens.textSecondary
        }

        Paragraph {
            x: Tokens.spacing.xl
            width: parent.width - 2 * x
            text: root.presenter.purpose
            color: Tokens.textSecondary
            horizontalAlignment: Text.AlignHCenter
        }

        Item {
            width: 1
            height: Tokens.spacing.xs
        }

        GhostButton {
            anchors.horizontalCenter: parent.horizontalCenter
            focus: true
            text: qsTr("Close")
            onClicked: root.Window.window.close()
        }
    }

    Keys.onEscapePressed: root.Window.window.close()
}
