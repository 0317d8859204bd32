// The behaviour that all buttons share: press, keys, hover, tip, focus ring. Looks come from background and contentItem.
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Quillmere.Design

T.AbstractButton {
    id: root

    // Shown after a while of hovering; also the accessible description where it says more than the name.
    property string tip: ""
    // While something else covers the button, a menu of its own for instance.
    property bool tipHidden: false
    property real focusCorner: Tokens.corner.chip
    // What it is to assistive technology.
    property int role: Accessible.Button

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Accessible.role: role
    // The toolkit makes it a button once more when it stands and a screen reader listens, and when one comes later.
    Accessible.onRoleChanged: if (Accessible.role !== role) Accessible.role = role
    Accessible.name: text.length > 0 ? text : tip
    Accessible.description: text.length > 0 && tip !== text ? tip : ""
    Accessible.onPressAction: root.clicked()

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    FocusRing {
        shown: root.visualFocus
        corner: root.focusCorner
    }

    // Made at the first hover that wants it.
    property ToolTip madeTip: null

    onHoveredChanged: {
        if (hovered && tip.length > 0 && !madeTip)
            madeTip = tipMaker.createObject(root) as ToolTip;
    }

    Component {
        id: tipMaker

        ToolTip {
            parent: root
            text: root.tip
            visible: root.hovered && !root.pressed && !root.tipHidden && text.length > 0
        }
    }
}
