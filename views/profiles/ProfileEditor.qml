// Edits a copy of one profile; the footer writes it back, drops it, or acts on the stored one.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property ProfileEditorPresenter editor

    readonly property real edge: Tokens.spacing.xl

    Column {
        id: top

        x: root.edge
        y: Tokens.spacing.xl
        width: parent.width - 2 * root.edge
        spacing: Tokens.spacing.l

        Item {
            width: parent.width
            height: heading.height

            Column {
                id: heading

                anchors.left: parent.left
                anchors.right: tags.left
                anchors.rightMargin: Tokens.spacing.m
                spacing: 2

                SectionCaps {
                    width: parent.width
                    text: qsTr("Edit profile")
                }

                Label {
                    objectName: "title"
                    width: parent.width
                    text: root.editor.title
                    font: Tokens.displayL
                    horizontalAlignment: Text.AlignLeft
                    maximumLineCount: 1
                    Accessible.role: Accessible.Heading
                }
            }

            Row {
                id: tags

                anchors.right: parent.right
                anchors.bottom: heading.bottom
                anchors.bottomMargin: 4
                spacing: Tokens.spacing.s

                StatusTag {
                    objectName: "dirtyTag"
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.editor.dirty
                    text: qsTr("Unsaved changes")
                    accent: Tokens.brandAmber
                }

                StatusTag {
                    objectName: "activeTag"
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.editor.active
                    text: qsTr("Active")
                    accent: Tokens.brandCoral
                    symbol: "checkmark.circle.fill"
                }
            }
        }

        Column {
            width: parent.width
            spacing: Tokens.spacing.xs

            SectionCaps {
                width: parent.width
                text: qsTr("Name")
            }

            InputField {
                objectName: "name"
                width: parent.width
                label: qsTr("Name")
                placeholderText: qsTr("Profile name")
                text: root.editor.name
                onEdited: (text) => root.editor.name = text
            }
        }

        Row {
            spacing: Tokens.spacing.s

            GhostButton {
                text: qsTr("Sync from current mixer")
                symbol: "arrow.down.circle"
                onClicked: root.editor.syncFromMixer()
            }

            GhostButton {
                text: qsTr("Add app")
                symbol: "plus"
                onClicked: root.editor.addApp()
            }
        }

        Item {
            width: parent.width
            height: caps.height

            SectionCaps {
                id: caps

                anchors.left: parent.left
                text: qsTr("Apps in this profile")
                Accessible.role: Accessible.Heading
            }

            Label {
                objectName: "count"
                anchors.right: parent.right
                anchors.verticalCenter: caps.verticalCenter
                text: root.editor.countText
                font: Tokens.captionStrong
                color: Tokens.textTertiary
            }
        }
    }

    Panel {
        id: card

        // What it looks like over the canvas.
        readonly property color ground: Qt.tint(Tokens.canvasBG, Tokens.cardBG)
        readonly property real room: footer.y - y - Tokens.spacing.l

        anchors.top: top.bottom
        anchors.topMargin: Tokens.spacing.s
        x: root.edge
        width: top.width
        // As high as its rows, as far as there is room.
        height: Math.max(0, root.editor.entries.count > 0
                            ? Math.min(room, list.contentHeight + 2 * Tokens.spacing.s)
                            : Math.min(room, emptyState.height + 2 * Tokens.spacing.xxl))
        radius: Tokens.corner.tile
        color: Tokens.cardBG

        ListView {
            id: list

            objectName: "entries"
            anchors.fill: parent
            anchors.margins: 1
            topMargin: Tokens.spacing.s - 1
            bottomMargin: Tokens.spacing.s - 1
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight + topMargin + bottomMargin > height
            clip: interactive
            model: root.editor.entries

            Accessible.role: Accessible.List
            Accessible.name: qsTr("Apps in this profile")

            delegate: ProfileEntryRow {
                width: ListView.view.width
                editor: root.editor
                onActiveFocusChanged: if (activeFocus) ListView.view.positionViewAtIndex(index, ListView.Contain)
            }
        }

        ScrollFade {
            list: list
            ground: card.ground
        }

        ScrollThumb {
            list: list
        }

        Column {
            id: emptyState

            objectName: "emptyState"
            anchors.centerIn: parent
            visible: root.editor.entries.count === 0
            width: Math.min(implicitWidth, parent.width - 2 * Tokens.spacing.l)
            spacing: Tokens.spacing.s

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "rectangle.stack"
                pointSize: 24
                weight: Font.Light
                color: Tokens.textTertiary
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("This profile is empty.")
                font: Tokens.bodyEmphasis
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Sync from the current mixer or add apps individually.")
                color: Tokens.textSecondary
            }
        }
    }

    Item {
        id: footer

        readonly property real room: width - 2 * root.edge
        readonly property real gap: Tokens.spacing.s
        // On one line with the button at the left, where there is room.
        readonly property bool folds: bin.width + Tokens.spacing.l + actions.naturalWidth > room

        anchors.bottom: parent.bottom
        width: parent.width
        height: actions.y + actions.height + Tokens.spacing.l

        Hairline {
            width: parent.width
        }

        GhostButton {
            id: bin

            objectName: "delete"
            x: root.edge
            y: footer.folds ? Tokens.spacing.l : actions.y + (actions.height - height) / 2
            text: qsTr("Delete profile")
            symbol: "trash"
            onClicked: root.editor.remove()
        }

        Flow {
            id: actions

            readonly property real naturalWidth: saver.width + footer.gap + applier.width
                                                 + (root.editor.dirty ? discarder.width + footer.gap : 0)

            x: footer.folds ? root.edge : footer.width - root.edge - width
            y: Tokens.spacing.l + (footer.folds ? bin.height + footer.gap : 0)
            width: Math.min(naturalWidth, footer.room)
            spacing: footer.gap

            // As high as the primary button, which the quieter ones are not.
            Item {
                visible: root.editor.dirty
                width: discarder.width
                height: saver.height

                GhostButton {
                    id: discarder

                    objectName: "discard"
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Discard")
                    onClicked: root.editor.discard()
                }
            }

            Item {
                width: applier.width
                height: saver.height

                GhostButton {
                    id: applier

                    objectName: "apply"
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Apply now")
                    symbol: "play.fill"
                    onClicked: root.editor.apply()
                }
            }

            PrimaryButton {
                id: saver

                objectName: "save"
                text: root.editor.saveText
                enabled: root.editor.dirty
                onClicked: root.editor.save()
            }
        }
    }

    Shortcut {
        sequence: "Ctrl+S"
        enabled: root.visible && root.editor.dirty
        onActivated: root.editor.save()
    }

    AppPicker {
        picker: root.editor.picker
    }
}
