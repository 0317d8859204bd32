// An application that may keep playing during focus, or nobody: a tile with the name below it.
import QtQuick
import Quillmere.Design
import Quillmere.Views

FocusScope {
    id: root

    required property int index
    required property string name
    required property url iconSource
    required property bool selected
    required property bool canRemove
    required property string tip
    required property bool isNobody

    readonly property real cellWidth: 56
    readonly property real tileSide: 48
    readonly property real tileCorner: 10
    readonly property real borderWidth: 2
    readonly property real badgeSide: 16
    readonly property real removeSide: 18
    readonly property bool hovering: pointer.hovered
    readonly property bool showsRemove: canRemove && !selected && (hovering || remover.visualFocus || tile.visualFocus)

    signal tapped()
    signal removeAsked()

    width: cellWidth
    height: tile.height

    HoverHandler {
        id: pointer
    }

    PlainButton {
        id: tile

        width: parent.width
        text: root.name
        tip: root.tip
        tipHidden: remover.hovered
        focus: true
        focusCorner: root.tileCorner
        topPadding: Tokens.spacing.xs
        bottomPadding: Tokens.spacing.xs
        checkable: true
        checked: root.selected
        onClicked: {
            // It shows what is so, not what was asked for.
            checked = Qt.binding(() => root.selected);
            root.tapped();
        }
        Keys.onDeletePressed: if (root.canRemove && !root.selected) root.removeAsked()

        Accessible.role: Accessible.RadioButton
        // A screen reader that runs makes every button one once more when it stands.
        Component.onCompleted: Accessible.role = Accessible.RadioButton

        contentItem: Column {
            spacing: Tokens.spacing.xs

            Item {
                anchors.horizontalCenter: parent.horizontalCenter
                width: root.tileSide
                height: root.tileSide

                Rectangle {
                    anchors.fill: parent
                    visible: root.isNobody
                    radius: root.tileCorner
                    color: tile.hovered ? Tokens.cardStrokeHover : Tokens.cardStroke

                    Symbol {
                        anchors.centerIn: parent
                        name: "speaker.slash"
                        pointSize: 20
                        color: Tokens.textSecondary
                    }
                }

                AppIcon {
                    objectName: "icon"
                    anchors.fill: parent
                    visible: !root.isNobody
                    side: root.tileSide
                    corner: root.tileCorner
                    tileSymbolSize: 22
                    source: root.iconSource
                }

                Rectangle {
                    objectName: "border"
                    anchors.fill: parent
                    visible: root.selected
                    radius: root.tileCorner
                    color: Tokens.clear
                    border.width: root.borderWidth
                    border.color: Tokens.systemAccent
                }

                Rectangle {
                    objectName: "badge"
                    anchors.horizontalCenter: parent.right
                    anchors.horizontalCenterOffset: -Tokens.spacing.xs
                    anchors.verticalCenter: parent.top
                    anchors.verticalCenterOffset: Tokens.spacing.xs
                    visible: root.selected
                    width: root.badgeSide
                    height: root.badgeSide
                    radius: width / 2
                    color: Tokens.systemAccent

                    Symbol {
                        anchors.centerIn: parent
                        name: "checkmark"
                        pointSize: 9
                        weight: Font.DemiBold
                        color: Tokens.white
                    }
                }
            }

            FocusCellName {
                objectName: "name"
                width: parent.width
                text: root.name
                color: root.selected ? Tokens.textPrimary : Tokens.textSecondary
            }
        }
    }

    PlainButton {
        id: remover

        objectName: "remove"
        x: root.cellWidth - width
        y: 0
        width: root.removeSide
        height: root.removeSide
        visible: root.canRemove && !root.selected
        opacity: root.showsRemove ? 1 : 0
        // What isn't seen takes no touches.
        enabled: root.showsRemove
        focusCorner: width / 2
        text: qsTr("Remove %1 from focus picker").arg(root.name)
        tip: qsTr("Remove from focus picker")
        onClicked: root.removeAsked()

        background: Panel {
            radius: width / 2
            color: Tokens.floatBG
            stroke: remover.hovered ? Tokens.textTertiary : Tokens.floatStroke
        }

        contentItem: Item {
            Symbol {
                anchors.centerIn: parent
                name: "xmark"
                pointSize: 8
                weight: Font.DemiBold
                color: Tokens.textPrimary
            }
        }

        Behavior on opacity {
            EaseOut { seconds: 0.12 }
        }
    }
}
