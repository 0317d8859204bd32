// The page of Auto-Duck under mouse and keys.
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

        AutoDuckCanvas {
            width: 920
            height: 900
        }
    }

    TestCase {
        name: "AutoDuckCanvas"
        when: windowShown

        property AutoDuckCanvas page: null

        function init() {
            Forms.start(3);
            Forms.setDuckLists(["org.example.app1", "org.example.tool"], []);
            mouseMove(scene, 1, 1);
        }

        function make() {
            page = createTemporaryObject(maker, scene, {presenter: Forms.open("AutoDuck")});
            verify(page);
            // Positioners place their items with the next frame.
            waitForRendering(page);
            return page;
        }

        function button(name, from) {
            return Finder.all(item => item instanceof PlainButton && item.text.startsWith(name), from ?? page)[0];
        }

        function card(name) { return Finder.named(page, name); }
        function rows(name) { return Finder.all(item => item instanceof DuckAppRow, card(name)); }
        function toggle(row) { return Finder.all(item => item instanceof Toggle, row)[0]; }
        function icon(row) { return Finder.all(item => item instanceof AppIcon, row)[0]; }

        // Brings an item of the page to where the mouse can reach it.
        function reach(item) {
            page.children[0].reveal(item);
            return item;
        }

        function test_headTellsWhatThePageIsFor() {
            make();
            const texts = Finder.texts(page);
            verify(texts.includes("Auto-Duck"));
            verify(texts.includes("Let the music get out of the way"));
            verify(texts.includes("When a meeting app activates the microphone, quillmere fades music apps to a low level and restores them when the call ends."));
        }

        function test_slidersShowTheRuleAndWriteIt() {
            make();
            const sliders = Finder.all(item => item instanceof SliderRow, page);
            compare(sliders.map(item => item.label), ["Duck music to", "Fade duration", "Restore delay"]);
            compare(sliders.map(item => item.valueText), ["30%", "300 ms", "1500 ms"]);
            compare(sliders.map(item => item.help), ["", "", "Wait this long after a call ends before restoring volume — prevents flicker if you immediately rejoin."]);
            const level = item => Finder.all(each => each instanceof LevelSlider, item)[0];
            mouseClick(level(sliders[0]), level(sliders[0]).width / 2, 10);
            fuzzyCompare(Forms.duckTarget(), 0.5, 0.01);
            mouseDrag(level(sliders[1]), 100, 10, level(sliders[1]).width, 0);
            compare(Forms.fadeMillis(), 1000);
            mouseDrag(level(sliders[2]), 300, 10, -400, 0);
            compare(Forms.delayMillis(), 0);
            compare(sliders.map(item => item.valueText), [Math.floor(Forms.duckTarget() * 100 + 1e-4) + "%", "1000 ms", "0 ms"]);
        }

        function test_sliderRowHasItsNameAndValueOverTheSliderAndItsHelpBelow() {
            make();
            const row = Finder.all(item => item instanceof SliderRow, page)[2];
            const slider = Finder.all(item => item instanceof LevelSlider, row)[0];
            const name = Finder.all(item => item instanceof Label && item.text === "Restore delay", row)[0];
            const shown = Finder.all(item => item instanceof Figures, row)[0];
            const help = Finder.all(item => item instanceof Paragraph, row)[0];
            const place = item => item.mapToItem(row, 0, 0, item.width, item.height);
            compare(place(name).left, 0);
            compare(place(shown).right, row.width);
            verify(Math.abs((place(name).top + place(name).bottom) - (place(shown).top + place(shown).bottom)) <= 2);
            compare(place(slider).left, 0);
            compare(slider.width, row.width);
            compare([slider.from, slider.to], [0, 1]);
            verify(place(slider).top >= place(name).bottom);
            verify(place(help).top >= place(slider).bottom);
            verify(help.font.pixelSize < name.font.pixelSize);
            compare(String(help.color), String(Tokens.textSecondary));
        }

        function test_ruleBeyondItsRangeStaysOnItsTrack() {
            Forms.setDelayMillis(100000);
            make();
            const row = Finder.all(item => item instanceof SliderRow, page)[2];
            compare(row.valueText, "100000 ms");
            const slider = Finder.all(item => item instanceof LevelSlider, row)[0];
            const drawn = Finder.all(item => item instanceof CapsuleFill, slider);
            verify(drawn.length > 1);
            for (const each of drawn)
                verify(each.width <= slider.width, each.width + " wide");
        }

        function test_cardsHaveTheirTitlesCountsAndButtons() {
            make();
            const triggers = Finder.texts(card("triggers"));
            compare(triggers.slice(0, 3), ["Triggered by these apps", "When any of these activate the mic, music ducks.", "2 apps"]);
            const ducked = Finder.texts(card("ducked"));
            compare(ducked.slice(0, 3), ["Music apps that get ducked", "These are the apps quillmere fades down. Anything not on this list keeps playing at normal volume.", "0 apps"]);
            verify(button("Add trigger app", card("triggers")));
            verify(button("Add music app", card("ducked")));
        }

        function test_membersAreOnAndDefaultsBelowTheirHeadingOff() {
            make();
            const all = rows("triggers");
            compare(all[0].name, "App 1");
            compare(all[1].name, "Tool");
            compare(all[0].on, true);
            compare(icon(all[0]).opacity, 1);
            compare(icon(all[0]).width, 28);
            compare(icon(all[0]).corner, 6);
            compare(all[2].on, false);
            tryCompare(icon(all[2]), "opacity", 0.5);
            compare(all.filter(row => row.startsDefaults).length, 1);
            compare(all[2].startsDefaults, true);
            const heading = Finder.named(all[2], "defaultsHeading");
            compare(heading.text, "Disabled defaults");
            compare(Finder.named(all[3], "defaultsHeading"), null);
        }

        function test_applicationsOfOneNameAreToldApartByTheirTips() {
            make();
            const labels = Finder.all(item => item instanceof DuckAppRow && item.name === "Music", page).map(item => Finder.named(item, "name"));
            compare(labels.map(item => item.tip).sort(), ["com.amazon.Music", "com.apple.Music"]);
        }

        function test_applicationThatIsNotInstalledHasTheTile() {
            make();
            const row = rows("triggers")[1];
            tryCompare(icon(row), "missing", true);
            const symbol = Finder.all(item => item instanceof Symbol, icon(row))[0];
            compare(symbol.name, "app.fill");
        }

        function test_switchingOffAMemberThatIsNoDefaultTakesItAway() {
            make();
            const before = rows("triggers").length;
            mouseClick(reach(toggle(rows("triggers")[1])));
            compare(Forms.triggers(), ["org.example.app1"]);
            compare(rows("triggers").length, before - 1);
            verify(Finder.texts(card("triggers")).includes("1 app"));
        }

        function test_defaultIsSwitchedOnAndOffAgainByKeysAndKeepsTheFocus() {
            make();
            const last = rows("triggers")[2];
            const name = last.name;
            toggle(last).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            compare(Forms.triggers().length, 3);
            compare(last.name, name);
            compare(last.on, true);
            compare(toggle(last).activeFocus, true);
            keyClick(Qt.Key_Space);
            compare(Forms.triggers().length, 2);
            compare(last.on, false);
        }

        function test_switchFollowsARuleThatIsChangedElsewhere() {
            make();
            const row = rows("triggers")[0];
            mouseClick(reach(toggle(rows("triggers")[2])));
            Forms.setDuckLists(["org.example.app1"], []);
            compare(toggle(row).checked, true);
            compare(rows("triggers").filter(each => toggle(each).checked).length, 1);
        }

        function test_pickerAddsToTheListItWasOpenedFor() {
            make();
            mouseClick(reach(button("Add music app")));
            Forms.advance(0);
            compare(page.presenter.picker.open, true);
            page.presenter.picker.pick(0);
            compare(Forms.ducked(), ["org.example.app1"]);
            compare(page.presenter.picker.open, false);
            compare(rows("ducked")[0].name, "App 1");
        }

        function test_tabGoesFromTheSlidersThroughTheSwitchesToTheButton() {
            make();
            const first = Finder.all(item => item instanceof SliderHandle, page)[0];
            first.forceActiveFocus(Qt.TabFocusReason);
            let order = [];
            for (let i = 0; i < 5; ++i) {
                const item = scene.Window.activeFocusItem;
                order.push(item.Accessible.name);
                keyClick(Qt.Key_Tab);
            }
            compare(order, ["Duck music to", "Fade duration", "Restore delay", "App 1", "Tool"]);
        }

        function test_whatTheKeysReachIsBroughtIntoView() {
            make();
            const add = button("Add music app");
            add.forceActiveFocus(Qt.TabFocusReason);
            const y = add.mapToItem(page, 0, 0).y;
            verify(y >= 0 && y + add.height <= page.height, "at " + y);
        }
    }
}
