// Opens the menu of the outputs that an application may be sent to.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

MenuButton {
    id: root

    required property AppRowPresenter row
    property real side: 16
    property real symbolSize: 10

    width: side
    height: side
    text: qsTr("Output for %1").arg(row.name)
    tip: qsTr("Route to a specific output")
    menu: ChoiceMenu {
        choices: root.row.routeMenu
    }
    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.row.routeSymbol
            pointSize: root.symbolSize
            weight: Font.Medium
            color: Tokens[root.row.routeColor]
        }
    }
}
