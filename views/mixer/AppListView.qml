// A list of applications, whose rows come, go and change places without a jump. What the keyboard reaches, in a row or
// above them, comes into sight.
import QtQuick
import Quillmere.Design
import Quillmere.Views

ListView {
    id: root

    property real fadeSeconds: 0.2
    // So much around what has the focus is seen too.
    readonly property real surroundings: Tokens.spacing.l
    // As far down as it goes.
    readonly property real lastY: Math.max(originY, originY + contentHeight - height)

    function reveal(item: Item): void {
        const top = item.mapToItem(contentItem, 0, 0).y - surroundings;
        const bottom = item.mapToItem(contentItem, 0, item.height).y + surroundings;
        if (top < contentY)
            contentY = Math.max(originY, top);
        else if (bottom > contentY + height)
            contentY = Math.min(lastY, bottom - height);
    }

    // The Tab key goes from what stands above the rows through these, from the first to the last.
    function orderTabs(): void {
        const items = headerItem ? [headerItem] : [];
        for (let at = 0; at < count; ++at) {
            const item = itemAtIndex(at);
            if (item)
                items.push(item);
        }
        TabOrder.follow(items);
    }

    function isWithin(item: Item): bool {
        for (let each = item; each; each = each.parent) {
            if (each === contentItem)
                return true;
        }
        return false;
    }

    // The arrows belong to sliders and menus.
    keyNavigationEnabled: false
    Keys.onPressed: (event) => {
        if (event.key === Qt.Key_PageDown && event.modifiers === Qt.NoModifier)
            contentY = Math.min(lastY, contentY + height - 2 * surroundings);
        else if (event.key === Qt.Key_PageUp && event.modifiers === Qt.NoModifier)
            contentY = Math.max(originY, contentY - height + 2 * surroundings);
        else
            return;
        event.accepted = true;
    }

    Connections {
        target: root.Window.window
        ignoreUnknownSignals: true

        function onActiveFocusItemChanged(): void {
            const item = root.Window.activeFocusItem;
            if (!item || !root.isWithin(item))
                return;
            root.orderTabs();
            // Under a pressed button nothing may move.
            if ((item as PlainButton)?.visualFocus ?? (item as SliderHandle)?.visualFocus ?? true)
                root.reveal(item);
        }
    }

    // Rows that come or move while the focus stays where it is.
    Connections {
        target: root.model
        ignoreUnknownSignals: true

        function onRowsInserted(): void {
            Qt.callLater(root.orderTabs); // qmllint disable
        }

        function onRowsMoved(): void {
            Qt.callLater(root.orderTabs); // qmllint disable
        }
    }

    interactive: contentHeight + topMargin + bottomMargin > height
    clip: interactive
    boundsBehavior: Flickable.StopAtBounds
    // All rows exist, also for the keyboard and for assistive technology; of very many those that are near.
    cacheBuffer: 8000

    Accessible.role: Accessible.List

    add: Transition {
        EaseOut {
            property: "opacity"
            from: 0
            to: 1
            seconds: root.fadeSeconds
        }
    }
    remove: Transition {
        EaseOut {
            property: "opacity"
            to: 0
            seconds: root.fadeSeconds
        }
    }
    displaced: Transition {
        EaseOut {
            property: "y"
            seconds: root.fadeSeconds
        }
        EaseOut {
            property: "opacity"
            to: 1
            seconds: root.fadeSeconds
        }
    }
    move: Transition {
        EaseOut {
            property: "y"
            seconds: root.fadeSeconds
        }
    }
}
