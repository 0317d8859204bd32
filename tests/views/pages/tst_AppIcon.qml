// An application's icon, what stands there until it has come, and that it is asked for again where there was none.
import QtQuick
import QtQuick.Window
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test

Item {
    id: scene

    width: 100
    height: 100

    Component {
        id: iconMaker

        AppIcon {
            side: 38
        }
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
            tryVerify(() => !icon.missing && picture(icon).status === Image.Ready);
            compare(icon.attempt, 0);
        }

        function test_oneThatIsListedLateComesWithTheSecondAttempt() {
            const icon = createTemporaryObject(iconMaker, scene, {source: urlOf("two")});
            tryVerify(() => picture(icon).status === Image.Ready);
            verify(icon.missing);
            Icons.list("two");
            icon.secondAttemptAfter = 0;
            tryVerify(() => !icon.missing);
            verify(picture(icon).visible);
            compare(icon.attempt, 1);
        }

        function test_oneThatIsNeverListedIsAskedForTwiceAndNoMore() {
            const icon = createTemporaryObject(iconMaker, scene, {source: urlOf("six"), secondAttemptAfter: 0});
            tryCompare(icon, "attempt", 1);
            tryVerify(() => picture(icon).status === Image.Ready);
            verify(icon.missing);
            compare(icon.attempt, 1);
        }

        function test_theTileStandsWhileItIsAskedForAgain() {
            const icon = createTemporaryObject(iconMaker, scene, {source: urlOf("ten")});
            tryVerify(() => picture(icon).status === Image.Ready);
            icon.attempt += 1;
            compare(picture(icon).status, Image.Loading);
            verify(icon.missing);
            tryVerify(() => picture(icon).status === Image.Ready);
            verify(icon.missing);
        }

        function test_eachShowingOfTheWindowAsksAgain() {
            const window = createTemporaryObject(windowMaker, scene, {source: urlOf("win"), visible: true});
            tryVerify(() => picture(window.icon).status === Image.Ready);
            verify(window.icon.missing);
            window.hide();
            Icons.list("win");
            verify(window.icon.missing);
            window.show();
            tryVerify(() => !window.icon.missing && picture(window.icon).status === Image.Ready);
        }

        function test_anotherApplicationBeginsAnew() {
            const icon = createTemporaryObject(iconMaker, scene, {source: urlOf("old"), secondAttemptAfter: 0});
            tryCompare(icon, "attempt", 1);
            icon.source = urlOf("new");
            compare(icon.attempt, 0);
        }

        function tile(icon) { return findChild(icon, "tile"); }
        function picture(icon) { return findChild(icon, "picture"); }

        function test_tileStandsThereUntilTheIconHasCome() {
            const icon = createTemporaryObject(iconMaker, scene, {source: Forms.iconSource("org.example.pictured")});
            compare(picture(icon).status, Image.Loading);
            compare(icon.missing, true);
            compare([tile(icon).visible, picture(icon).visible], [true, false]);
            tryCompare(picture(icon), "status", Image.Ready);
            compare(icon.missing, false);
            compare([tile(icon).visible, picture(icon).visible], [false, true]);
            compare(picture(icon).width, 38);
        }

        function test_tileStaysWhereThereIsNoIcon() {
            const icon = createTemporaryObject(iconMaker, scene, {source: Forms.iconSource("org.example.nothing")});
            tryCompare(picture(icon), "status", Image.Ready);
            compare(icon.missing, true);
            compare([tile(icon).visible, picture(icon).visible], [true, false]);
            verify(Qt.colorEqual(tile(icon).color, Tokens.alpha(Tokens.brandSage, 0.14)));
        }

        function test_tileStandsThereWithoutASource() {
            const icon = createTemporaryObject(iconMaker, scene, {source: ""});
            compare([tile(icon).visible, picture(icon).visible], [true, false]);
        }
    }
}
