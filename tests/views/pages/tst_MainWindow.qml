// The main window: every application, and the automations.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test

Item {
    id: scene

    width: 1120
    height: 720

    Component {
        id: maker

        MainWindow {
            width: 1120
            height: 720
            presenter: Bench.window
        }
    }

    TestCase {
        name: "MainWindow"
        when: windowShown

        function make(count, sounding) {
            Bench.start(count, sounding);
            mouseMove(scene, 1, 1);
            return createTemporaryObject(maker, scene);
        }

        function all(predicate, from) {
            let found = [];
            for (let i = 0; i < from.children.length; ++i) {
                if (!from.children[i].visible)
                    continue;
                if (predicate(from.children[i]))
                    found.push(from.children[i]);
                found = found.concat(all(predicate, from.children[i]));
            }
            return found;
        }

        function button(from, name) {
            return all(item => item instanceof PlainButton && item.Accessible.name.startsWith(name), from)[0];
        }

        function reach(page, item) {
            const side = findChild(page, "side");
            const y = item.mapToItem(side.contentItem, 0, 0).y;
            side.contentY = Math.max(0, Math.min(y - 100, side.contentHeight - side.height));
            return item;
        }

        function test_silentApplicationsAreListedToo() {
            const page = make(3, 1);
            tryVerify(() => all(item => item instanceof AppRow, page).length === 4);
        }

        function test_rowsGoOnToTheCardsEdgeAndFadeThere() {
            const page = make(40, 40);
            const list = findChild(page, "rows");
            tryVerify(() => list.contentHeight >= 40 * 44);
            compare(list.parent.height - list.height, 2);
            const fade = all(item => item instanceof ScrollFade && item.list === list, page)[0];
            compare(fade.moreBelow, true);
            compare(fade.moreAbove, false);
            list.positionViewAtEnd();
            tryCompare(fade, "moreBelow", false);
            compare(fade.moreAbove, true);
        }

        function test_sideFadesAtItsTopOnceScrolled() {
            const page = make(1, 1);
            const side = findChild(page, "side");
            const fades = all(item => item.objectName === "side", page)[0].parent;
            const fade = all(item => item instanceof ScrollFade && item.list === side, fades)[0];
            compare(fade.moreAbove, false);
            compare(fade.moreBelow, true);
            side.contentY = 60;
            compare(fade.moreAbove, true);
        }

        function test_focusBlockIsStartedAndCancelled() {
            const page = make(2, 1);
            mouseClick(button(page, "Start 25-minute focus"));
            compare(Bench.gain(1), 0);
            verify(button(page, "Skip to break"));
            mouseClick(button(page, "Cancel"));
            compare(Bench.gain(1), 1);
        }

        function test_whisperButtonTurnsWhisperModeOn() {
            const page = make(1, 1);
            mouseClick(button(page, "Engage Whisper Mode"));
            verify(Bench.whispers());
        }

        function test_switchesAreWrittenAndKeepFollowingTheirSetting() {
            const page = make(1, 1);
            const toggle = all(item => item instanceof Toggle && item.label.startsWith("Scroll over"), page)[0];
            reach(page, toggle);
            compare(toggle.checked, true);
            mouseClick(toggle);
            compare(Bench.window.scrollAdjusts, false);
            compare(toggle.checked, false);
            Bench.setScrollAdjusts(true);
            compare(toggle.checked, true);
        }

        function test_profilesAreSavedAndApplied() {
            const page = make(1, 1);
            mouseClick(reach(page, button(page, "Save current")));
            const apply = button(page, "Apply Untitled 2");
            verify(apply);
            mouseClick(reach(page, apply), 30, 10);
            compare(Bench.window.profiles.activeName, "Untitled 2");
        }

        function test_sidesStayApartAtTheSmallestSize() {
            const page = make(3, 3);
            page.width = 1040;
            page.height = 660;
            const side = findChild(page, "side");
            const rows = all(item => item instanceof AppRow, page);
            verify(rows.length > 0);
            const right = rows[0].mapToItem(page, rows[0].width, 0).x;
            verify(right < side.mapToItem(page, 0, 0).x);
        }
    }
}
