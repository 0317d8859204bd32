// The focus page: the running phase as a ring, the block's lengths, and who may keep playing.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property FocusCanvasPresenter presenter

    CanvasPage {
        anchors.fill: parent

        CanvasTitle {
            section: qsTr("Focus")
            title: qsTr("Pomodoro for your audio")
            subtitle: qsTr("Run a focus block. quillmere mutes everything except your designated focus app, then restores on break. Optional: keep one app (white noise, lo-fi) playing the whole time.")
        }

        FocusHero {
            width: parent.width
            presenter: root.presenter
        }

        Surface {
            width: parent.width

            Column {
                width: parent.width
                spacing: Tokens.spacing.l

                Label {
                    width: parent.width
                    text: qsTr("Cycle settings")
                    font: Tokens.cardTitle
                    Accessible.role: Accessible.Heading
                }

                SliderRow {
                    width: parent.width
                    label: qsTr("Focus duration")
                    valueText: root.presenter.focusLengthText
                    value: root.presenter.focusLength
                    step: root.presenter.focusStep
                    onMoved: (value) => root.presenter.setFocusLength(value)
                }

                SliderRow {
                    width: parent.width
                    label: qsTr("Break duration")
                    valueText: root.presenter.breakLengthText
                    value: root.presenter.breakLength
                    step: root.presenter.breakStep
                    onMoved: (value) => root.presenter.setBreakLength(value)
                }

                Hairline {
                    width: parent.width
                }

                FocusAppPicker {
                    width: parent.width
                    presenter: root.presenter
                }
            }
        }
    }

    AppPicker {
        picker: root.presenter.picker
    }
}
