// The line over a list of tabs that opens and closes it.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    required property bool expanded
    property real chevronSize: 8
    property font textFont: Tokens.face(9, Font.Medium)
    // Stands behind the count.
    property string extra: ""

    readonly property real gap: 4
    readonly property real quarterTurn: 90

    Accessible.role: Accessible.Button
    Accessible.checkable: true
    Accessible.checked: expanded

    implicitWidth: line.implicitWidth + leftPadding + rightPadding
    implicitHeight: line.implicitHeight + topPadding + bottomPadding

    Row {
        id: line

        anchors.verticalCenter: parent.verticalCenter
        x: root.leftPadding
        width: root.availableWidth
        spacing: root.gap

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: "chevron.right"
            pointSize: root.chevronSize
            weight: Font.DemiBold
            color: Tokens.textTertiary
            rotation: root.expanded ? root.quarterTurn : 0
            Behavior on rotation {
                EaseOut { seconds: 0.15 }
            }
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font: root.textFont
            color: root.hovered ? Tokens.textPrimary : Tokens.textSecondary
            Accessible.ignored: true
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, Math.max(0, line.width - x))
            visible: text.length > 0
            text: root.extra
            font: root.textFont
            color: Tokens.textTertiary
            Accessible.ignored: true
        }
    }
}
