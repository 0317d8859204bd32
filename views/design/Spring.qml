// A spring told by its response in seconds and its damping fraction.
import QtQuick
import Quillmere.Design

NumberAnimation {
    id: root

    required property real response
    required property real dampingFraction

    duration: Motion.reduced ? 0 : Motion.springMillis(root.response, root.dampingFraction)
    easing.type: Easing.Bezier
    easing.bezierCurve: Motion.springCurve(root.dampingFraction)
}
