// The sheet that adds an application to a list: a filter, what runs, what is installed, and a way to any other.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quillmere.Design
import Quillmere.Views

T.Popup {
    id: root

    required property AppPickerPresenter picker

    readonly property real side: 480
    readonly property real dimming: 0.5

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(side, (parent ? parent.width : side) - 2 * Tokens.spacing.m)
    height: Math.min(side, (parent ? parent.height : side) - 2 * Tokens.spacing.m)
    padding: 0
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    visible: picker.open

    property FocusReturn focusReturn: FocusReturn {}

    onAboutToShow: {
        focusReturn.take(root.parent);
        list.currentIndex = -1;
        list.positionViewAtBeginning();
    }
    onOpened: search.forceActiveFocus(Qt.TabFocusReason)
    onClosed: {
        picker.close();
        focusReturn.giveBack();
    }

    T.Overlay.modal: Rectangle {
        color: Tokens.alpha(Tokens.black, root.dimming) // qmllint disable unqualified
    }

    background: Item {
        Elevated {
            anchors.fill: parent
            corner: Tokens.corner.tile
            elevation: Tokens.elevation.hero
        }

        Panel {
            anchors.fill: parent
            radius: Tokens.corner.tile
            color: Tokens.canvasBG
            stroke: Tokens.cardStrokeHover
        }
    }

    FocusScope {
        anchors.fill: parent
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: title.text

        Item {
            id: header

            width: parent.width
            height: closer.height + 2 * Tokens.spacing.l

            Label {
                id: title

                anchors.left: parent.left
                anchors.leftMargin: Tokens.spacing.l
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Add an app")
                font: Tokens.displayM
            }

            SubtleIconButton {
                id: closer

                anchors.right: parent.right
                anchors.rightMargin: Tokens.spacing.l
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Close")
                symbol: "xmark"
                symbolSize: 11
                onClicked: root.close()
            }
        }

        Panel {
            id: searchBar

            anchors.top: header.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: Tokens.spacing.l
            anchors.rightMargin: Tokens.spacing.l
            height: search.implicitHeight + Tokens.spacing.s
            radius: Tokens.spacing.s
            color: Tokens.cardBG
            stroke: search.activeFocus ? Tokens.cardStrokeSelected : Tokens.cardStroke

            Symbol {
                id: glass

                anchors.left: parent.left
                anchors.leftMargin: Tokens.spacing.s
                anchors.verticalCenter: parent.verticalCenter
                name: "magnifyingglass"
                pointSize: 12
                color: Tokens.textTertiary
            }

            InputField {
                id: search

                anchors.left: glass.right
                anchors.leftMargin: Tokens.spacing.s
                anchors.right: parent.right
                anchors.rightMargin: Tokens.spacing.s
                anchors.verticalCenter: parent.verticalCenter
                framed: false
                focus: true
                label: qsTr("Filter")
                placeholderText: qsTr("Filter…")
                text: root.picker.query
                onEdited: (text) => {
                    root.picker.query = text;
                    list.currentIndex = text.length > 0 && list.count > 0 ? 0 : -1;
                    list.positionViewAtBeginning();
                }

                // What the scan brings after the last key is the first of the list too.
                Connections {
                    target: list

                    function onCountChanged(): void {
                        if (search.length > 0 && list.count > 0 && list.currentIndex < 0)
                            list.currentIndex = 0;
                    }
                }

                Keys.onDownPressed: list.incrementCurrentIndex()
                Keys.onUpPressed: list.decrementCurrentIndex()
                Keys.onReturnPressed: root.picker.pick(list.currentIndex)
                Keys.onEnterPressed: root.picker.pick(list.currentIndex)
            }
        }

        AppPickerList {
            id: list

            objectName: "pickerList"
            anchors.top: searchBar.bottom
            anchors.topMargin: Tokens.spacing.s
            anchors.bottom: footer.top
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: Tokens.spacing.s
            anchors.rightMargin: Tokens.spacing.s
            showsCurrent: activeFocus || search.activeFocus
            model: root.picker.apps
            onPicked: (row) => root.picker.pick(row)
        }

        ScrollFade {
            list: list
        }

        ScrollThumb {
            list: list
            anchors.rightMargin: -Tokens.spacing.xs
        }

        Column {
            objectName: "emptyState"
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: list.top
            topPadding: Tokens.spacing.xxl
            spacing: 8
            visible: list.count === 0

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "magnifyingglass"
                pointSize: 20
                color: Tokens.textTertiary
            }

            Label {
                objectName: "emptyText"
                anchors.horizontalCenter: parent.horizontalCenter
                text: root.picker.emptyText
                color: Tokens.textSecondary
            }
        }

        Item {
            id: footer

            anchors.bottom: parent.bottom
            width: parent.width
            height: cancel.height + 2 * Tokens.spacing.m

            Hairline {
                width: parent.width
            }

            Label {
                objectName: "resultText"
                anchors.left: parent.left
                anchors.leftMargin: Tokens.spacing.l
                anchors.right: buttons.left
                anchors.rightMargin: Tokens.spacing.s
                anchors.verticalCenter: parent.verticalCenter
                text: root.picker.resultText
                font: Tokens.caption1
                color: Tokens.textTertiary
            }

            Row {
                id: buttons

                anchors.right: parent.right
                anchors.rightMargin: Tokens.spacing.l
                anchors.verticalCenter: parent.verticalCenter
                spacing: Tokens.spacing.s

                GhostButton {
                    text: qsTr("Browse Applications…")
                    onClicked: root.picker.browse()
                }

                GhostButton {
                    id: cancel

                    text: qsTr("Cancel")
                    onClicked: root.close()
                }
            }
        }
    }

    enter: Transition {
        EaseOut {
            property: "opacity"
            from: 0
            to: 1
            seconds: 0.15
        }
    }

    exit: Transition {
        EaseOut {
            property: "opacity"
            to: 0
            seconds: 0.12
        }
    }
}
