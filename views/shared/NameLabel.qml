// A name that may be cut: the whole of it comes as a tip while the pointer rests on it.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design

Label {
    id: root

    // What the tip says; nothing for no tip.
    property string tip: truncated ? text : ""
    property ToolTip madeTip: null

    horizontalAlignment: Text.AlignLeft
    maximumLineCount: 1

    HoverHandler {
        id: pointer

        onHoveredChanged: {
            if (hovered && root.tip.length > 0 && !root.madeTip)
                root.madeTip = tipMaker.createObject(root) as ToolTip;
        }
    }

    Component {
        id: tipMaker

        ToolTip {
            parent: root
            x: 0
            text: root.tip
            visible: pointer.hovered && text.length > 0
        }
    }
}
