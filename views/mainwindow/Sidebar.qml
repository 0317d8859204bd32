// The sections of the main window, and what goes on in it.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Flickable {
    id: root

    required property MainWindowPresenter presenter
    // Whether there is room for symbols only.
    property bool compact: false

    readonly property real headerHeight: 56
    readonly property real least: headerHeight + upper.height + Tokens.spacing.m + lower.height + Tokens.spacing.m

    // The keyboard stays on the item that shows.
    function move(places: int): void {
        root.presenter.showNext(places);
        const item = upper.selectedItem() ?? lowerItems.selectedItem();
        if (item)
            item.forceActiveFocus(Qt.TabFocusReason);
    }

    contentHeight: Math.max(height, least)
    interactive: contentHeight > height
    clip: interactive
    boundsBehavior: Flickable.StopAtBounds

    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Sections")

    Keys.onDownPressed: root.move(1)
    Keys.onUpPressed: root.move(-1)

    Wordmark {
        x: Tokens.spacing.l
        y: (root.headerHeight - height) / 2
        visible: !root.compact
    }

    BrandLogo {
        anchors.horizontalCenter: parent.horizontalCenter
        y: (root.headerHeight - height) / 2
        visible: root.compact
        size: 26
    }

    SidebarItems {
        id: upper

        x: Tokens.spacing.s
        y: root.headerHeight
        width: root.width - 2 * x
        model: root.presenter.upperItems
        badgeText: root.presenter.liveText
        compact: root.compact
        onChosen: (section) => root.presenter.show(section)
    }

    Column {
        id: lower

        x: Tokens.spacing.s
        y: root.contentHeight - height - Tokens.spacing.m
        width: root.width - 2 * x
        spacing: 2

        SidebarItems {
            id: lowerItems

            width: parent.width
            model: root.presenter.lowerItems
            badgeText: ""
            compact: root.compact
            onChosen: (section) => root.presenter.show(section)
        }

        StatusLine {
            width: parent.width
            text: root.presenter.liveText
            compact: root.compact

            LivePulse {
                anchors.centerIn: parent
                size: 6
            }
        }

        StatusLine {
            width: parent.width
            text: root.presenter.duckingText
            compact: root.compact

            Symbol {
                anchors.centerIn: parent
                name: "waveform.badge.minus"
                pointSize: 11
                weight: Font.Medium
                color: Tokens.brandSage
            }
        }
    }
}
