// A dark menu within the window: entries are DropMenuItem and DropMenuDivider. It stays inside the window's edges,
// and scrolls when it is taller.
import QtQuick
import QtQuick.Templates as T
import Quillmere.Design

T.Menu {
    id: root

    readonly property real widest: 300
    readonly property real narrowest: 120
    readonly property real edge: 6

    property FocusReturn focusReturn: FocusReturn {}

    onAboutToShow: focusReturn.take(root.parent)
    onClosed: focusReturn.giveBack()

    margins: edge
    padding: Tokens.spacing.xs
    overlap: 1
    focus: true

    implicitWidth: Math.max(narrowest, Math.min(widest, implicitContentWidth + leftPadding + rightPadding))
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    delegate: DropMenuItem {}

    contentItem: ListView {
        // As wide as the widest entry.
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < root.count; ++i)
                widest = Math.max(widest, root.itemAt(i).implicitWidth);
            return widest;
        }
        implicitHeight: contentHeight
        model: root.contentModel
        currentIndex: root.currentIndex
        interactive: contentHeight > height
        clip: interactive
        highlightMoveDuration: 0
        keyNavigationWraps: true
        boundsBehavior: Flickable.StopAtBounds
    }

    background: Item {
        Elevated {
            anchors.fill: parent
            corner: Tokens.corner.card
            elevation: Tokens.elevation.hover
        }

        Panel {
            anchors.fill: parent
            radius: Tokens.corner.card
            color: Tokens.floatBG
            stroke: Tokens.floatStroke
        }
    }

    enter: Transition {
        EaseOut {
            property: "opacity"
            from: 0
            to: 1
            seconds: 0.08
        }
    }

    exit: Transition {
        EaseOut {
            property: "opacity"
            to: 0
            seconds: 0.12
        }
    }
}
