// A row's behaviour under mouse, wheel and keys.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test

Item {
    id: scene

    width: 400
    height: 300

    Component {
        id: rowMaker

        AppRow {
            width: 324
            height: rowHeight
            y: 40
        }
    }

    Component {
        id: foreignName

        SubtleIconButton {
            property int presses: 0

            text: "Mute AT&T"
            onClicked: presses += 1
        }
    }

    TestCase {
        id: testCase

        name: "AppRow"
        when: windowShown

        property AppRow appRow: null

        function init() {
            Bench.start(2, 1);
            appRow = createTemporaryObject(rowMaker, scene, {row: Bench.row(0)});
            verify(appRow);
            mouseMove(scene, 1, 299);
        }

        function cleanup() {
            appRow.destroy();
            wait(0);
        }

        function child(predicate, from) {
            const root = from ?? appRow;
            for (let i = 0; i < root.children.length; ++i) {
                const found = predicate(root.children[i]) ? root.children[i] : child(predicate, root.children[i]);
                if (found)
                    return found;
            }
            return null;
        }

        function status() { return findChild(appRow, "status"); }
        function controls() { return findChild(appRow, "controls"); }
        function slider() { return child(item => item instanceof LevelSlider); }
        function handle() { return child(item => item instanceof SliderHandle); }
        function mute() { return child(item => item instanceof SubtleIconButton); }
        function route() { return child(item => item instanceof MenuButton); }

        function test_restingRowShowsItsStatus() {
            compare(status().opacity, 1);
            compare(controls().opacity, 0);
        }

        function test_hoverSwapsTheStatusForTheControls() {
            mouseMove(appRow, 10, 10);
            tryCompare(controls(), "opacity", 1);
            tryCompare(status(), "opacity", 0);
            mouseMove(scene, 1, 299);
            tryCompare(controls(), "opacity", 0);
            tryCompare(status(), "opacity", 1);
        }

        function test_hoverOverTheSliderIsHoverOverTheRow() {
            mouseMove(slider(), 20, 9);
            tryCompare(controls(), "opacity", 1);
        }

        function test_hoverOverTheMuteButtonKeepsTheControls() {
            mouseMove(mute(), 12, 12);
            verify(appRow.hovering);
            tryCompare(controls(), "opacity", 1);
        }

        function test_muteButtonMutesAndUnmutes() {
            mouseMove(mute(), 12, 12);
            mouseClick(mute());
            compare(Bench.muted(1), true);
            compare(appRow.opacity, 0.55);
            compare(mute().symbol, "speaker.slash.fill");
            mouseClick(mute());
            compare(Bench.muted(1), false);
            compare(appRow.opacity, 1);
        }

        function test_mutedRowStaysReadableWhereContrastIsWanted() {
            mouseMove(mute(), 12, 12);
            mouseClick(mute());
            DesktopWishes.wantContrast(true);
            compare(appRow.opacity, 0.85);
            DesktopWishes.reset();
            compare(appRow.opacity, 0.55);
        }

        function test_anAmpersandInANameIsNoShortcut() {
            const button = createTemporaryObject(foreignName, scene);
            button.forceActiveFocus();
            keyClick(Qt.Key_T, Qt.AltModifier);
            keyClick(Qt.Key_Space);
            // Once by the space bar.
            compare(button.presses, 1);
        }

        function test_keyboardFocusBringsTheControlsUp() {
            mute().forceActiveFocus(Qt.TabFocusReason);
            tryCompare(controls(), "opacity", 1);
            keyClick(Qt.Key_Space);
            compare(Bench.muted(1), true);
        }

        function touch(item) {
            const at = item.mapToItem(appRow, item.width / 2, item.height / 2);
            const finger = touchEvent(appRow);
            finger.press(1, appRow, at.x, at.y).commit();
            finger.release(1, appRow, at.x, at.y).commit();
        }

        function test_aTouchOnControlsThatCannotBeSeenOnlyBringsThemUp() {
            touch(mute());
            compare(Bench.muted(1), false);
            tryCompare(controls(), "opacity", 1);
            touch(mute());
            compare(Bench.muted(1), true);
        }

        function test_aTouchOnAMenuThatCannotBeSeenOpensNothing() {
            touch(route());
            verify(!route().open);
            tryCompare(controls(), "opacity", 1);
        }

        function test_whatATouchHasBroughtUpGoesAgain() {
            touch(mute());
            tryCompare(controls(), "opacity", 1);
            tryCompare(controls(), "opacity", 0, appRow.touchMillis + 4000);
        }

        function test_itsTipKeepsClearOfTheNextRowsSlider() {
            mouseMove(appRow, 40, 18);
            tryVerify(() => appRow.madeTip !== null);
            tryCompare(appRow.madeTip, "opened", true);
            verify(appRow.madeTip.x + appRow.madeTip.width <= slider().x);
            compare(appRow.madeTip.contentItem.lineCount > 1, true);
        }

        function test_sliderHasTheNameOfTheApplication() {
            compare(handle().Accessible.name, "App 1");
        }

        function test_sliderSetsTheGain() {
            mouseClick(slider(), slider().width / 2, 9);
            fuzzyCompare(Bench.gain(1), 0.5, 0.01);
            compare(appRow.row.percentText, Math.floor(Bench.gain(1) * 100 + 1e-4) + "%");
        }

        function test_wheelOverTheSliderMovesTheGainALittle() {
            appRow.row.setGain(0.5);
            mouseMove(slider(), 20, 9);
            mouseWheel(slider(), 20, 9, 0, 120);
            fuzzyCompare(Bench.gain(1), 0.52, 1e-6);
            mouseWheel(slider(), 20, 9, 0, -240);
            fuzzyCompare(Bench.gain(1), 0.48, 1e-6);
        }

        function test_wheelOverTheNameDoesNothing() {
            appRow.row.setGain(0.5);
            mouseWheel(appRow, 60, 18, 0, 120);
            compare(Bench.gain(1), 0.5);
        }

        function test_wheelWithTheSettingOffDoesNothing() {
            appRow.row.setGain(0.5);
            Bench.setScrollAdjusts(false);
            mouseMove(slider(), 20, 9);
            mouseWheel(slider(), 20, 9, 0, 120);
            compare(Bench.gain(1), 0.5);
        }

        function test_routeMenuSendsTheApplicationToADevice() {
            mouseMove(appRow, 10, 10);
            mouseMove(route(), 8, 8);
            mouseClick(route());
            tryCompare(route(), "open", true);
            const menu = route().madeMenu;
            tryCompare(menu, "opened", true);
            compare(menu.count, 4);
            compare(menu.itemAt(0).checked, true);
            const headset = [0, 1, 2, 3].map(i => menu.itemAt(i)).find(item => item.text === "Headset");
            verify(headset);
            mouseClick(headset);
            compare(Bench.route(1), "headset");
            compare(appRow.row.routedDeviceName, "Headset");
            tryCompare(menu, "visible", false);
        }

        function test_routeMenuWorksWithKeysAndSkipsTheDivider() {
            route().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Down);
            const menu = route().madeMenu;
            tryCompare(menu, "opened", true);
            keyClick(Qt.Key_Down);
            compare(menu.currentIndex, 0);
            keyClick(Qt.Key_Down);
            compare(menu.currentIndex, 2);
            keyClick(Qt.Key_Return);
            tryVerify(() => Bench.route(1).length > 0);
            tryCompare(menu, "visible", false);
        }

        function test_chosenEntryKeepsItsMarkWhenChosenAgain() {
            mouseMove(route(), 8, 8);
            mouseClick(route());
            const menu = route().madeMenu;
            tryCompare(menu, "opened", true);
            mouseClick(menu.itemAt(0));
            tryCompare(menu, "visible", false);
            compare(menu.itemAt(0).checked, true);
        }

        function test_missingIconBecomesATile() {
            const icon = child(item => item instanceof AppIcon);
            tryCompare(icon, "missing", true);
        }
    }
}
