// A short text beside the pointer's target. Set visible while the target is hovered; it waits by itself.
import QtQuick
import QtQuick.Templates as T
import Quillmere.Design

T.ToolTip {
    id: root

    readonly property real gap: 6
    property real farthest: 280

    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? parent.height + gap : 0
    // Never against the window's edge.
    margins: gap
    horizontalPadding: Tokens.spacing.s
    verticalPadding: gap - 1
    delay: 1000
    timeout: 10000
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    implicitWidth: Math.min(farthest, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    contentItem: Label {
        text: root.text
        font: Tokens.caption1
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        Accessible.role: Accessible.ToolTip
    }

    background: Item {
        Elevated {
            anchors.fill: parent
            corner: Tokens.corner.chip
            elevation: Tokens.elevation.resting
        }

        Panel {
            anchors.fill: parent
            radius: Tokens.corner.chip
            color: Tokens.floatBG
            stroke: Tokens.floatStroke
        }
    }

    enter: Transition {
        EaseOut {
            property: "opacity"
            from: 0
            to: 1
            seconds: 0.12
        }
    }

    exit: Transition {
        EaseOut {
            property: "opacity"
            to: 0
            seconds: 0.1
        }
    }
}
