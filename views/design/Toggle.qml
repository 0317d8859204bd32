// A switch. checked is bound by the user; what the user asks for arrives as toggled().
import QtQuick
import QtQuick.Templates as T
import Quillmere.Design

T.Switch {
    id: root

    // The accessible name; the label itself stands elsewhere.
    required property string label

    readonly property real trackWidth: 32
    readonly property real trackHeight: 18
    readonly property real knobInset: 2

    implicitWidth: trackWidth
    implicitHeight: trackHeight
    hoverEnabled: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: label
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onPressAction: root.flip()
    Accessible.onToggleAction: root.flip()

    Keys.onReturnPressed: root.flip()
    Keys.onEnterPressed: root.flip()

    function flip(): void {
        toggle();
        toggled();
    }

    indicator: Rectangle {
        implicitWidth: root.trackWidth
        implicitHeight: root.trackHeight
        radius: height / 2
        color: root.checked ? Tokens.systemAccent : Tokens.alpha(Tokens.white, root.hovered ? 0.16 : 0.12)
        Behavior on color {
            EaseOutColor { seconds: 0.15 }
        }

        Rectangle {
            readonly property real travel: root.trackWidth - width - 2 * root.knobInset

            x: root.knobInset + root.visualPosition * travel
            y: root.knobInset
            width: root.trackHeight - 2 * root.knobInset
            height: width
            radius: width / 2
            color: Tokens.white
            antialiasing: true
            Behavior on x {
                enabled: !root.down
                EaseOut { seconds: 0.15 }
            }
        }
    }

    FocusRing {
        shown: root.visualFocus
        corner: root.trackHeight / 2
    }
}
