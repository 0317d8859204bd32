// Some of the sidebar's items, one below the other.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Column {
    id: root

    required property SidebarModel model
    // What the number beside an item counts.
    required property string badgeText
    // Whether there is room for symbols only.
    property bool compact: false

    signal chosen(string section)

    /// The item of the section that shows, if it is one of these.
    function selectedItem(): SidebarItem {
        for (let at = 0; at < repeater.count; ++at) {
            const item = repeater.itemAt(at) as SidebarItem;
            if (item && item.isSelected)
                return item;
        }
        return null;
    }

    spacing: 2

    Repeater {
        id: repeater

        model: root.model

        SidebarItem {
            required property string section

            width: root.width
            accent: Tokens.brandSage
            badgeText: root.badgeText
            compact: root.compact
            onClicked: root.chosen(section)
        }
    }
}
