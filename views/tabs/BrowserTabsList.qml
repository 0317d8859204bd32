// A browser's tabs below its card in the main window, which they join: closed at first, then all of them.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property TabListModel tabs
    required property string browserName
    property bool expanded: false

    readonly property real headerHeight: 30
    readonly property real bottomPadding: expanded ? Tokens.spacing.s : 0

    implicitHeight: header.height + body.height + bottomPadding

    UnevenPanel {
        anchors.fill: parent
        flatTop: true
    }

    TabsHeader {
        id: header

        width: root.width
        height: root.headerHeight
        horizontalPadding: Tokens.spacing.l
        text: root.tabs.openText
        extra: root.browserName
        chevronSize: 9
        textFont: Tokens.caption1
        expanded: root.expanded
        onClicked: root.expanded = !root.expanded
    }

    Item {
        id: body

        anchors.top: header.bottom
        x: Tokens.spacing.s
        width: root.width - 2 * x
        height: root.expanded ? rows.implicitHeight : 0
        visible: height > 0
        clip: height < rows.implicitHeight
        Behavior on height {
            EaseOut { seconds: 0.15 }
        }

        Column {
            id: rows

            width: parent.width

            Repeater {
                model: root.expanded || body.height > 0 ? root.tabs : null

                TabRow {
                    required property int index

                    width: rows.width
                    onClicked: root.tabs.activate(index)
                }
            }
        }
    }
}
