// A borderless button that opens a menu below itself, or above where there is no room below: never under the pointer,
// where a second click would choose something. The menu is made when it is first opened.
import QtQuick
import Quillmere.Design

PlainButton {
    id: root

    // A DropMenu.
    property Component menu: null
    property DropMenu madeMenu: null
    readonly property bool open: madeMenu ? madeMenu.visible : false

    // The moment to bring the entries up to date.
    signal aboutToOpen()

    function openMenu(): void {
        aboutToOpen();
        if (!madeMenu && menu)
            madeMenu = menu.createObject(root) as DropMenu;
        // Nothing to choose from is no menu.
        if (!madeMenu || madeMenu.count === 0)
            return;
        let menuHeight = madeMenu.topPadding + madeMenu.bottomPadding;
        for (let i = 0; i < madeMenu.count; ++i)
            menuHeight += madeMenu.itemAt(i).implicitHeight;
        const top = root.mapToItem(null, 0, 0).y;
        const below = root.height + Tokens.spacing.xs;
        const above = -menuHeight - Tokens.spacing.xs;
        const overflows = top + below + menuHeight + madeMenu.edge > root.Window.height;
        const fitsAbove = top + above >= madeMenu.edge;
        madeMenu.popup(root, 0, overflows && fitsAbove ? above : below);
    }

    tipHidden: open

    Accessible.role: Accessible.ButtonMenu
    // A screen reader that runs makes every button one once more when it stands.
    Component.onCompleted: Accessible.role = Accessible.ButtonMenu

    onClicked: openMenu()
    Keys.onDownPressed: openMenu()
}
