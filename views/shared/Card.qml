// A card of the side column: small capitals, something at their right, and content below.
import QtQuick
import Quillmere.Design

Surface {
    id: root

    required property string title
    property alias trailing: corner.data
    default property alias body: inside.data

    corner: Tokens.corner.tile

    Column {
        width: root.width - 2 * root.padding
        spacing: Tokens.spacing.m

        Item {
            width: parent.width
            height: Math.max(caps.implicitHeight, corner.childrenRect.height)

            SectionCaps {
                id: caps

                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                text: root.title
            }

            Item {
                id: corner

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: childrenRect.width
                height: childrenRect.height
            }
        }

        Column {
            id: inside

            width: parent.width
            spacing: Tokens.spacing.m
        }
    }
}
