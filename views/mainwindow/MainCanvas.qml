// The canvas of the section that shows: made anew each time, so that it starts as it always does.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property MainWindowPresenter presenter
    readonly property alias page: loader.item

    // Narrower pages scroll sideways.
    readonly property real leastWidth: 640
    readonly property Item focused: Window.activeFocusItem

    function isWithin(item: Item): bool {
        for (let each = item; each; each = each.parent) {
            if (each === scroller.contentItem)
                return true;
        }
        return false;
    }

    // What the keyboard reaches comes into sight.
    onFocusedChanged: {
        if (!scroller.interactive || !isWithin(focused))
            return;
        const left = focused.mapToItem(scroller.contentItem, 0, 0).x;
        if (left < scroller.contentX || left + focused.width > scroller.contentX + scroller.width)
            scroller.contentX = Math.max(0, Math.min(left - 24, scroller.contentWidth - scroller.width));
    }

    function load(): void {
        const source = root.presenter.canvasSource;
        if (String(source).length > 0)
            loader.setSource(source, {presenter: root.presenter.canvas});
        else
            loader.source = "";
    }

    Component.onCompleted: load()

    Connections {
        target: root.presenter

        function onCanvasChanged(): void {
            root.load();
        }
    }

    Flickable {
        id: scroller

        objectName: "sideways"
        anchors.fill: parent
        contentWidth: Math.max(width, root.leastWidth)
        contentHeight: height
        flickableDirection: Flickable.HorizontalFlick
        interactive: contentWidth > width
        clip: interactive
        boundsBehavior: Flickable.StopAtBounds

        Loader {
            id: loader

            width: scroller.contentWidth
            height: scroller.height
        }
    }

    // Shows where in a page that is wider than its place one is.
    Rectangle {
        readonly property real share: scroller.width / scroller.contentWidth

        x: scroller.contentX * share
        y: root.height - height - 2
        width: share * scroller.width
        height: 4
        radius: height / 2
        color: Tokens.alpha(Tokens.white, scroller.moving ? 0.3 : 0.14)
        visible: scroller.interactive
    }
}
