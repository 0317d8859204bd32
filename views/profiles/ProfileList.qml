// The active profile, a tile for each, and room below them. Its parts know it by its name as loose components do: bound
// ones can be neither head nor foot, and a cast of their view to this type fails in newer releases of the toolkit.
import QtQuick
import Quillmere.Design
import Quillmere.Views

ListView {
    id: root

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

    // qmllint disable unqualified
    header: ProfileListHead {
        width: root.tileWidth
        anyActive: root.presenter.anyActive
        title: root.presenter.heroTitle
        detail: root.presenter.heroDetail
    }

    delegate: ProfileTile {
        width: root.tileWidth
        onClicked: root.presenter.select(index)
        onApplyAsked: root.presenter.profiles.apply(index)
        onDuplicateAsked: root.presenter.profiles.duplicate(index)
        onDeleteAsked: root.presenter.profiles.remove(index)
        onActiveFocusChanged: if (activeFocus) root.positionViewAtIndex(index, ListView.Contain)
    }

    // The place of what stands below the tiles, for the keys to come to it after them.
    footer: Item {
        width: root.tileWidth
        height: root.footHeight + Tokens.spacing.xs
    }
    // qmllint enable unqualified
}
