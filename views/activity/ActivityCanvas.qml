// The page of the activity: four counts, and what is tracked at this moment.
// Its components are not bound: this Qt makes no bound head of a list.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property ActivityCanvasPresenter presenter

    readonly property real sidePadding: Tokens.spacing.xxl
    readonly property real cardPadding: Tokens.spacing.l
    readonly property real rowHeight: 40

    AppListView {
        id: list

        objectName: "rows"
        anchors.fill: parent
        model: root.presenter.rows
        Accessible.name: qsTr("Currently tracked")

        // The card behind all rows.
        Surface {
            objectName: "card"
            parent: list.contentItem
            z: -1
            visible: root.presenter.anyApps
            x: root.sidePadding
            y: list.headerItem ? list.headerItem.y + list.headerItem.height - padding : 0
            width: list.width - 2 * x
            height: list.count * root.rowHeight + 2 * padding
            padding: Tokens.spacing.s
            corner: Tokens.corner.tile
        }

        // qmllint disable unqualified
        header: ActivityPageHead {
            width: list.width
            sidePadding: root.sidePadding
            presenter: root.presenter
        }

        footer: Item {
            width: list.width
            height: Tokens.spacing.s + Tokens.spacing.xl
        }

        delegate: Item {
            id: element

            required property string name
            required property url iconSource
            required property bool live

            width: list.width
            implicitHeight: root.rowHeight

            ActivityRow {
                x: root.sidePadding + root.cardPadding
                width: parent.width - 2 * x
                height: root.rowHeight
                name: element.name
                iconSource: element.iconSource
                live: element.live
            }
        }
    }
    // qmllint enable unqualified

    PageFade {
        list: list
    }

    ScrollThumb {
        list: list
    }
}
