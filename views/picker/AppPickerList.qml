// What the picker lists.
pragma ComponentBehavior: Bound
import QtQuick
import Quillmere.Design
import Quillmere.Views

ListView {
    id: root

    // Whether the current row is shown as the one that keys will act on.
    property bool showsCurrent: activeFocus

    signal picked(int row)

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: count > 0
    keyNavigationEnabled: true
    highlightMoveDuration: 0
    currentIndex: -1
    delegate: AppPickerRow {
        width: root.width
        highlighted: root.showsCurrent && ListView.isCurrentItem
        onClicked: root.picked(index)
    }

    onActiveFocusChanged: if (activeFocus && currentIndex < 0) currentIndex = 0

    Keys.onReturnPressed: picked(currentIndex)
    Keys.onEnterPressed: picked(currentIndex)
    Keys.onSpacePressed: picked(currentIndex)

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Apps")
}
