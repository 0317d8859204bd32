// Auto-Duck's page: how far music goes down, and which applications are concerned.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property AutoDuckCanvasPresenter presenter

    CanvasPage {
        anchors.fill: parent

        CanvasTitle {
            section: qsTr("Auto-Duck")
            title: qsTr("Let the music get out of the way")
            subtitle: qsTr("When a meeting app activates the microphone, quillmere fades music apps to a low level and restores them when the call ends.")
        }

        Surface {
            width: parent.width

            Column {
                width: parent.width
                spacing: Tokens.spacing.l

                SliderRow {
                    width: parent.width
                    label: qsTr("Duck music to")
                    valueText: root.presenter.targetText
                    value: root.presenter.target
                    onMoved: (value) => root.presenter.setTarget(value)
                }

                SliderRow {
                    width: parent.width
                    label: qsTr("Fade duration")
                    valueText: root.presenter.fadeText
                    value: root.presenter.fade
                    onMoved: (value) => root.presenter.setFade(value)
                }

                SliderRow {
                    width: parent.width
                    label: qsTr("Restore delay")
                    valueText: root.presenter.delayText
                    value: root.presenter.delay
                    help: qsTr("Wait this long after a call ends before restoring volume — prevents flicker if you immediately rejoin.")
                    onMoved: (value) => root.presenter.setDelay(value)
                }
            }
        }

        DuckListCard {
            objectName: "triggers"
            width: parent.width
            title: qsTr("Triggered by these apps")
            subtitle: qsTr("When any of these activate the mic, music ducks.")
            addLabel: qsTr("Add trigger app")
            apps: root.presenter.triggers
            onAdd: root.presenter.addTrigger()
        }

        DuckListCard {
            objectName: "ducked"
            width: parent.width
            title: qsTr("Music apps that get ducked")
            subtitle: qsTr("These are the apps quillmere fades down. Anything not on this list keeps playing at normal volume.")
            addLabel: qsTr("Add music app")
            apps: root.presenter.ducked
            onAdd: root.presenter.addDucked()
        }
    }

    AppPicker {
        picker: root.presenter.picker
    }
}
