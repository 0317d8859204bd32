// The canvas of the section that shows: made anew each time, so that it starts as it always does.
import QtQuick
import Quillmere.Views

Item {
    id: root

    required property MainWindowPresenter presenter
    readonly property alias page: loader.item

    function load(): void {
        const source = root.presenter.canvasSource;
        if (source.toString().length > 0)
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

    Loader {
        id: loader

        anchors.fill: parent
    }
}
