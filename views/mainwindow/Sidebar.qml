// The sections of the main window, and what goes on in it.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property MainWindowPresenter presenter

    readonly property real headerHeight: 56
    readonly property real gap: 2
    readonly property real statusGap: 8

    function choose(section: string): void {
        root.presenter.show(section);
    }

    // The keyboard stays on the item that shows.
    function move(places: int): void {
        root.presenter.showNext(places);
        for (const items of [upper.items, lower.items]) {
            for (let at = 0; at < items.count; ++at) {
                const item = items.itemAt(at) as SidebarItem;
                if (item && item.isSelected)
                    item.forceActiveFocus(Qt.TabFocusReason);
            }
        }
    }

    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Sections")

    Keys.onDownPressed: root.move(1)
    Keys.onUpPressed: root.move(-1)

    component Entries: Column {
        id: entries

        required property SidebarModel model
        property alias items: repeater

        spacing: root.gap

        Repeater {
            id: repeater

            model: entries.model

            SidebarItem {
                required property string section

                width: entries.width
                accent: Tokens.brandSage
                onClicked: root.choose(section)
            }
        }
    }

    Wordmark {
        x: Tokens.spacing.l
        y: (root.headerHeight - height) / 2
    }

    Entries {
        id: upper

        x: Tokens.spacing.s
        y: root.headerHeight
        width: parent.width - 2 * x
        model: root.presenter.upperItems
    }

    Column {
        x: Tokens.spacing.s
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Tokens.spacing.m
        width: parent.width - 2 * x
        spacing: root.gap

        Entries {
            id: lower

            width: parent.width
            model: root.presenter.lowerItems
        }

        StatusLine {
            width: parent.width
            text: root.presenter.liveText

            LivePulse {
                anchors.centerIn: parent
                size: 6
            }
        }

        StatusLine {
            width: parent.width
            text: root.presenter.duckingText

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
