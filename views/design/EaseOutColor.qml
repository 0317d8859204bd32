// The look's ease-out for colours.
import QtQuick
import Quillmere.Design

ColorAnimation {
    required property real seconds

    duration: Motion.reduced ? 0 : seconds * 1000
    easing.type: Easing.Bezier
    easing.bezierCurve: Motion.easeOutCurve
}
