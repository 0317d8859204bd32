// The page of the focus block under mouse and keys.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test
import "Finder.js" as Finder

Item {
    id: scene

    width: 920
    height: 900

    Component {
        id: maker

        FocusCanvas {
            width: 920
            height: 900
        }
    }

    TestCase {
        name: "FocusCanvas"
        when: windowShown

        property FocusCanvas page: null

        function make(apps) {
            Forms.start(apps);
            mouseMove(scene, 1, 1);
            page = createTemporaryObject(maker, scene, {presenter: Forms.open("Focus")});
            verify(page);
            // Positioners place their items with the next frame.
            waitForRendering(page);
            return page;
        }

        function button(name) {
            return Finder.all(item => item instanceof PlainButton && item.text.startsWith(name), page)[0];
        }

        function text(name) { return Finder.named(page, name).text; }
        function cells() { return Finder.all(item => item instanceof FocusAppCell, page); }
        function cell(name) { return cells().find(item => item.name === name); }
        function tile(item) { return Finder.all(each => each instanceof PlainButton, item)[0]; }
        function remover(item) { return Finder.named(item, "remove"); }

        function test_headAndCycleSettings() {
            make(0);
            const texts = Finder.texts(page);
            verify(texts.includes("Pomodoro for your audio"));
            verify(texts.includes("Run a focus block. quillmere mutes everything except your designated focus app, then restores on break. Optional: keep one app (white noise, lo-fi) playing the whole time."));
            verify(texts.includes("Cycle settings"));
            verify(texts.includes("Keep this app playing during focus"));
            verify(texts.includes("Click an app icon to keep it playing. Click again to clear. Add any app — it doesn't have to be running."));
            const sliders = Finder.all(item => item instanceof SliderRow, page);
            compare(sliders.map(item => item.label), ["Focus duration", "Break duration"]);
            compare(sliders.map(item => item.valueText), ["25 min", "5 min"]);
        }

        function test_ringIsAsLargeAndThickAsTold() {
            make(0);
            const ring = Finder.named(page, "ring");
            compare(ring.width, 130);
            compare(ring.height, 130);
            compare(ring.lineWidth, 8);
            compare(String(ring.track), String(Tokens.alpha(Tokens.white, 0.06)));
            compare(ring.progress, 0);
            compare(text("time"), "25:00");
            compare(text("phase"), "ready");
        }

        function test_blockRunsThroughItsPhasesByTheMainButton() {
            make(2);
            compare(button("Cancel"), undefined);
            compare(button("Start 25-minute focus").symbol, "play.fill");
            mouseClick(button("Start 25-minute focus"));
            compare(text("heading"), "Deep work in progress");
            compare(text("phase"), "focus");
            compare(Forms.gain(1), 0);
            verify(button("Cancel"));
            compare(button("Skip to break").symbol, "forward.end.fill");
            mouseClick(button("Skip to break"));
            Forms.advance(1.1);
            compare(text("heading"), "Take a breath");
            compare(text("explanation"), "Volumes restored. Stretch, water, breathe.");
            compare(text("phase"), "break");
            compare(Forms.gain(1), 1);
            mouseClick(button("Skip to idle"));
            Forms.advance(1.1);
            compare(text("heading"), "Ready to focus");
            compare(button("Cancel"), undefined);
        }

        function test_cancelGivesTheSoundBack() {
            make(1);
            mouseClick(button("Start"));
            compare(Forms.gain(1), 0);
            mouseClick(button("Cancel"));
            compare(Forms.gain(1), 1);
            compare(text("phase"), "ready");
        }

        function test_slidersStayEnabledDuringABlock() {
            make(0);
            mouseClick(button("Start"));
            const slider = Finder.all(item => item instanceof LevelSlider, page)[0];
            compare(slider.enabled, true);
            mouseDrag(slider, 100, 10, slider.width, 0);
            compare(Finder.all(item => item instanceof SliderRow, page)[0].valueText, "60 min");
            compare(text("time"), "25:00");
        }

        function test_keysAndWheelMoveTheLengthsUpAndDown() {
            make(0);
            const rows = Finder.all(item => item instanceof SliderRow, page);
            const slider = row => Finder.all(item => item instanceof LevelSlider, row)[0];
            const handle = row => Finder.named(row, "handle");
            for (const [row, before, more] of [[rows[0], "25 min", "26 min"], [rows[1], "5 min", "6 min"]]) {
                handle(row).forceActiveFocus(Qt.TabFocusReason);
                keyClick(Qt.Key_Right);
                compare(row.valueText, more);
                keyClick(Qt.Key_Left);
                compare(row.valueText, before);
                mouseWheel(slider(row), slider(row).width / 2, 10, 0, 120);
                compare(row.valueText, more);
                // What a screen reader adds to the slider's name.
                compare(handle(row).Accessible.description, more);
            }
        }

        function test_withoutApplicationsThereAreNobodyAndTheAddCell() {
            make(0);
            compare(cells().map(item => item.name), ["None"]);
            compare(cells()[0].isNobody, true);
            compare(cells()[0].selected, true);
            const symbols = Finder.all(item => item instanceof Symbol, cells()[0]).map(item => item.name);
            compare(symbols, ["speaker.slash", "checkmark"]);
            const adder = Finder.all(item => item instanceof AddFocusAppCell, page)[0];
            compare(adder.text, "Add app");
            compare(adder.tip, "Add an app from your Applications folder");
            verify(adder.mapToItem(page, 0, 0).x > cells()[0].mapToItem(page, 0, 0).x);
        }

        function test_cellsHaveTheirSizes() {
            make(1);
            const one = cell("App 1");
            compare(one.width, 56);
            const icon = Finder.named(one, "icon");
            compare(icon.width, 48);
            compare(icon.height, 48);
            compare(icon.corner, 10);
            const adder = Finder.all(item => item instanceof AddFocusAppCell, page)[0];
            compare(adder.width, one.width);
            compare(adder.height, one.height);
        }

        function test_nameOfTwoWordsHasTwoLinesAndCellsStayAlike() {
            make(1);
            Forms.setFocusCandidates(["org.example.white-noise", "org.example.interoperability"]);
            waitForRendering(page);
            const label = name => Finder.named(cell(name), "name");
            compare([label("White Noise").lineCount, label("White Noise").truncated], [2, false]);
            // No line ends within a word.
            compare([label("Interoperability").lineCount, label("Interoperability").truncated], [1, true]);
            compare(label("App 1").lineCount, 1);
            compare(cell("White Noise").height, cell("App 1").height);
            compare(label("White Noise").y, label("App 1").y);
            verify(label("White Noise").contentHeight <= label("White Noise").height);
        }

        function test_firstTileStandsUnderTheWords() {
            make(1);
            const help = Finder.named(page, "help");
            compare(String(help.color), String(Tokens.textSecondary));
            const icon = Finder.all(item => item instanceof Rectangle && item.width === 48, cells()[0])[0];
            compare(icon.mapToItem(page, 0, 0).x, help.mapToItem(page, 0, 0).x);
        }

        function test_clickChoosesAndAnotherClears() {
            make(2);
            const one = cell("App 1");
            compare(tile(one).tip, "Keep App 1 playing during focus");
            mouseClick(tile(one));
            compare(Forms.focusApp(), "org.example.app1");
            compare(one.selected, true);
            compare(tile(one).tip, "Selected — click to clear");
            const border = Finder.named(one, "border");
            compare(border.border.width, 2);
            compare(String(border.border.color), String(Tokens.systemAccent));
            verify(Finder.named(one, "badge"));
            compare(Finder.named(cell("App 2"), "badge"), null);
            mouseClick(tile(one));
            compare(Forms.focusApp(), "");
            compare(Finder.named(one, "border"), null);
        }

        function test_candidateShowsItsRemoveButtonOnHover() {
            make(0);
            Forms.setFocusCandidates(["org.example.rain"]);
            waitForRendering(page);
            const rain = cell("Rain");
            verify(rain);
            compare(remover(rain).opacity, 0);
            mouseMove(rain, 20, 25);
            tryCompare(remover(rain), "opacity", 1);
            compare(remover(rain).tip, "Remove from focus picker");
            mouseClick(remover(rain));
            compare(Forms.focusCandidates(), []);
            compare(cells().length, 1);
        }

        function test_removeButtonThatIsNotSeenTakesNoTouch() {
            make(0);
            Forms.setFocusCandidates(["org.example.rain"]);
            waitForRendering(page);
            const rain = cell("Rain");
            const touch = touchEvent(rain);
            touch.press(1, rain, rain.width - 5, 5).commit();
            touch.release(1, rain, rain.width - 5, 5).commit();
            compare(Forms.focusCandidates(), ["org.example.rain"]);
            compare(Forms.focusApp(), "org.example.rain");
        }

        function test_selectedCandidateHasNoRemoveButton() {
            make(0);
            Forms.setFocusCandidates(["org.example.rain"]);
            waitForRendering(page);
            const rain = cell("Rain");
            mouseClick(tile(rain));
            mouseMove(rain, 20, 31);
            compare(remover(rain), null);
            keyClick(Qt.Key_Delete);
            compare(Forms.focusCandidates(), ["org.example.rain"]);
        }

        function test_listedApplicationHasNoRemoveButton() {
            make(1);
            mouseMove(cell("App 1"), 20, 30);
            compare(remover(cell("App 1")), null);
        }

        function test_keysChooseAndRemove() {
            make(0);
            Forms.setFocusCandidates(["org.example.rain"]);
            tile(cell("Rain")).forceActiveFocus(Qt.TabFocusReason);
            tryCompare(remover(cell("Rain")), "opacity", 1);
            keyClick(Qt.Key_Space);
            compare(Forms.focusApp(), "org.example.rain");
            keyClick(Qt.Key_Space);
            compare(Forms.focusApp(), "");
            keyClick(Qt.Key_Delete);
            compare(Forms.focusCandidates(), []);
        }

        function test_cellsThatFindNoRoomAreReachedByKeysAndWheel() {
            make(30);
            const strip = Finder.named(page, "strip");
            verify(strip.contentWidth > strip.width);
            const adder = Finder.all(item => item instanceof AddFocusAppCell, page)[0];
            adder.forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => adder.mapToItem(strip, adder.width, 0).x <= strip.width + 0.5);
            tile(cells()[0]).forceActiveFocus(Qt.TabFocusReason);
            tryCompare(strip, "contentX", 0);
            mouseWheel(strip, 100, 20, 0, -240);
            tryVerify(() => strip.contentX > 50);
        }

        function test_addCellOpensThePickerWhoseChoiceIsChosen() {
            make(1);
            Forms.install("org.example.rain", "Rain");
            mouseClick(Finder.all(item => item instanceof AddFocusAppCell, page)[0]);
            Forms.advance(0);
            compare(page.presenter.picker.open, true);
            page.presenter.picker.pick(1);
            compare(Forms.focusApp(), "org.example.rain");
            compare(Forms.focusCandidates(), ["org.example.rain"]);
            compare(cell("Rain").selected, true);
        }
    }
}
