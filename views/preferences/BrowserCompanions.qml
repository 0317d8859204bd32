// The browsers that could show their tabs in the mixer; nothing where there is none.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design
import Quillmere.Views

Surface {
    id: root

    required property BrowserCompanionsPresenter browsers

    visible: browsers.count > 0
    padding: Tokens.spacing.l
    corner: Tokens.corner.card

    Column {
        width: parent.width
        spacing: Tokens.spacing.m

        Column {
            width: parent.width
            spacing: 2

            Label {
                width: parent.width
                text: qsTr("Browser tabs")
                font: Tokens.cardTitle
                Accessible.role: Accessible.Heading
            }

            Paragraph {
                width: parent.width
                text: qsTr("A companion in the browser shows its open tabs in the mixer. Nothing of them leaves this computer.")
                font: Tokens.caption1
                color: Tokens.textTertiary
            }
        }

        Repeater {
            model: root.browsers

            BrowserCompanionRow {
                required property int index

                width: parent.width
                onActed: root.browsers.act(index)
            }
        }

        Paragraph {
            objectName: "hint"
            width: parent.width
            visible: root.browsers.hint !== ""
            text: root.browsers.hint
            font: Tokens.caption1
            color: Tokens.textSecondary
        }
    }
}
