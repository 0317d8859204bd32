// What all steps share: their content in the middle of the width, with the same room around it.
import QtQuick

Item {
    id: root

    default property alias content: column.data
    property alias spacing: column.spacing

    readonly property real edge: 36
    readonly property real bottomEdge: 28

    width: parent ? parent.width : implicitWidth
    height: column.height + edge + bottomEdge

    Column {
        id: column

        x: root.edge
        y: root.edge
        width: root.width - 2 * root.edge
    }
}
