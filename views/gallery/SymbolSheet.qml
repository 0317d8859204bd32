// Every symbol by name: large, at the sizes that the views use, and in the weights.
import QtQuick
import Quillmere.Design

Flow {
    id: root

    required property list<string> symbolNames

    spacing: Tokens.spacing.s

    Repeater {
        model: root.symbolNames

        Surface {
            id: card

            required property string modelData

            width: 145
            height: 108
            padding: Tokens.spacing.s

            Column {
                width: parent.width
                spacing: Tokens.spacing.s

                Symbol {
                    anchors.horizontalCenter: parent.horizontalCenter
                    name: card.modelData
                    pointSize: 28
                }

                Row {
                    anchors.horizontalCenter: parent.horizontalCenter
                    spacing: Tokens.spacing.xs

                    Symbol { name: card.modelData; pointSize: 8; weight: Font.Medium; anchors.verticalCenter: parent.verticalCenter }
                    Symbol { name: card.modelData; pointSize: 10; weight: Font.Medium; anchors.verticalCenter: parent.verticalCenter }
                    Symbol { name: card.modelData; pointSize: 12; weight: Font.Medium; color: Tokens.textSecondary; anchors.verticalCenter: parent.verticalCenter }
                    Symbol { name: card.modelData; pointSize: 14; weight: Font.DemiBold; color: Tokens.brandMint; anchors.verticalCenter: parent.verticalCenter }
                    Symbol { name: card.modelData; pointSize: 18; weight: Font.Light; anchors.verticalCenter: parent.verticalCenter }
                }

                Label {
                    width: parent.width
                    text: card.modelData
                    font: Tokens.face(9)
                    color: Tokens.textSecondary
                    horizontalAlignment: Text.AlignHCenter
                    elide: Text.ElideMiddle
                }
            }
        }
    }
}
