// An application in a list: its row, and below it its tabs for as long as it has some.
import QtQuick
import Quillmere.Views

FocusScope {
    id: root

    required property int index
    required property AppRowPresenter row

    // The row as the list draws it, how high that is, and how the list shows tabs.
    default property alias body: place.data
    required property real rowHeight
    property Component tabsList: null
    property real tabsGap: 0
    property real sidePadding: 0

    readonly property bool hasTabs: !row.tabs.isEmpty
    property Item madeTabs: null

    function followTabs(): void {
        if (hasTabs && !madeTabs && tabsList) {
            madeTabs = tabsList.createObject(tabs) as Item;
        } else if (!hasTabs && madeTabs) {
            madeTabs.destroy();
            madeTabs = null;
        }
    }

    implicitHeight: rowHeight + (madeTabs ? tabsGap + madeTabs.implicitHeight : 0)

    onHasTabsChanged: followTabs()
    Component.onCompleted: followTabs()

    RowHold {
        row: root.row
    }

    Item {
        id: place

        x: root.sidePadding
        width: root.width - 2 * x
        height: root.rowHeight
    }

    Binding {
        target: root.madeTabs
        property: "width"
        value: tabs.width
    }

    Item {
        id: tabs

        x: root.sidePadding
        y: root.rowHeight + root.tabsGap
        width: root.width - 2 * x
    }
}
