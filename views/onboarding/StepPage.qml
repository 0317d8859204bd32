// The place of one step: it comes in from the trailing edge and leaves over the leading one.
import QtQuick
import Quillmere.Design

Flickable {
    id: root

    required property bool shown
    default property alias step: place.data

    readonly property real response: 0.4
    readonly property real dampingFraction: 0.86

    // How many widths it is away from its place: 0 there, 1 beyond the trailing edge, -1 beyond the leading one. It is
    // where it is to begin before it moves, or the first picture would show it where it is to end.
    property real away: -1
    property bool stands: false

    contentHeight: place.height
    interactive: contentHeight > height
    boundsBehavior: Flickable.StopAtBounds
    visible: away > -1
    enabled: shown
    x: away * width
    opacity: 1 - Math.abs(away)

    Component.onCompleted: {
        away = shown ? 0 : -1;
        stands = true;
    }

    onShownChanged: {
        if (!stands)
            return;
        travel.stop();
        if (shown) {
            contentY = 0;
            away = 1;
        }
        travel.to = shown ? 0 : -1;
        travel.start();
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

    Spring {
        id: travel

        target: root
        property: "away"
        response: root.response
        dampingFraction: root.dampingFraction
    }
}
