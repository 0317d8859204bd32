// An application on one of Auto-Duck's lists, with its switch; above the first default that is off, a heading.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Column {
    id: root

    required property int index
    required property string name
    required property string bundleID
    required property url iconSource
    required property bool on
    required property bool startsDefaults

    readonly property real rowHeight: 40
    readonly property real iconSide: 28
    readonly property real iconCorner: 6
    readonly property real offOpacity: 0.5
    readonly property real gap: 10

    signal toggled(bool on)

    Accessible.role: Accessible.ListItem
    Accessible.name: name

    Label {
        objectName: "defaultsHeading"
        width: parent.width
        visible: root.startsDefaults
        topPadding: root.index > 0 ? Tokens.spacing.m : 0
        bottomPadding: Tokens.spacing.xs
        text: qsTr("Disabled defaults")
        font: Tokens.captionStrong
        color: Tokens.textTertiary
        Accessible.role: Accessible.Heading
    }

    Item {
        width: parent.width
        height: root.rowHeight

        AppIcon {
            id: icon

            anchors.verticalCenter: parent.verticalCenter
            side: root.iconSide
            corner: root.iconCorner
            tileSymbolSize: 14
            source: root.iconSource
            opacity: root.on ? 1 : root.offOpacity
            Behavior on opacity {
                EaseOut { seconds: 0.15 }
            }
        }

        NameLabel {
            objectName: "name"
            anchors.left: icon.right
            anchors.leftMargin: root.gap
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, toggle.x - x - root.gap)
            text: root.name
            // Names are not unique; this is.
            tip: root.bundleID
            color: root.on ? Tokens.textPrimary : Tokens.textSecondary
            Accessible.ignored: true
        }

        Toggle {
            id: toggle

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            label: root.name
            checked: root.on
            onToggled: {
                const wanted = checked;
                checked = Qt.binding(() => root.on);
                root.toggled(wanted);
            }
        }
    }
}
