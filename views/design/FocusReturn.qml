// Brings the keyboard's focus back to where it was before a popup came: the toolkit would give it to nobody.
import QtQuick

QtObject {
    id: root

    // Where the focus was.
    property Item keeper: null

    // To be called before the popup shows, with any item of its window.
    function take(inWindow: Item): void {
        keeper = inWindow ? inWindow.Window.activeFocusItem : null;
    }

    // To be called once it is gone. What has taken the focus meanwhile keeps it.
    function giveBack(): void {
        const item = keeper;
        keeper = null;
        if (!item || !item.visible || !item.enabled || !item.Window.window)
            return;
        const now = item.Window.activeFocusItem;
        if (!now || now === item.Window.contentItem)
            item.forceActiveFocus(Qt.PopupFocusReason);
    }
}
