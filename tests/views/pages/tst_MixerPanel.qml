// The popover as a whole.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test

Item {
    id: scene

    width: 340
    height: 800

    Component {
        id: maker

        MixerPanel {
            presenter: Bench.panel
        }
    }

    TestCase {
        name: "MixerPanel"
        when: windowShown

        function make(count, sounding) {
            Bench.start(count, sounding);
            mouseMove(scene, 1, 799);
            return createTemporaryObject(maker, scene);
        }

        function cleanup() {
            wait(0);
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

        function button(panel, name) {
            return all(item => item instanceof PlainButton && item.Accessible.name.startsWith(name), panel)[0];
        }
        function appRows(panel) { return all(item => item instanceof AppRow, panel); }
        function text(panel, words) { return all(item => (item instanceof Label || item instanceof Figures) && item.text === words, panel)[0]; }

        function test_isThreeHundredAndFortyWide() {
            compare(make(2, 2).width, 340);
        }

        function test_quietPanelShowsItsEmptyState() {
            const panel = make(2, 0);
            verify(findChild(panel, "emptyState").visible);
            verify(text(panel, "Quiet right now."));
            verify(text(panel, "Apps appear here when they make sound."));
            verify(!findChild(panel, "liveCount").visible);
            compare(appRows(panel).length, 0);
        }

        function test_emptyStateGivesWayToTheFirstRow() {
            const panel = make(2, 0);
            Bench.sound(1, true);
            tryVerify(() => appRows(panel).length === 1);
            verify(!findChild(panel, "emptyState").visible);
            tryCompare(findChild(panel, "liveCount"), "opacity", 1);
        }

        function test_emptyStateLeadsToTheWindow() {
            const panel = make(0, 0);
            mouseClick(button(panel, "Open quillmere"));
            compare(Bench.windowsOpened, 1);
        }

        function test_everyRowHasItsSlider() {
            const panel = make(5, 5);
            tryVerify(() => appRows(panel).length === 5);
            const names = all(item => item instanceof SliderHandle, panel).map(item => item.Accessible.name);
            for (let i = 1; i <= 5; ++i)
                verify(names.includes("App " + i));
            verify(names.includes("Output volume"));
        }

        function test_heightFollowsTheRows() {
            const panel = make(4, 2);
            tryVerify(() => appRows(panel).length === 2);
            const before = panel.height;
            Bench.sound(3, true);
            tryCompare(panel, "height", before + 37);
        }

        function test_fortyRowsScrollRatherThanLeaveTheScreen() {
            const panel = make(40, 40);
            const list = findChild(panel, "rows");
            tryCompare(list, "count", 40);
            tryVerify(() => list.contentHeight >= 40 * 36);
            compare(panel.height, panel.tallest);
            verify(list.interactive);
            verify(list.height < list.contentHeight);
        }

        function test_listFadesOutWhereThereIsMore() {
            const panel = make(40, 40);
            const list = findChild(panel, "rows");
            tryVerify(() => list.contentHeight >= 40 * 36);
            const above = findChild(panel, "above");
            const below = findChild(panel, "below");
            tryCompare(below, "opacity", 1);
            compare(above.opacity, 0);
            verify(below.height <= 12);
            list.contentY = 100;
            tryCompare(above, "opacity", 1);
            list.positionViewAtEnd();
            tryCompare(below, "opacity", 0);
            compare(above.opacity, 1);
        }

        function test_isNeverHigherThanALowScreen() {
            const panel = make(6, 6);
            tryVerify(() => appRows(panel).length === 6);
            const whole = findChild(panel, "whole");
            verify(!whole.interactive);
            // 1366 by 768 at scale 3.
            panel.room = 256;
            verify(panel.height <= 256);
            verify(whole.interactive);
            whole.contentY = whole.contentHeight - whole.height;
            const quit = button(panel, "Quit quillmere");
            const at = quit.mapToItem(panel, 0, 0);
            verify(at.y >= 0 && at.y + quit.height <= panel.height);
            panel.room = 800;
            verify(!whole.interactive);
        }

        function test_edgePartsItFromADarkGround() {
            const edge = findChild(make(1, 1), "edge");
            compare(edge.border.width, 1);
            compare(edge.border.color, Tokens.windowStroke);
            verify(edge.border.color.a >= 0.2);
            compare(edge.width, 340);
        }

        function test_tipOfARowCoversNoOtherRow() {
            const panel = make(4, 4);
            tryVerify(() => appRows(panel).length === 4);
            const list = findChild(panel, "rows");
            const row = appRows(panel)[1];
            mouseMove(row, 40, 18);
            tryVerify(() => row.madeTip !== null);
            tryCompare(row.madeTip, "opened", true);
            verify(row.madeTip.parent === list);
            verify(row.madeTip.y >= list.height);
            mouseMove(scene, 1, 799);
            tryCompare(row.madeTip, "visible", false);
        }

        function test_menuWithNothingCheckedKeepsNoPlaceForMarks() {
            const panel = make(1, 1);
            mouseClick(button(panel, "Profile: Default"));
            const profiles = button(panel, "Profile: Default").madeMenu;
            tryCompare(profiles, "opened", true);
            verify(!profiles.itemAt(0).hasMarks);
            profiles.close();
            tryCompare(profiles, "visible", false);
            mouseMove(button(panel, "Output for App 1"), 8, 8);
            mouseClick(button(panel, "Output for App 1"));
            const routes = button(panel, "Output for App 1").madeMenu;
            tryCompare(routes, "opened", true);
            verify(routes.itemAt(0).hasMarks);
        }

        function test_masterSliderFollowsTheDeviceNameAtItsGap() {
            const panel = make(1, 1);
            const slider = all(item => item instanceof LevelSlider && item.label === "Output volume", panel)[0];
            const label = all(item => item instanceof MenuButtonLabel, panel)[0];
            fuzzyCompare(slider.mapToItem(label, 0, 0).x - label.shownWidth, 10, 0.01);
        }

        function test_fewRowsDoNotScroll() {
            const panel = make(4, 4);
            verify(!findChild(panel, "rows").interactive);
        }

        function test_wheelWithTheSettingOffScrollsTheList() {
            const panel = make(40, 40);
            Bench.setScrollAdjusts(false);
            const list = findChild(panel, "rows");
            tryVerify(() => appRows(panel).length > 10);
            const slider = all(item => item instanceof LevelSlider, list)[0];
            mouseMove(slider, 20, 9);
            mouseWheel(slider, 20, 9, 0, -240);
            tryVerify(() => list.contentY > 0);
        }

        function test_percentageOfTheMasterComesUpOnHoverAndOnChange() {
            const panel = make(1, 1);
            const percent = findChild(panel, "masterPercent");
            compare(percent.opacity, 0);
            const slider = all(item => item instanceof LevelSlider && item.label === "Output volume", panel)[0];
            mouseMove(slider, 20, 9);
            tryCompare(percent, "opacity", 1);
            mouseMove(scene, 1, 799);
            tryCompare(percent, "opacity", 0);
            Bench.panel.output.setMasterGain(0.42);
            tryCompare(percent, "opacity", 1);
            compare(percent.text, "42%");
            Bench.advance(1);
            tryCompare(percent, "opacity", 0);
        }

        function test_masterSliderSetsTheMaster() {
            const panel = make(1, 1);
            const slider = all(item => item instanceof LevelSlider && item.label === "Output volume", panel)[0];
            mouseClick(slider, 0, 9);
            fuzzyCompare(Bench.master(), 0, 0.01);
        }

        function test_whisperButtonTurnsWhisperModeOn() {
            const panel = make(1, 1);
            mouseClick(button(panel, "Whisper Mode (one-tap shush)"));
            verify(Bench.whispers());
            verify(button(panel, "Whisper Mode on — tap to restore"));
        }

        function test_bannerComesWithACallAndGoesAfterIt() {
            const panel = make(1, 1);
            Bench.duckAlso(1);
            const quiet = panel.height;
            Bench.call(true);
            tryVerify(() => panel.height > quiet + 20);
            verify(text(panel, "Music ducked while you're on a call."));
            Bench.call(false);
            tryCompare(panel, "height", quiet);
            verify(!text(panel, "Music ducked while you're on a call."));
        }

        function test_sleepTimerTurnsFromAMenuIntoACountdown() {
            const panel = make(1, 1);
            mouseClick(button(panel, "Sleep timer"));
            const menu = button(panel, "Sleep timer").madeMenu;
            tryCompare(menu, "opened", true);
            mouseClick(menu.itemAt(1));
            tryVerify(() => Bench.sleeps());
            verify(text(panel, "30:00"));
            Bench.advance(2);
            verify(text(panel, "29:58"));
            tryCompare(menu, "visible", false);
            mouseClick(button(panel, "Sleep timer — tap to cancel"));
            verify(!Bench.sleeps());
        }

        function test_profileMenuSavesTheCurrentLayout() {
            const panel = make(1, 1);
            mouseClick(button(panel, "Profile: Default"));
            const menu = button(panel, "Profile: Default").madeMenu;
            tryCompare(menu, "opened", true);
            const count = menu.count;
            mouseClick(menu.itemAt(count - 2));
            tryCompare(menu, "visible", false);
            tryCompare(menu, "count", count + 1);
            const texts = [];
            for (let i = 0; i < menu.count; ++i)
                texts.push(menu.itemAt(i).text);
            compare(texts, ["Default", "Untitled 2", "", "Save current as new profile…", "Open quillmere window…"]);
        }

        function test_quitAndOpenAskTheProgram() {
            const panel = make(1, 1);
            mouseClick(button(panel, "Quit quillmere"));
            mouseClick(button(panel, "Open quillmere window"));
            compare(Bench.quits, 1);
            compare(Bench.windowsOpened, 1);
        }

        function test_tabWalksThroughEveryControl() {
            const panel = make(2, 2);
            tryVerify(() => appRows(panel).length === 2);
            const seen = [];
            panel.forceActiveFocus();
            for (let i = 0; i < 14; ++i) {
                keyClick(Qt.Key_Tab);
                const item = panel.Window.activeFocusItem;
                const name = item ? item.Accessible.name : "";
                if (name.length > 0)
                    seen.push(name);
            }
            for (const name of ["Whisper Mode (one-tap shush)", "Open quillmere window", "Output volume", "App 1",
                                "Output for App 1", "Mute App 1", "App 2", "Profile: Default", "Sleep timer",
                                "Quit quillmere"])
                verify(seen.includes(name), name + " in " + seen.join(", "));
        }

        function test_tabsOfABrowserStandBelowItsRow() {
            const panel = make(2, 2);
            tryVerify(() => appRows(panel).length === 2);
            const before = panel.height;
            Bench.openTabs(Bench.row(0), 3);
            tryVerify(() => panel.height > before + 15);
            verify(text(panel, "3 tabs"));
        }
    }
}
