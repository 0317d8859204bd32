// A page of the main window that scrolls: its content in a column with the page's margins. What the keys reach is
// brought into view.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    default property alias content: column.data
    property alias contentY: flick.contentY
    readonly property alias contentHeight: flick.contentHeight
    property real columnSpacing: Tokens.spacing.xl

    // So much around what has the focus is seen too.
    readonly property real surroundings: Tokens.spacing.xl

    function reveal(item: Item): void {
        const top = item.mapToItem(column, 0, 0).y + column.y - surroundings;
        const bottom = item.mapToItem(column, 0, item.height).y + column.y + surroundings;
        const last = Math.max(0, flick.contentHeight - flick.height);
        if (top < flick.contentY)
            flick.contentY = Math.max(0, top);
        else if (bottom > flick.contentY + flick.height)
            flick.contentY = Math.min(last, bottom - flick.height);
    }

    function isWithin(item: Item): bool {
        for (let each = item; each; each = each.parent) {
            if (each === column)
                return true;
        }
        return false;
    }

    Connections {
        target: root.Window.window
        ignoreUnknownSignals: true

        function onActiveFocusItemChanged(): void {
            const item = root.Window.activeFocusItem;
            if (item && root.isWithin(item))
                root.reveal(item);
        }
    }

    Keys.onPressed: (event) => {
        const page = flick.height - 2 * surroundings;
        const last = Math.max(0, flick.contentHeight - flick.height);
        if (event.key === Qt.Key_PageDown)
            flick.contentY = Math.min(last, flick.contentY + page);
        else if (event.key === Qt.Key_PageUp)
            flick.contentY = Math.max(0, flick.contentY - page);
        else
            return;
        event.accepted = true;
    }

    Flickable {
        id: flick

        objectName: "page"
        anchors.fill: parent
        contentHeight: column.implicitHeight + 2 * Tokens.spacing.xl
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        clip: true

        Column {
            id: column

            x: Tokens.spacing.xxl
            y: Tokens.spacing.xl
            width: flick.width - 2 * Tokens.spacing.xxl
            spacing: root.columnSpacing
        }
    }

    PageFade {
        list: flick
    }

    ScrollThumb {
        list: flick
    }
}
