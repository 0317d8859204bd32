// One section in the sidebar.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    required property string title
    required property string symbol
    required property bool isSelected
    // The number at the right; empty for none.
    required property string badge
    // What the number counts, for who can't see where it stands.
    property string badgeText: badge
    property color accent: Tokens.brandSage
    // Whether there is room for the symbol only; the title is the tip then.
    property bool compact: false

    readonly property bool hovering: hovered
    readonly property real iconBox: 22
    readonly property real iconFill: 0.18
    readonly property real selectedFill: 0.04
    readonly property real badgeFill: 0.06
    readonly property real corner: 8
    readonly property real gap: 8
    // From 0 to 1 as the section is chosen.
    property real selection: isSelected ? 1 : 0
    readonly property color contentColor: isSelected ? Tokens.textPrimary : Tokens.textSecondary

    Behavior on selection {
        Spring {
            response: 0.25
            dampingFraction: 0.85
        }
    }

    text: title
    tip: compact ? title : ""
    implicitHeight: 34
    horizontalPadding: Tokens.spacing.s
    focusCorner: corner
    // One stop of the keyboard for all of them; the arrows choose.
    focusPolicy: isSelected || activeFocus ? Qt.StrongFocus : Qt.ClickFocus

    Accessible.role: Accessible.PageTab
    Accessible.name: title
    Accessible.description: badge.length > 0 ? badgeText : ""
    Accessible.selectable: true
    Accessible.selected: isSelected
    // A screen reader that runs makes every button one once more when it stands.
    Component.onCompleted: Accessible.role = Accessible.PageTab

    background: Item {
        Rectangle {
            objectName: "hoverGround"
            anchors.fill: parent
            radius: root.corner
            color: Tokens.cardBGHover
            visible: root.hovering && !root.isSelected
        }

        Rectangle {
            objectName: "selectedGround"
            anchors.fill: parent
            radius: root.corner
            color: Tokens.alpha(Tokens.white, root.selectedFill)
            opacity: root.selection
        }
    }

    contentItem: Item { // qmllint disable deferred-property-id
        Rectangle {
            id: box

            objectName: "iconBox"
            anchors.verticalCenter: parent.verticalCenter
            width: root.iconBox
            height: root.iconBox
            radius: Tokens.corner.chip
            color: Tokens.alpha(root.accent, root.iconFill)
            opacity: root.selection
        }

        Symbol {
            objectName: "icon"
            anchors.centerIn: box
            name: root.symbol
            pointSize: 12
            weight: Font.Medium
            color: root.isSelected ? root.accent : Tokens.textSecondary
        }

        Label {
            objectName: "title"
            visible: !root.compact
            anchors.left: box.right
            anchors.leftMargin: root.gap
            anchors.right: count.visible ? count.left : parent.right
            anchors.rightMargin: count.visible ? root.gap : 0
            anchors.verticalCenter: parent.verticalCenter
            text: root.title
            font: Tokens.face(13, root.isSelected ? Font.DemiBold : Font.Medium)
            color: root.contentColor
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }

        Rectangle {
            id: count

            objectName: "badge"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: root.badge.length > 0 && !root.compact
            width: figures.implicitWidth + 10
            height: figures.implicitHeight + 2
            radius: height / 2
            color: Tokens.alpha(Tokens.white, root.badgeFill)

            Figures {
                id: figures

                anchors.centerIn: parent
                text: root.badge
                font: Tokens.captionStrong
                color: Tokens.textSecondary
                Accessible.ignored: true
            }
        }
    }
}
