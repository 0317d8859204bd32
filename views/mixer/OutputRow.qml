// The output device and the master level in one line.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property OutputPresenter output
    // The picker is cut before the slider becomes too short to use.
    property real widestPicker: 140

    readonly property MenuButtonLabel pickerLabel: picker.contentItem as MenuButtonLabel
    readonly property real gap: 10
    readonly property real iconBox: 16

    implicitHeight: Math.max(slider.height, picker.implicitHeight)

    Item {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        width: root.iconBox
        height: root.iconBox

        Symbol {
            anchors.centerIn: parent
            name: root.output.deviceIcon
            pointSize: 12
            color: Tokens.textSecondary
        }
    }

    MenuButton {
        id: picker

        anchors.left: icon.right
        anchors.leftMargin: root.gap
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, root.widestPicker)
        text: qsTr("Output device: %1").arg(root.output.deviceName)
        tip: root.pickerLabel && root.pickerLabel.truncated ? root.output.deviceName : ""
        menu: ChoiceMenu {
            choices: root.output.deviceMenu
        }
        contentItem: MenuButtonLabel {
            text: root.output.deviceName
            font: Tokens.face(12, Font.Medium)
        }
    }

    LevelSlider {
        id: slider

        x: picker.x + (root.pickerLabel ? root.pickerLabel.shownWidth : picker.width) + root.gap
        width: parent.width - x
        anchors.verticalCenter: parent.verticalCenter
        height: 18
        label: qsTr("Output volume")
        value: root.output.masterGain
        isLive: root.output.live
        onMoved: (value) => root.output.setMasterGain(value)
    }
}
