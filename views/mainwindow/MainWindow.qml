// The main window: the sidebar, the canvas of the section that shows, and above both the banner of an update.
import QtQuick
import Quillmere.Design
import Quillmere.Views

AppBackdrop {
    id: root

    required property MainWindowPresenter presenter

    // A window that is forced to be narrower than it asks for keeps its room for the canvas.
    readonly property bool compact: width < 900
    readonly property real sidebarWidth: compact ? 56 : 200
    readonly property real lineWidth: 1

    HoverGuard {}

    Shortcut {
        sequences: ["Ctrl+PgDown", "Ctrl+Tab"]
        onActivated: root.presenter.showNext(1)
    }

    Shortcut {
        sequences: ["Ctrl+PgUp", "Ctrl+Shift+Tab"]
        onActivated: root.presenter.showNext(-1)
    }

    UpdateBanner {
        id: banner

        width: parent.width
        text: root.presenter.updateText
        onUpdate: root.presenter.update()
    }

    Sidebar {
        id: sidebar

        objectName: "sidebar"
        anchors.top: banner.bottom
        anchors.bottom: parent.bottom
        width: root.sidebarWidth
        compact: root.compact
        presenter: root.presenter
    }

    Rectangle {
        id: line

        anchors.top: banner.bottom
        anchors.bottom: parent.bottom
        anchors.left: sidebar.right
        width: root.lineWidth
        color: Tokens.hairline
    }

    MainCanvas {
        objectName: "canvas"
        anchors.top: banner.bottom
        anchors.bottom: parent.bottom
        anchors.left: line.right
        anchors.right: parent.right
        presenter: root.presenter
    }
}
