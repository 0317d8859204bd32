// A saved profile in the list. Its menu opens with the right button, the menu key and Shift+F10.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

PlainButton {
    id: root

    required property int index
    required property string name
    required property string sizeText
    required property bool active
    required property bool selected

    readonly property real tileSide: 36
    readonly property real tileOpacity: 0.14

    property DropMenu madeMenu: null
    readonly property bool menuOpen: madeMenu !== null && madeMenu.visible

    signal applyAsked()
    signal duplicateAsked()
    signal deleteAsked()

    function openMenu(x: real, y: real): void {
        if (!madeMenu)
            madeMenu = menuMaker.createObject(root) as DropMenu;
        madeMenu.popup(root, x, y);
    }

    text: name
    horizontalPadding: Tokens.spacing.s
    verticalPadding: Tokens.spacing.s
    focusCorner: Tokens.corner.card

    Accessible.role: Accessible.ListItem
    // A screen reader that runs makes every button one once more when it stands.
    Component.onCompleted: Accessible.role = Accessible.ListItem
    Accessible.name: name.length > 0 ? name : qsTr("Untitled")
    Accessible.description: active ? qsTr("%1, active").arg(sizeText) : sizeText
    Accessible.selectable: true
    Accessible.selected: selected

    Keys.onPressed: (event) => {
        if (event.key !== Qt.Key_Menu && !(event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier))
            return;
        openMenu(Tokens.spacing.xl, height);
        event.accepted = true;
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: (point) => root.openMenu(point.position.x, point.position.y)
    }

    TapHandler {
        acceptedDevices: PointerDevice.TouchScreen
        onLongPressed: root.openMenu(point.position.x, point.position.y)
    }

    Component {
        id: menuMaker

        DropMenu {
            DropMenuItem {
                hasMarks: false
                text: qsTr("Apply")
                onTriggered: root.applyAsked()
            }

            DropMenuItem {
                hasMarks: false
                text: qsTr("Duplicate")
                onTriggered: root.duplicateAsked()
            }

            DropMenuItem {
                hasMarks: false
                text: qsTr("Delete")
                onTriggered: root.deleteAsked()
            }
        }
    }

    background: Panel {
        objectName: "ground"
        radius: Tokens.corner.card
        // One sees whose menu is open.
        color: root.selected ? Tokens.cardBGSelected
                             : root.hovered || root.menuOpen ? Tokens.cardBGHover : Tokens.clear
        stroke: root.selected ? Tokens.cardStrokeSelected : Tokens.clear
    }

    contentItem: Item { // qmllint disable deferred-property-id
        implicitHeight: root.tileSide

        Rectangle {
            id: tile

            width: root.tileSide
            height: root.tileSide
            anchors.verticalCenter: parent.verticalCenter
            radius: Tokens.spacing.s
            color: Tokens.alpha(Tokens.brandSage, root.tileOpacity)

            Symbol {
                anchors.centerIn: parent
                name: "rectangle.stack.fill"
                pointSize: 15
                color: Tokens.brandSage
            }
        }

        Column {
            anchors.left: tile.right
            anchors.leftMargin: Tokens.spacing.m
            anchors.right: tag.visible ? tag.left : parent.right
            anchors.rightMargin: tag.visible ? Tokens.spacing.s : 0
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1

            NameLabel {
                objectName: "name"
                width: parent.width
                text: root.name
                font: Tokens.bodyEmphasis
                Accessible.ignored: true
            }

            Label {
                objectName: "size"
                width: parent.width
                text: root.sizeText
                font: Tokens.caption1
                color: Tokens.textTertiary
                Accessible.ignored: true
            }
        }

        StatusTag {
            id: tag

            objectName: "activeTag"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: root.active
            text: qsTr("Active")
            accent: Tokens.brandCoral
            Accessible.ignored: true
        }
    }
}
