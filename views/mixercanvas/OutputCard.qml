// The output device and the master level.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Surface {
    id: root

    required property OutputPresenter output

    readonly property real tileSide: 44
    readonly property real tileFill: 0.14
    readonly property real sliderWidth: 240

    implicitHeight: tileSide + 2 * padding
    corner: Tokens.corner.tile
    padding: Tokens.spacing.l

    Rectangle {
        id: tile

        width: root.tileSide
        height: root.tileSide
        radius: Tokens.corner.card
        color: Tokens.alpha(Tokens.brandSage, root.tileFill)

        Symbol {
            objectName: "deviceIcon"
            anchors.centerIn: parent
            name: root.output.deviceIcon
            pointSize: 18
            color: Tokens.brandSage
        }
    }

    Column {
        anchors.left: tile.right
        anchors.leftMargin: Tokens.spacing.m
        anchors.right: percent.left
        anchors.rightMargin: Tokens.spacing.m
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        SectionCaps {
            text: qsTr("Output")
        }

        MenuButton {
            width: Math.min(implicitWidth, parent.width)
            text: qsTr("Output device: %1").arg(root.output.deviceName)
            menu: ChoiceMenu {
                choices: root.output.deviceMenu
            }
            contentItem: MenuButtonLabel {
                text: root.output.deviceName
                font: Tokens.cardTitle
                chevron: "chevron.down"
            }
        }
    }

    Figures {
        id: percent

        objectName: "masterPercent"
        anchors.right: slider.left
        anchors.rightMargin: Tokens.spacing.m
        anchors.verticalCenter: parent.verticalCenter
        text: root.output.percentText
        font: Tokens.face(13, Font.Medium)
        color: Tokens.textSecondary
    }

    LevelSlider {
        id: slider

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: root.sliderWidth
        height: 20
        label: qsTr("Output volume")
        value: root.output.masterGain
        isLive: root.output.live
        onMoved: (value) => root.output.setMasterGain(value)
    }
}
