// The animated wave; a straight line while nothing sounds.
import QtQuick
import Quillmere.Design

WaveItem {
    id: root

    Beat {
        id: beat

        running: root.liveCount > 0
        rate: Beat.Sixty
    }

    implicitHeight: 80
    lineWidth: 2.6
    time: beat.time
}
