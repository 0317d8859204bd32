// The active profile, a tile for each, and room below them. Its parts know it as their view: bound components can be
// neither head nor foot.
import QtQuick
import Quillmere.Design
import Quillmere.Views

ListView {
    required property ProfilesCanvasPresenter presenter
    property real footHeight: 0

    // Where that room begins, in the list's own height.
    readonly property real footY: footerItem ? footerItem.y + Tokens.spacing.xs - contentY : 0
    readonly property real tileWidth: width - leftMargin - rightMargin

    topMargin: Tokens.spacing.xl
    bottomMargin: Tokens.spacing.xl
    leftMargin: Tokens.spacing.l
    rightMargin: Tokens.spacing.l
    spacing: Tokens.spacing.xs
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight + topMargin + bottomMargin > height
    clip: true
    currentIndex: presenter.selectedRow
    highlightMoveDuration: 0
    model: presenter.profiles

    Accessible.role: Accessible.List
    Accessible.name: qsTr("All profiles")

    header: ProfileListHead {
        readonly property ProfileList list: ListView.view as ProfileList

        width: list ? list.tileWidth : 0
        anyActive: list !== null && list.presenter.anyActive
        title: list ? list.presenter.heroTitle : ""
        detail: list ? list.presenter.heroDetail : ""
    }

    delegate: ProfileTile {
        readonly property ProfileList list: ListView.view as ProfileList

        width: list ? list.tileWidth : 0
        onClicked: list.presenter.select(index)
        onApplyAsked: list.presenter.profiles.apply(index)
        onDuplicateAsked: list.presenter.profiles.duplicate(index)
        onDeleteAsked: list.presenter.profiles.remove(index)
        onActiveFocusChanged: if (activeFocus) list.positionViewAtIndex(index, ListView.Contain)
    }

    // The place of what stands below the tiles, for the keys to come to it after them.
    footer: Item {
        readonly property ProfileList list: ListView.view as ProfileList

        width: list ? list.tileWidth : 0
        height: list ? list.footHeight + Tokens.spacing.xs : 0
    }
}
