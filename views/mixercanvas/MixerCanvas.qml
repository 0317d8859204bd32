// The mixer's page: the mix at a glance, what plays, the features, the output, and a card for every known application.
// Its components are not bound: this Qt makes no bound head of a list.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property MixerCanvasPresenter presenter

    readonly property real sidePadding: Tokens.spacing.xxl

    AppListView {
        id: list

        objectName: "rows"
        anchors.fill: parent
        spacing: Tokens.spacing.s
        model: root.presenter.rows
        Accessible.name: qsTr("Apps")

        // qmllint disable unqualified
        header: MixerPageHead {
            width: list.width
            sidePadding: root.sidePadding
            presenter: root.presenter
        }

        footer: Item {
            width: list.width
            height: Tokens.spacing.xl
        }

        delegate: AppElement {
            id: element

            width: list.width
            sidePadding: root.sidePadding
            rowHeight: card.rowHeight

            tabsList: BrowserTabsList {
                tabs: element.row.tabs
                browserName: element.row.name
            }

            Elevated {
                width: parent.width
                height: element.height
                corner: Tokens.corner.tile
                elevation: Tokens.elevation.resting
            }

            AppCardLarge {
                id: card

                width: parent.width
                row: element.row
                flatBottom: element.hasTabs
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
