// The place of one step: it comes in from the trailing edge and leaves over the leading one.
import QtQuick
import Quillmere.Design

Flickable {
    id: root

    required property bool shown
    default property alias step: place.data

    readonly property real response: 0.4
    readonly property real dampingFraction: 0.86

    contentHeight: place.height
    interactive: contentHeight > height
    boundsBehavior: Flickable.StopAtBounds
    visible: shown || leaving.running
    enabled: shown
    x: shown ? 0 : -width
    opacity: shown ? 1 : 0

    onShownChanged: {
        if (shown) {
            leaving.stop();
            contentY = 0;
            entering.start();
        } else {
            entering.stop();
            leaving.start();
        }
    }

    // What the keys reach is brought into view.
    Connections {
        target: root.Window.window
        ignoreUnknownSignals: true

        function onActiveFocusItemChanged(): void {
            const item = root.Window.activeFocusItem;
            for (let each = item; each; each = each.parent) {
                if (each !== place)
                    continue;
                const top = item.mapToItem(place, 0, 0).y;
                root.contentY = Math.max(Math.min(root.contentY, top), top + item.height - root.height, 0);
            }
        }
    }

    Item {
        id: place

        width: root.width
        height: childrenRect.height
    }

    ParallelAnimation {
        id: entering

        Spring {
            target: root
            property: "x"
            from: root.width
            to: 0
            response: root.response
            dampingFraction: root.dampingFraction
        }

        Spring {
            target: root
            property: "opacity"
            from: 0
            to: 1
            response: root.response
            dampingFraction: root.dampingFraction
        }
    }

    ParallelAnimation {
        id: leaving

        Spring {
            target: root
            property: "x"
            from: 0
            to: -root.width
            response: root.response
            dampingFraction: root.dampingFraction
        }

        Spring {
            target: root
            property: "opacity"
            from: 1
            to: 0
            response: root.response
            dampingFraction: root.dampingFraction
        }
    }
}
