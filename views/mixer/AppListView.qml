// A list of applications, whose rows come, go and change places without a jump.
import QtQuick
import Quillmere.Design

ListView {
    id: root

    property real fadeSeconds: 0.2

    interactive: contentHeight + topMargin + bottomMargin > height
    clip: interactive
    boundsBehavior: Flickable.StopAtBounds
    // All rows exist, also for the keyboard and for assistive technology; of very many those that are near.
    cacheBuffer: 8000

    Accessible.role: Accessible.List

    add: Transition {
        EaseOut {
            property: "opacity"
            from: 0
            to: 1
            seconds: root.fadeSeconds
        }
    }
    remove: Transition {
        EaseOut {
            property: "opacity"
            to: 0
            seconds: root.fadeSeconds
        }
    }
    displaced: Transition {
        EaseOut {
            property: "y"
            seconds: root.fadeSeconds
        }
        EaseOut {
            property: "opacity"
            to: 1
            seconds: root.fadeSeconds
        }
    }
    move: Transition {
        EaseOut {
            property: "y"
            seconds: root.fadeSeconds
        }
    }
}
