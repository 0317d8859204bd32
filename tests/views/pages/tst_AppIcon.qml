// An application's icon: asked for again where it was not there yet.
import QtQuick
import QtQuick.Window
import QtTest
import Quillmere.Views
import Quillmere.Test

Item {
    id: scene

    width: 100
    height: 100

    Component {
        id: iconMaker

        AppIcon {}
    }

    Component {
        id: windowMaker

        Window {
            property alias icon: inside
            property url source

            width: 100
            height: 100

            AppIcon {
                id: inside

                source: parent.Window.window.source
                secondAttemptAfter: 3600000
            }
        }
    }

    TestCase {
        name: "AppIcon"
        when: windowShown

        // Three letters each, so that no padding is at their encoding's end.
        function urlOf(id) { return "image://app-icon/" + Qt.btoa(id); }

        function test_oneThatIsListedStandsAtOnceAndIsNotAskedForAgain() {
            Icons.list("one");
            const icon = createTemporaryObject(iconMaker, scene, {source: urlOf("one"), secondAttemptAfter: 0});
            tryVerify(() => !icon.missing && findImage(icon).status === Image.Ready);
            compare(icon.attempt, 0);
        }

        function findImage(icon) {
            for (let at = 0; at < icon.children.length; ++at) {
                if (icon.children[at] instanceof Image)
                    return icon.children[at];
            }
            return null;
        }

        function test_oneThatIsListedLateComesWithTheSecondAttempt() {
            const icon = createTemporaryObject(iconMaker, scene, {source: urlOf("two")});
            tryVerify(() => findImage(icon).status === Image.Ready);
            verify(icon.missing);
            Icons.list("two");
            icon.secondAttemptAfter = 0;
            tryVerify(() => !icon.missing);
            verify(findImage(icon).visible);
            compare(icon.attempt, 1);
        }

        function test_oneThatIsNeverListedIsAskedForTwiceAndNoMore() {
            const icon = createTemporaryObject(iconMaker, scene, {source: urlOf("six"), secondAttemptAfter: 0});
            tryCompare(icon, "attempt", 1);
            tryVerify(() => findImage(icon).status === Image.Ready);
            verify(icon.missing);
            compare(icon.attempt, 1);
        }

        function test_theTileStandsWhileItIsAskedForAgain() {
            const icon = createTemporaryObject(iconMaker, scene, {source: urlOf("ten")});
            tryVerify(() => findImage(icon).status === Image.Ready);
            icon.attempt += 1;
            compare(findImage(icon).status, Image.Loading);
            verify(icon.missing);
            tryVerify(() => findImage(icon).status === Image.Ready);
            verify(icon.missing);
        }

        function test_eachShowingOfTheWindowAsksAgain() {
            const window = createTemporaryObject(windowMaker, scene, {source: urlOf("win"), visible: true});
            tryVerify(() => findImage(window.icon).status === Image.Ready);
            verify(window.icon.missing);
            window.hide();
            Icons.list("win");
            verify(window.icon.missing);
            window.show();
            tryVerify(() => !window.icon.missing && findImage(window.icon).status === Image.Ready);
        }

        function test_anotherApplicationBeginsAnew() {
            const icon = createTemporaryObject(iconMaker, scene, {source: urlOf("old"), secondAttemptAfter: 0});
            tryCompare(icon, "attempt", 1);
            icon.source = urlOf("new");
            compare(icon.attempt, 0);
        }
    }
}
