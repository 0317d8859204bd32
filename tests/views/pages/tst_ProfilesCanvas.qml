// The page of the profiles and its editor under mouse and keys.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test
import "Finder.js" as Finder

Item {
    id: scene

    width: 920
    height: 720

    Component {
        id: maker

        ProfilesCanvas {
            width: 920
            height: 720
        }
    }

    TestCase {
        name: "ProfilesCanvas"
        when: windowShown

        property ProfilesCanvas page: null

        function start() {
            Forms.start(3);
            Forms.addProfile("Evening");
            mouseMove(scene, 1, 719);
        }

        function make() {
            page = createTemporaryObject(maker, scene, {presenter: Forms.open("Profiles")});
            verify(page);
            // Positioners place their items with the next frame.
            waitForRendering(page);
            return page;
        }

        function button(name, from) {
            return Finder.all(item => item instanceof PlainButton && item.text.startsWith(name), from ?? page)[0];
        }

        function named(name) { return Finder.named(page, name); }
        function tiles() { return Finder.all(item => item instanceof ProfileTile, page); }
        function tile(name) { return tiles().find(item => item.name === name); }
        function editor() { return named("editor"); }
        function rows() { return Finder.all(item => item instanceof ProfileEntryRow, page); }
        function field() { return Finder.all(item => item instanceof InputField, page)[0]; }
        function save() { return named("save"); }

        function test_columnsAndHeads() {
            start();
            make();
            compare(named("profiles").width, 280);
            const texts = Finder.texts(page);
            verify(texts.includes("No profile applied"));
            verify(texts.includes("Live mixer values are in effect."));
            verify(texts.includes("All profiles"));
            verify(texts.includes("New profile"));
            verify(texts.includes("Capture the current mixer"));
            verify(texts.includes("Edit profile"));
            verify(texts.includes("Apps in this profile"));
            compare(named("heroCaption"), null);
        }

        function test_partsHaveTheirSymbolsAndSizes() {
            start();
            make();
            const symbols = item => Finder.all(each => each instanceof Symbol, item);
            const evening = tile("Evening");
            compare(symbols(evening).map(item => item.name), ["rectangle.stack.fill"]);
            const ground = symbols(evening)[0].parent;
            compare([ground.width, ground.height], [36, 36]);
            compare(symbols(button("New profile")).map(item => item.name), ["plus"]);
            compare(symbols(Finder.all(item => item instanceof ProfilesHero, page)[0]).map(item => item.name), ["rectangle.stack"]);
            compare(symbols(Finder.named(editor(), "emptyState")).map(item => item.name), ["rectangle.stack"]);
            compare(button("Sync from current mixer").symbol, "arrow.down.circle");
            compare(button("Add app").symbol, "plus");
            compare(named("delete").text, "Delete profile");
            compare(named("delete").symbol, "trash");
            compare(named("apply").text, "Apply now");
            compare(named("apply").symbol, "play.fill");
        }

        function test_tileShowsThatItsMenuIsOpen() {
            start();
            make();
            const evening = tile("Evening");
            const ground = Finder.named(evening, "ground");
            verify(Qt.colorEqual(ground.color, Tokens.clear));
            evening.openMenu(10, 10);
            tryCompare(evening, "menuOpen", true);
            verify(Qt.colorEqual(ground.color, Tokens.cardBGHover));
            keyClick(Qt.Key_Escape);
            tryCompare(evening, "menuOpen", false);
            verify(Qt.colorEqual(ground.color, Tokens.clear));
        }

        function test_nameThatIsCutComesAsATip() {
            start();
            Forms.addProfile("A profile whose name is far too long for the tile that it has");
            make();
            const label = name => Finder.named(tile(name), "name");
            const cut = label("A profile whose name is far too long for the tile that it has");
            verify(cut.truncated);
            mouseMove(cut, 20, 5);
            tryVerify(() => cut.madeTip !== null && cut.madeTip.visible);
            compare(cut.madeTip.text, cut.text);
            mouseMove(label("Evening"), 20, 5);
            tryVerify(() => !cut.madeTip.visible);
            compare(label("Evening").madeTip, null);
        }

        function test_editorStandsInItsOrder() {
            start();
            make();
            mouseClick(tile("Evening"));
            tryVerify(() => rows().length === 3);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick("x");
            waitForRendering(page);
            const place = item => item.mapToItem(page, 0, 0, item.width, item.height);
            const down = [named("title"), field(), button("Add app"), named("count"), rows()[0], named("delete")].map(place);
            for (let i = 1; i < down.length; ++i)
                verify(down[i].top >= down[i - 1].bottom, i + " at " + down[i]);
            const along = [named("delete"), named("discard"), named("apply"), save()].map(place);
            for (let i = 1; i < along.length; ++i)
                verify(along[i].left > along[i - 1].right, i + " at " + along[i]);
            compare(place(editor()).left, 281);
        }

        function test_saveKeySavesTheCopy() {
            start();
            make();
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            keyClick("s");
            compare(Forms.profileName(0), "Default");
            keyClick(Qt.Key_S, Qt.ControlModifier);
            compare(Forms.profileName(0), "Defaults");
            compare(save().text, "Saved");
        }

        function test_nameFromRightToLeftStandsWhereTheOthersDo() {
            start();
            Forms.addProfile("موسيقى المساء");
            make();
            const name = Finder.named(tile("موسيقى المساء"), "name");
            compare(name.effectiveHorizontalAlignment, Text.AlignLeft);
            mouseClick(tile("موسيقى المساء"));
            compare(named("title").text, "موسيقى المساء");
            compare(named("title").effectiveHorizontalAlignment, Text.AlignLeft);
        }

        function test_firstProfileIsSelectedAndEdited() {
            start();
            make();
            compare(tiles().map(item => item.name), ["Default", "Evening"]);
            compare(tiles().map(item => item.sizeText), ["0 apps", "3 apps"]);
            compare(tiles().map(item => item.selected), [true, false]);
            compare(field().text, "Default");
            compare(field().placeholderText, "Profile name");
            verify(Finder.named(editor(), "emptyState"));
            verify(Finder.texts(editor()).includes("This profile is empty."));
            verify(Finder.texts(editor()).includes("Sync from the current mixer or add apps individually."));
        }

        function test_tileIsHighlightedMoreWhenSelectedThanWhenHovered() {
            start();
            make();
            const ground = item => Finder.named(item, "ground");
            compare(String(ground(tile("Default")).color), String(Tokens.cardBGSelected));
            compare(String(ground(tile("Evening")).color), String(Tokens.clear));
            mouseMove(tile("Evening"), 100, 20);
            compare(String(ground(tile("Evening")).color), String(Tokens.cardBGHover));
            mouseClick(tile("Evening"));
            compare(String(ground(tile("Evening")).color), String(Tokens.cardBGSelected));
            compare(String(ground(tile("Default")).color), String(Tokens.clear));
            compare(field().text, "Evening");
            tryVerify(() => rows().length === 3);
            compare(rows().map(item => item.name), ["App 1", "App 2", "App 3"]);
            compare(Finder.named(editor(), "emptyState"), null);
        }

        function test_newProfileIsSelected() {
            start();
            make();
            mouseClick(button("New profile"));
            compare(Forms.profileCount(), 3);
            compare(Forms.profileName(2), "Untitled 3");
            tryVerify(() => tile("Untitled 3"));
            compare(tile("Untitled 3").selected, true);
            compare(field().text, "Untitled 3");
            compare(named("count").text, "3");
        }

        function test_menuOfATileAppliesDuplicatesAndDeletes() {
            start();
            make();
            const choose = (name, entry) => {
                mouseClick(tile(name), 100, 20, Qt.RightButton);
                const menu = tile(name).madeMenu;
                verify(menu);
                tryCompare(menu, "opened", true);
                compare([0, 1, 2].map(i => menu.itemAt(i).text), ["Apply", "Duplicate", "Delete"]);
                mouseClick(menu.itemAt(entry));
                tryCompare(menu, "visible", false);
            };
            choose("Evening", 0);
            compare(Forms.activeProfile(), 1);
            // The menu is not the tile's click.
            compare(tile("Default").selected, true);
            verify(Finder.named(tile("Evening"), "activeTag"));
            compare(named("heroTitle").text, "Evening");
            compare(named("heroDetail").text, "3 apps");
            compare(named("heroCaption").text, "Active profile");
            choose("Evening", 1);
            compare(Forms.profileName(2), "Evening Copy");
            mouseClick(tile("Evening"), 100, 20, Qt.RightButton);
            tryCompare(tile("Evening").madeMenu, "opened", true);
            mouseClick(tile("Evening").madeMenu.itemAt(2));
            compare(Forms.profileCount(), 2);
            compare(Forms.activeProfile(), -1);
        }

        function test_menuOpensByKeys() {
            start();
            make();
            tile("Evening").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_F10, Qt.ShiftModifier);
            tryCompare(tile("Evening").madeMenu, "opened", true);
            keyClick(Qt.Key_Escape);
            tryCompare(tile("Evening").madeMenu, "visible", false);
            compare(tile("Evening").activeFocus, true);
            keyClick(Qt.Key_Menu);
            tryCompare(tile("Evening").madeMenu, "opened", true);
            keyClick(Qt.Key_Escape);
        }

        function test_typingANameMakesTheCopyDirtyUntilItIsSaved() {
            start();
            make();
            compare(save().text, "Saved");
            compare(save().enabled, false);
            compare(named("discard"), null);
            compare(named("dirtyTag"), null);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            keyClick("s");
            compare(field().text, "Defaults");
            compare(named("title").text, "Defaults");
            compare(named("dirtyTag").text, "Unsaved changes");
            compare(save().text, "Save changes");
            compare(save().enabled, true);
            verify(named("discard"));
            compare(Forms.profileName(0), "Default");
            mouseClick(save());
            compare(Forms.profileName(0), "Defaults");
            compare(save().text, "Saved");
            compare(save().enabled, false);
            compare(tiles()[0].name, "Defaults");
        }

        function test_discardTakesTheStoredNameBack() {
            start();
            make();
            field().forceActiveFocus(Qt.TabFocusReason);
            field().selectAll();
            keyClick(Qt.Key_Backspace);
            compare(named("title").text, "Untitled");
            waitForRendering(page);
            mouseClick(named("discard"));
            compare(field().text, "Default");
            compare(named("title").text, "Default");
            compare(named("dirtyTag"), null);
        }

        function test_typingInTheMiddleKeepsTheCursor() {
            start();
            make();
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Home);
            keyClick("x");
            keyClick("y");
            compare(field().text, "xyDefault");
            compare(field().cursorPosition, 2);
        }

        function test_rowEditsTheCopyAlone() {
            start();
            Forms.setGain(1, 0.5);
            make();
            mouseClick(tile("Evening"));
            tryVerify(() => rows().length === 3);
            const row = rows()[1];
            const slider = Finder.all(item => item instanceof LevelSlider, row)[0];
            mouseClick(slider, slider.width / 2, 10);
            fuzzyCompare(row.gain, 0.5, 0.01);
            compare(Finder.named(row, "percent").text, Math.floor(row.gain * 100 + 1e-4) + "%");
            compare(Forms.entryGain(1, 1), 1);
            compare(Forms.gain(2), 1);
            const mute = Finder.named(row, "mute");
            compare(mute.symbol, "speaker.wave.2");
            compare(mute.tip, "Mute");
            mouseClick(mute);
            compare(mute.symbol, "speaker.slash.fill");
            compare(mute.tip, "Unmute");
            compare(slider.isMuted, true);
            compare(Forms.entryMuted(1, 1), false);
            mouseClick(save());
            fuzzyCompare(Forms.entryGain(1, 1), 0.5, 0.01);
            compare(Forms.entryMuted(1, 1), true);
            compare(Forms.muted(2), false);
        }

        function test_routeMenuPinsTheEntry() {
            start();
            make();
            mouseClick(tile("Evening"));
            tryVerify(() => rows().length === 3);
            const route = Finder.named(rows()[0], "route");
            const symbol = () => Finder.all(item => item instanceof Symbol, route)[0];
            compare(symbol().name, "headphones");
            compare(String(symbol().color), String(Tokens.textSecondary));
            compare(route.tip, "Route to a specific output");
            mouseClick(route);
            tryCompare(route, "open", true);
            const menu = route.madeMenu;
            tryCompare(menu, "opened", true);
            compare(menu.itemAt(0).text, "System default");
            compare(menu.itemAt(0).checked, true);
            const headset = [...Array(menu.count).keys()].map(i => menu.itemAt(i)).find(item => item.text === "Headset");
            verify(headset);
            mouseClick(headset);
            tryCompare(menu, "visible", false);
            compare(symbol().name, "headphones.circle.fill");
            compare(String(symbol().color), String(Tokens.systemAccent));
            mouseClick(save());
            compare(Forms.entryRoute(1, 0), "headset");
        }

        function test_removeTakesTheEntryFromTheCopy() {
            start();
            make();
            mouseClick(tile("Evening"));
            tryVerify(() => rows().length === 3);
            const remove = Finder.named(rows()[0], "remove");
            compare(remove.symbol, "minus.circle");
            compare(remove.tip, "Remove from profile");
            mouseClick(remove);
            tryVerify(() => rows().length === 2);
            compare(named("count").text, "2");
            compare(Forms.entryCount(1), 3);
            mouseClick(save());
            compare(Forms.entryCount(1), 2);
        }

        function test_syncTakesTheMixer() {
            start();
            make();
            Forms.setGain(2, 0.25);
            mouseClick(button("Sync from current mixer"));
            tryVerify(() => rows().length === 3);
            fuzzyCompare(rows()[1].gain, 0.25, 1e-6);
            verify(named("dirtyTag"));
            compare(Forms.entryCount(0), 0);
        }

        function test_addAppOpensThePicker() {
            start();
            make();
            mouseClick(button("Add app"));
            Forms.advance(0);
            compare(page.presenter.editor.picker.open, true);
            page.presenter.editor.picker.pick(0);
            tryVerify(() => rows().length === 1);
            fuzzyCompare(rows()[0].gain, 0.7, 1e-6);
            compare(Finder.named(rows()[0], "percent").text, "70%");
        }

        function test_applyNowAppliesTheStoredProfileAndKeepsTheCopyDirty() {
            start();
            make();
            mouseClick(tile("Evening"));
            tryVerify(() => rows().length === 3);
            Forms.setGain(1, 0.2);
            mouseClick(Finder.named(rows()[0], "mute"));
            mouseClick(named("apply"));
            compare(Forms.activeProfile(), 1);
            compare(Forms.gain(1), 1);
            compare(Forms.muted(1), false);
            verify(named("dirtyTag"));
            const active = Finder.named(editor(), "activeTag");
            compare(active.text, "Active");
            compare(active.symbol, "checkmark.circle.fill");
        }

        function test_deletingEveryProfileLeavesTheMessage() {
            start();
            make();
            mouseClick(named("delete"));
            compare(Forms.profileCount(), 1);
            compare(field().text, "Evening");
            compare(tile("Evening").selected, true);
            mouseClick(named("delete"));
            compare(Forms.profileCount(), 0);
            compare(editor(), null);
            const texts = Finder.texts(named("nothingSelected"));
            compare(Finder.all(item => item instanceof Symbol, named("nothingSelected")).map(item => item.name), ["rectangle.stack"]);
            compare(texts, ["Select a profile to edit", "or click + New profile to capture the current mixer."]);
            mouseClick(button("New profile"));
            compare(named("nothingSelected"), null);
            compare(field().text, "Untitled 1");
        }

        function test_selectionDropsUnsavedEditsWithoutAsking() {
            start();
            make();
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick("x");
            mouseClick(tile("Evening"));
            mouseClick(tile("Default"));
            compare(field().text, "Default");
            compare(named("dirtyTag"), null);
        }

        function test_tenThousandEntriesMakeAHandfulOfRows() {
            start();
            Forms.makeHugeProfile(10000);
            make();
            compare(named("count").text, "10000");
            tryVerify(() => rows().length > 0);
            verify(rows().length < 60, rows().length + " rows");
            const list = named("entries");
            list.positionViewAtEnd();
            tryVerify(() => rows().some(item => item.name === "App 9999"));
            mouseClick(Finder.named(rows().find(item => item.name === "App 9999"), "mute"));
            mouseClick(save());
            compare(Forms.entryMuted(0, 9999), true);
        }

        function test_nothingOverlapsAtTheSmallestSize() {
            start();
            make();
            page.width = 839;
            page.height = 660;
            mouseClick(tile("Evening"));
            tryVerify(() => rows().length === 3);
            const row = rows()[0];
            const slider = Finder.all(item => item instanceof LevelSlider, row)[0];
            verify(slider.width >= 80, slider.width + " wide");
            const discard = button("Delete profile");
            mouseClick(Finder.named(row, "mute"));
            const right = discard.mapToItem(page, discard.width, 0).x;
            verify(right < named("discard").mapToItem(page, 0, 0).x);
            const footer = save().mapToItem(page, 0, 0).y;
            verify(row.mapToItem(page, 0, row.height).y < footer);
        }

        function test_narrowPageFoldsWithoutOverlap() {
            start();
            make();
            mouseClick(tile("Evening"));
            tryVerify(() => rows().length === 3);
            page.width = 500;
            page.height = 420;
            waitForRendering(page);
            mouseClick(Finder.named(rows()[0], "mute"));
            waitForRendering(page);
            compare(named("profiles").width, 160);
            const slider = Finder.all(item => item instanceof LevelSlider, rows()[0])[0];
            verify(slider.width >= 40, slider.width + " wide");
            const label = Finder.named(rows()[0], "name");
            verify(label.mapToItem(page, label.width, 0).x <= slider.mapToItem(page, 0, 0).x);
            const buttons = [button("Delete profile"), named("discard"), named("apply"), save()];
            for (let i = 0; i < buttons.length; ++i) {
                const box = buttons[i].mapToItem(page, 0, 0, buttons[i].width, buttons[i].height);
                verify(box.x >= 160 && box.right <= page.width, buttons[i].text + " at " + box);
                for (let k = 0; k < i; ++k) {
                    const other = buttons[k].mapToItem(page, 0, 0, buttons[k].width, buttons[k].height);
                    verify(box.bottom <= other.y || other.bottom <= box.y || box.right <= other.x || other.right <= box.x,
                           buttons[i].text + " over " + buttons[k].text);
                }
            }
        }

        function test_tabGoesThroughTheListBeforeTheEditor() {
            start();
            make();
            tile("Default").forceActiveFocus(Qt.TabFocusReason);
            let order = [];
            for (let i = 0; i < 5; ++i) {
                order.push(scene.Window.activeFocusItem.Accessible.name);
                keyClick(Qt.Key_Tab);
            }
            compare(order, ["Default", "Evening", "New profile", "Name", "Sync from current mixer"]);
        }
    }
}
