// Auto-Duck: its state, its level and delay, and whom it concerns.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Card {
    id: root

    required property DuckPresenter duck

    title: qsTr("Auto-Duck")
    trailing: StatusTag {
        text: root.duck.statusText
        accent: root.duck.ducking ? Tokens.brandSage : Tokens.textSecondary
    }

    LabelledSlider {
        width: parent.width
        label: qsTr("Duck music to")
        valueText: root.duck.targetText
        value: root.duck.target
        onMoved: (value) => root.duck.setTarget(value)
    }

    LabelledSlider {
        width: parent.width
        label: qsTr("Restore delay")
        valueText: root.duck.delayText
        value: root.duck.delay
        onMoved: (value) => root.duck.setDelay(value)
    }

    NamesLine {
        width: parent.width
        title: qsTr("Triggered by these apps")
        countText: root.duck.triggerCountText
        names: root.duck.triggerNames
    }

    NamesLine {
        width: parent.width
        title: qsTr("Music apps that get ducked")
        countText: root.duck.duckedCountText
        names: root.duck.duckedNames
    }
}
