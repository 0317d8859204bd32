// Springs and fades, on desktops that want movement and on those that don't.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Test

Item {
    id: scene

    width: 300
    height: 200

    Component {
        id: maker

        Rectangle {
            id: mover

            property real far: 0

            width: 10
            height: 10
            color: "black"

            Behavior on x {
                Spring {
                    response: 0.4
                    dampingFraction: 0.85
                }
            }
            Behavior on far {
                EaseOut { seconds: 0.3 }
            }
            Behavior on color {
                EaseOutColor { seconds: 0.3 }
            }
        }
    }

    TestCase {
        name: "Motion"
        when: windowShown

        property Rectangle mover: null

        function init() {
            mover = createTemporaryObject(maker, scene);
        }

        function cleanup() {
            DesktopWishes.reset();
        }

        function go() {
            mover.x = 100;
            mover.far = 1;
            mover.color = "white";
        }

        function test_thingsGlideToTheirPlaces() {
            go();
            verify(mover.x < 100);
            verify(mover.far < 1);
            verify(!Qt.colorEqual(mover.color, "white"));
            tryCompare(mover, "x", 100);
            tryCompare(mover, "far", 1);
            tryVerify(() => Qt.colorEqual(mover.color, "white"));
        }

        function test_whereMotionIsReducedTheyAreThereAtOnce() {
            DesktopWishes.reduceMotion(true);
            go();
            compare(mover.x, 100);
            compare(mover.far, 1);
            verify(Qt.colorEqual(mover.color, "white"));
        }
    }
}
