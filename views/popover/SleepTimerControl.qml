// The sleep timer: a menu of lengths while it is off, a countdown that cancels it while it runs.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property SleepTimerPresenter timer

    readonly property real capsuleOpacity: 0.16

    implicitWidth: timer.running ? countdown.implicitWidth : menuButton.width
    implicitHeight: 22

    MenuButton {
        id: menuButton

        visible: !root.timer.running
        width: 22
        height: 22
        text: qsTr("Sleep timer")
        tip: text
        menu: ChoiceMenu {
            choices: root.timer.menu
        }
        contentItem: Item {
            Symbol {
                anchors.centerIn: parent
                name: "moon.zzz"
                pointSize: 11
                weight: Font.Medium
                color: Tokens.textSecondary
            }
        }
    }

    PlainButton {
        id: countdown

        anchors.verticalCenter: parent.verticalCenter
        visible: root.timer.running
        horizontalPadding: 7
        verticalPadding: 2
        focusCorner: height / 2
        text: qsTr("Sleep timer — tap to cancel")
        tip: text
        Accessible.description: root.timer.remaining
        onClicked: root.timer.cancel()

        background: Rectangle {
            radius: height / 2
            color: Tokens.alpha(Tokens.brandSage, root.capsuleOpacity)
        }

        contentItem: Row {
            spacing: 4

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                name: "moon.fill"
                pointSize: 9
                color: Tokens.brandSage
            }

            Figures {
                anchors.verticalCenter: parent.verticalCenter
                text: root.timer.remaining
                font: Tokens.face(12, Font.Medium)
                color: Tokens.brandSage
                Accessible.ignored: true
            }
        }
    }
}
