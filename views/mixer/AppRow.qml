// One application: icon, name, level, and on hover its output and mute.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property AppRowPresenter row

    readonly property bool hovering: pointer.hovered
    // The controls also come up for the keyboard, and stay while their menu is open.
    readonly property bool showsControls: hovering || touched || routeButton.visualFocus || muteButton.visualFocus
                                          || routeButton.open
    // A finger doesn't hover: its first touch brings the controls up, for a while.
    property bool touched: false
    readonly property int touchMillis: 4000

    readonly property real rowHeight: 36
    readonly property real gap: 10
    property real nameWidth: 90
    property font percentFont: Tokens.metric
    // Where the tool tip stands below: the row itself, or something that reaches further, so that it covers no other row.
    property Item tipTarget: root
    readonly property real pulseSize: 6
    readonly property real pulseOffset: 9
    readonly property real fadeSeconds: 0.12

    implicitHeight: rowHeight
    opacity: row.muted ? Tokens.mutedRow : 1

    Accessible.role: Accessible.ListItem
    Accessible.name: row.name
    Accessible.description: row.toolTip

    HoverHandler {
        id: pointer
    }

    Rectangle {
        anchors.fill: parent
        radius: Tokens.corner.chip
        color: Tokens.cardBGHover
        opacity: root.hovering ? 1 : 0
        Behavior on opacity {
            EaseOut { seconds: root.fadeSeconds }
        }
    }

    AppIcon {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: Tokens.spacing.s
        anchors.verticalCenter: parent.verticalCenter
        source: root.row.iconSource

        LivePulse {
            anchors.centerIn: parent
            anchors.horizontalCenterOffset: root.pulseOffset
            anchors.verticalCenterOffset: -root.pulseOffset
            visible: root.row.live
            size: root.pulseSize
            color: Tokens.brandCoral
        }
    }

    Column {
        id: words

        anchors.left: icon.right
        anchors.leftMargin: root.gap
        anchors.verticalCenter: parent.verticalCenter
        width: root.nameWidth
        spacing: 1

        Label {
            width: parent.width
            text: root.row.name
            font: Tokens.bodyEmphasis
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }

        Row {
            width: parent.width
            spacing: 3
            visible: root.row.routedDeviceName.length > 0

            Symbol {
                id: routedSymbol

                anchors.verticalCenter: parent.verticalCenter
                name: "headphones"
                pointSize: 8
                color: Tokens.brandSage
            }

            Label {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - routedSymbol.width - parent.spacing
                text: root.row.routedDeviceName
                font: Tokens.face(9, Font.Medium)
                color: Tokens.brandSage
                horizontalAlignment: Text.AlignLeft
            }
        }
    }

    AppLevelSlider {
        id: slider

        anchors.left: words.right
        anchors.leftMargin: root.gap
        anchors.right: slot.left
        anchors.rightMargin: root.gap
        anchors.verticalCenter: parent.verticalCenter
        height: 18
        row: root.row
    }

    Timer {
        id: touchEnd

        interval: root.touchMillis
        onTriggered: root.touched = false
    }

    Item {
        id: slot

        anchors.right: parent.right
        anchors.rightMargin: Tokens.spacing.s
        anchors.verticalCenter: parent.verticalCenter
        width: 56
        height: 24

        Row {
            objectName: "status"
            anchors.right: parent.right
            height: parent.height
            spacing: 4
            opacity: root.showsControls ? 0 : 1
            Behavior on opacity {
                EaseOut { seconds: root.fadeSeconds }
            }

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.row.statusSymbol.length > 0
                name: root.row.statusSymbol
                pointSize: 10
                color: Tokens.brandSage
            }

            Figures {
                anchors.verticalCenter: parent.verticalCenter
                text: root.row.percentText
                font: root.percentFont
                color: Tokens[root.row.percentColor]
            }
        }

        Row {
            objectName: "controls"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4
            opacity: root.showsControls ? 1 : 0
            Behavior on opacity {
                EaseOut { seconds: root.fadeSeconds }
            }

            RouteButton {
                id: routeButton

                anchors.verticalCenter: parent.verticalCenter
                row: root.row
            }

            MuteButton {
                id: muteButton

                row: root.row
            }
        }

        // What can't be seen takes no touch. Over everything in the slot, and gone once the controls are there.
        MouseArea {
            objectName: "guard"
            anchors.fill: parent
            enabled: !root.showsControls
            Accessible.ignored: true
            onClicked: {
                root.touched = true;
                touchEnd.restart();
            }
        }
    }

    // Made at the first hover.
    property ToolTip madeTip: null

    onHoveringChanged: {
        if (hovering && !madeTip)
            madeTip = tipMaker.createObject(root) as ToolTip;
    }

    Component {
        id: tipMaker

        ToolTip {
            parent: root.tipTarget
            // By itself, below a row, it is no wider than what stands left of the next one's slider.
            x: root.tipTarget === root ? icon.x : Math.round((root.tipTarget.width - width) / 2)
            farthest: root.tipTarget === root ? slider.x - icon.x : 280
            text: root.row.toolTip
            visible: root.hovering && !slider.dragging && !routeButton.hovered && !muteButton.hovered && !routeButton.open
        }
    }
}
