// An application in the profile that is edited: its level, mute and output there.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

FocusScope {
    id: root

    required property ProfileEditorPresenter editor
    required property int index
    required property string name
    required property url iconSource
    required property double gain
    required property string percentText
    required property bool muted
    required property string muteSymbol
    required property string muteTip
    required property bool routed
    required property string routeSymbol

    readonly property real rowHeight: 44
    readonly property real iconSide: 28
    // Where there is little room, the slider keeps some before name and figure do.
    readonly property real nameWidth: Math.max(48, Math.min(150, width - 330))
    readonly property bool showsPercent: width >= 400
    readonly property real percentWidth: 40
    readonly property real gap: Tokens.spacing.m

    height: rowHeight

    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: percentText

    HoverHandler {
        id: pointer
    }

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: Tokens.spacing.xs
        anchors.rightMargin: Tokens.spacing.xs
        radius: Tokens.corner.chip
        color: pointer.hovered ? Tokens.cardBGHover : Tokens.clear
    }

    AppIcon {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: root.gap
        anchors.verticalCenter: parent.verticalCenter
        side: root.iconSide
        tileSymbolSize: 14
        source: root.iconSource
    }

    NameLabel {
        id: nameLabel

        objectName: "name"
        anchors.left: icon.right
        anchors.leftMargin: root.gap
        anchors.verticalCenter: parent.verticalCenter
        width: root.nameWidth
        text: root.name
        font: Tokens.bodyEmphasis
        Accessible.ignored: true
    }

    LevelSlider {
        id: slider

        anchors.left: nameLabel.right
        anchors.leftMargin: root.gap
        anchors.right: root.showsPercent ? percent.left : buttons.left
        anchors.rightMargin: Tokens.spacing.s
        anchors.verticalCenter: parent.verticalCenter
        height: 20
        label: root.name
        value: root.gain
        isMuted: root.muted
        onMoved: (value) => root.editor.entries.setGain(root.index, value)
    }

    Label {
        id: percent

        objectName: "percent"
        anchors.right: buttons.left
        anchors.rightMargin: Tokens.spacing.s
        anchors.verticalCenter: parent.verticalCenter
        width: root.percentWidth
        visible: root.showsPercent
        text: root.percentText
        font: Tokens.metric
        color: root.muted ? Tokens.textTertiary : Tokens.textSecondary
        horizontalAlignment: Text.AlignRight
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: root.gap
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.spacing.xs

        SubtleIconButton {
            objectName: "mute"
            text: (root.muted ? qsTr("Unmute %1") : qsTr("Mute %1")).arg(root.name)
            tip: root.muteTip
            symbol: root.muteSymbol
            color: root.muted ? Tokens.brandRed : Tokens.textSecondary
            onClicked: root.editor.entries.toggleMute(root.index)
        }

        MenuButton {
            id: router

            objectName: "route"
            width: 24
            height: 24
            text: qsTr("Output for %1").arg(root.name)
            tip: qsTr("Route to a specific output")
            onAboutToOpen: root.editor.fillRoutes(root.index)
            menu: ChoiceMenu {
                choices: root.editor.routeMenu
            }
            contentItem: Item {
                Symbol {
                    anchors.centerIn: parent
                    name: root.routeSymbol
                    pointSize: 12
                    weight: Font.Medium
                    color: root.routed ? Tokens.systemAccent : Tokens.textSecondary
                }
            }
        }

        SubtleIconButton {
            objectName: "remove"
            text: qsTr("Remove %1 from profile").arg(root.name)
            tip: qsTr("Remove from profile")
            symbol: "minus.circle"
            onClicked: root.editor.entries.remove(root.index)
        }
    }
}
