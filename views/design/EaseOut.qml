// The look's ease-out for numbers.
import QtQuick
import Quillmere.Design

NumberAnimation {
    // Told in seconds, as all of the look's times are.
    required property real seconds

    duration: Motion.reduced ? 0 : seconds * 1000
    easing.type: Easing.Bezier
    easing.bezierCurve: Motion.easeOutCurve
}
