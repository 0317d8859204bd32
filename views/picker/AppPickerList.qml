// What the picker lists.
import QtQuick
import Quillmere.Design
import Quillmere.Views

ListView {
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
        readonly property AppPickerList list: ListView.view as AppPickerList

        width: list ? list.width : 0
        highlighted: list !== null && list.showsCurrent && ListView.isCurrentItem
        onClicked: list.picked(index)
    }

    onActiveFocusChanged: if (activeFocus && currentIndex < 0) currentIndex = 0

    Keys.onReturnPressed: picked(currentIndex)
    Keys.onEnterPressed: picked(currentIndex)
    Keys.onSpacePressed: picked(currentIndex)

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Apps")
}
