// An application in the picker; above the first of a section, the section's name.
import QtQuick
import Quillmere.Design
import Quillmere.Views

FocusScope {
    id: root

    required property string heading
    required property int index
    required property string name
    required property string bundleID
    required property url iconSource
    required property bool added
    required property bool highlighted

    readonly property real iconSide: 28
    readonly property real tileOpacity: 0.12
    readonly property real addedOpacity: 0.5
    readonly property real gap: 10

    signal clicked()

    implicitHeight: button.y + button.height

    Label {
        id: header

        objectName: "sectionHeader"
        width: parent.width
        visible: text.length > 0
        leftPadding: Tokens.spacing.m
        rightPadding: Tokens.spacing.m
        topPadding: Tokens.spacing.xs
        bottomPadding: Tokens.spacing.xs
        text: root.heading
        font: Tokens.captionStrong
        color: Tokens.textSecondary
        Accessible.role: Accessible.Heading
    }

    PlainButton {
        id: button

        objectName: "row"
        y: header.visible ? header.height : 0
        width: parent.width
        focus: true
        text: root.name
        horizontalPadding: Tokens.spacing.m
        verticalPadding: Tokens.spacing.s
        onClicked: root.clicked()
        // The list is one stop for the keys, which move within it.
        focusPolicy: Qt.NoFocus
        opacity: root.added ? root.addedOpacity : 1

        Accessible.role: Accessible.ListItem
        // A screen reader that runs makes every button one once more when it stands.
        Component.onCompleted: Accessible.role = Accessible.ListItem
        Accessible.name: root.name
        Accessible.description: root.added ? qsTr("%1, added").arg(root.bundleID) : root.bundleID
        Accessible.selectable: !root.added
        Accessible.selected: root.highlighted

        background: Rectangle {
            radius: Tokens.corner.chip
            color: root.highlighted ? Tokens.cardBGSelected
                 : button.hovered && !root.added ? Tokens.cardBGHover
                 : Tokens.clear
            border.width: root.highlighted ? 1 : 0
            border.color: Tokens.cardStrokeSelected
        }

        contentItem: Item { // qmllint disable deferred-property-id
            implicitHeight: Math.max(root.iconSide, words.implicitHeight)

            AppIcon {
                id: icon

                anchors.verticalCenter: parent.verticalCenter
                side: root.iconSide
                tileOpacity: root.tileOpacity
                tileSymbolSize: 14
                source: root.iconSource
            }

            Column {
                id: words

                anchors.left: icon.right
                anchors.leftMargin: root.gap
                anchors.right: mark.left
                anchors.rightMargin: root.gap
                anchors.verticalCenter: parent.verticalCenter
                spacing: 1

                Label {
                    objectName: "name"
                    width: parent.width
                    text: root.name
                    font: Tokens.bodyEmphasis
                    horizontalAlignment: Text.AlignLeft
                    maximumLineCount: 1
                    Accessible.ignored: true
                }

                Label {
                    objectName: "bundleID"
                    width: parent.width
                    text: root.bundleID
                    font: Tokens.caption1
                    color: Tokens.textTertiary
                    horizontalAlignment: Text.AlignLeft
                    maximumLineCount: 1
                    Accessible.ignored: true
                }
            }

            Item {
                id: mark

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: root.added ? addedText.implicitWidth : plus.width
                height: parent.height

                Label {
                    id: addedText

                    objectName: "addedText"
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.added
                    text: qsTr("Added")
                    font: Tokens.captionStrong
                    color: Tokens.brandSage
                    Accessible.ignored: true
                }

                Symbol {
                    id: plus

                    anchors.verticalCenter: parent.verticalCenter
                    visible: !root.added
                    name: "plus.circle.fill"
                    pointSize: 16
                    color: Tokens.brandSage
                }
            }
        }
    }
}
