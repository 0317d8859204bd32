// A text whose digits are evenly set, so that a countdown stands still: each digit stands in a cell of its own.
pragma ComponentBehavior: Bound

import QtQuick
import Quillmere.Design

Item {
    id: root

    required property string text
    property font font: Tokens.bodyText
    property color color: Tokens.textPrimary

    // A font whose digits are equally wide needs no cells.
    readonly property var pieces: Tokens.hasEvenDigits(font) ? [text] : text.match(/\d|\D+/g) ?? []
    readonly property Label first: cells.count > 0 ? cells.itemAt(0) as Label : null
    // Of whole pixels, so that all gaps are the same.
    readonly property real cell: Math.round(Tokens.digitWidth(font) * Screen.devicePixelRatio) / Screen.devicePixelRatio

    implicitWidth: line.implicitWidth
    implicitHeight: line.implicitHeight
    // As a label is centred.
    anchors.alignWhenCentered: false
    anchors.verticalCenterOffset: first ? first.capShift : 0

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text.length === 0

    Row {
        id: line

        Repeater {
            id: cells

            model: root.pieces.length

            Label {
                required property int index

                readonly property string piece: root.pieces[index] ?? ""
                readonly property bool digit: piece.length === 1 && piece >= "0" && piece <= "9"

                width: digit ? root.cell : implicitWidth
                text: piece
                font: root.font
                color: root.color
                elide: Text.ElideNone
                horizontalAlignment: digit ? Text.AlignHCenter : Text.AlignLeft
                Accessible.ignored: true
            }
        }
    }
}
