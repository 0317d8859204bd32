// The one slider of the whole interface. value is only shown; what the user asks for arrives as moved().
import QtQuick
import Quillmere.Design

Item {
    id: root

    // The accessible name: what this slider sets.
    required property string label
    required property real value
    property real from: 0
    property real to: 1
    property bool isLive: false
    property bool isDucked: false
    property bool isMuted: false
    // An instantaneous level, 0 to 1, for an overlay.
    property real level: 0
    // SliderHandle.OwnStep, Forward (see scrollDelta) or PassOn.
    property alias scrollRule: handle.scrollRule
    // How far an arrow key moves it.
    property alias step: handle.stepSize
    // What the value stands for, where that is more than a share of the range.
    property string valueText: ""

    readonly property alias dragging: handle.dragging
    readonly property alias hovering: handle.hovering
    readonly property alias fraction: handle.fraction
    readonly property alias thumbCentre: handle.thumbCentre
    readonly property alias fillWidth: handle.fillWidth
    // A value from elsewhere may lie beyond the range; nothing is drawn beside the track.
    readonly property real drawnFill: Math.min(fillWidth, width)

    readonly property real trackHeight: 6
    readonly property real thumbSize: 14
    readonly property real leastLevel: 0.02
    // A faded thumb must hide what runs below it, as if the whole were one picture: the capsules leave its place free.
    // Its soft edge still needs them.
    readonly property real holeDiameter: layers.opacity < 1 ? thumbSize - 1 : 0
    readonly property real holeCentre: holeDiameter > 0 ? handle.thumbCentre : 0
    readonly property bool shimmers: !(level > leastLevel) && isLive && !isMuted
    readonly property color accentLeading: Tokens.alpha(Tokens.systemAccent, 0.85)
    readonly property color accentTrailing: Tokens.systemAccent
    readonly property color greyLeading: Tokens.alpha(Tokens.systemGrey, 0.55)
    readonly property color greyTrailing: Tokens.alpha(Tokens.systemGrey, 0.7)
    // The software renderer can't add light. There the shimmer fades to the colours of its brightest moment, which comes
    // to the same.
    readonly property bool canAddLight: GraphicsInfo.api !== GraphicsInfo.Software
    readonly property real brightest: 0.33

    // A value within the range that the user asks for by drag, click, key, wheel or assistive technology.
    signal moved(real value)
    // Only with SliderHandle.Forward: units of a scroll, upwards positive.
    signal scrollDelta(real delta)

    function brightened(fill: color): color {
        return Tokens.lightened(Qt.tint(Tokens.canvasBG, fill), Tokens.white, brightest);
    }

    implicitWidth: 160
    implicitHeight: Math.max(thumbSize, trackHeight + 4)

    Item {
        id: layers

        anchors.verticalCenter: parent.verticalCenter
        width: root.width
        height: Math.max(root.thumbSize, root.trackHeight)
        opacity: root.isMuted ? Tokens.mutedSlider : 1
        Behavior on opacity {
            EaseOut { seconds: 0.18 }
        }

        // The track.
        CapsuleFill {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            height: root.trackHeight
            objectName: "track"
            leading: Tokens.sliderTrack
            trailing: Tokens.sliderTrack
            holeCentre: root.holeCentre
            holeDiameter: root.holeDiameter
        }

        // The fill, once in the accent colour and once in grey; the two cross-fade.
        CapsuleFill {
            anchors.verticalCenter: parent.verticalCenter
            width: root.drawnFill
            height: root.trackHeight
            visible: opacity > 0
            holeCentre: root.holeCentre
            holeDiameter: root.holeDiameter
            opacity: root.isDucked ? 0 : 1
            leading: root.accentLeading
            trailing: root.accentTrailing
            Behavior on opacity {
                EaseOut { seconds: 0.25 }
            }
        }

        CapsuleFill {
            anchors.verticalCenter: parent.verticalCenter
            width: root.drawnFill
            height: root.trackHeight
            visible: opacity > 0
            holeCentre: root.holeCentre
            holeDiameter: root.holeDiameter
            opacity: root.isDucked ? 1 : 0
            leading: root.greyLeading
            trailing: root.greyTrailing
            Behavior on opacity {
                EaseOut { seconds: 0.25 }
            }
        }

        CapsuleFill {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.level > root.leastLevel
            width: Math.max(0, root.level * parent.width)
            height: root.trackHeight
            leading: Tokens.alpha(Tokens.white, 0)
            trailing: Tokens.alpha(Tokens.white, 0.35)
            addsLight: true
        }

        // Invisible, it has neither picture nor heartbeat.
        CapsuleFill {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.shimmers
            width: root.drawnFill
            height: root.trackHeight
            leading: root.canAddLight ? Tokens.white : root.brightened(root.isDucked ? root.greyLeading : root.accentLeading)
            trailing: root.canAddLight ? Tokens.white : root.brightened(root.isDucked ? root.greyTrailing : root.accentTrailing)
            addsLight: root.canAddLight
            opacity: root.canAddLight ? beat.shimmer : beat.shimmer / root.brightest

            Beat {
                id: beat

                running: root.shimmers
            }
        }

    }

    Item {
        anchors.verticalCenter: parent.verticalCenter
        width: root.width
        height: layers.height

        // The thumb. It fades with the rest.
        Item {
            objectName: "thumb"
            x: handle.thumbCentre - root.thumbSize / 2
            anchors.verticalCenter: parent.verticalCenter
            width: root.thumbSize
            height: root.thumbSize
            scale: root.dragging ? 1.15 : root.hovering ? 1.05 : 1
            Behavior on scale {
                EaseOut { seconds: 0.12 }
            }

            SoftShadow {
                anchors.fill: parent
                corner: root.thumbSize / 2
                color: Tokens.alpha(Tokens.black, 0.18)
                blurRadius: 1.5
                offsetDown: 1
                cutOut: layers.opacity < 1
                opacity: layers.opacity
            }

            Rectangle {
                anchors.fill: parent
                radius: width / 2
                color: Tokens.white
                opacity: layers.opacity
                antialiasing: true
            }

            Rectangle {
                anchors.fill: parent
                anchors.margins: -border.width / 2
                radius: width / 2
                color: Tokens.clear
                border.width: 0.5
                border.color: Tokens.alpha(Tokens.black, 0.06)
                border.pixelAligned: false
                opacity: layers.opacity
                antialiasing: true
            }
        }
    }

    FocusRing {
        shown: handle.visualFocus
        corner: Tokens.corner.chip
        anchors.margins: -Tokens.spacing.xs
    }

    SliderHandle {
        id: handle

        objectName: "handle"

        anchors.fill: parent
        position: root.value
        from: root.from
        to: root.to
        thumbSize: root.thumbSize
        enabled: root.enabled

        onMoved: (value) => root.moved(value)
        onScrollDelta: (delta) => root.scrollDelta(delta)

        Accessible.role: Accessible.Slider
        Accessible.name: root.label
        Accessible.description: root.valueText
        Accessible.focusable: true
        Accessible.onIncreaseAction: handle.increase()
        Accessible.onDecreaseAction: handle.decrease()
    }
}
