// The picker's sheet under mouse and keys.
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

        AutoDuckCanvas {
            width: 920
            height: 720
        }
    }

    TestCase {
        name: "AppPicker"
        when: windowShown

        property AutoDuckCanvas page: null
        property AppPicker sheet: null

        // A page whose picker is open: "App 1" and "App 2" run, "App 1" is on the list; two others are installed.
        function open(scanned) {
            Forms.start(2);
            Forms.setDuckLists(["org.example.app1"], []);
            Forms.install("org.example.rain", "Rain");
            Forms.install("com.acme.sea", "Sea");
            mouseMove(scene, 1, 1);
            page = createTemporaryObject(maker, scene, {presenter: Forms.open("AutoDuck")});
            verify(page);
            waitForRendering(page);
            page.presenter.addTrigger();
            sheet = [...Array(page.data.length).keys()].map(i => page.data[i]).find(item => item instanceof AppPicker);
            verify(sheet);
            tryCompare(sheet, "opened", true);
            if (scanned)
                Forms.advance(0);
        }

        function cleanup() {
            // Its place is the window's, which stays.
            if (sheet)
                sheet.close();
            tryVerify(() => !sheet || !sheet.visible);
        }

        function content() { return sheet.contentItem; }
        function named(name) { return Finder.named(content(), name); }
        function list() { return named("pickerList"); }
        function rows() { return Finder.all(item => item instanceof AppPickerRow, content()); }
        function row(name) { return rows().find(item => item.name === name); }
        function field() { return Finder.all(item => item instanceof InputField, content())[0]; }
        function button(name) {
            return Finder.all(item => item instanceof PlainButton && item.text.startsWith(name), content())[0];
        }
        function sections() {
            return Finder.all(item => item.objectName === "sectionHeader", content()).map(item => item.text);
        }

        function test_sheetIsAsLargeAsToldOnTheCanvasColour() {
            open(true);
            compare(sheet.width, 480);
            compare(sheet.height, 480);
            verify(Finder.all(item => item instanceof Panel && Qt.colorEqual(item.color, Tokens.canvasBG), sheet.background).length > 0);
            const texts = Finder.texts(content());
            verify(texts.includes("Add an app"));
            compare(button("Close").symbol, "xmark");
            compare(button("Close").symbolSize, 11);
            compare(field().placeholderText, "Filter…");
            verify(button("Browse Applications…"));
            verify(button("Cancel"));
        }

        function test_partsHaveTheirMarginsSymbolsAndColours() {
            open(true);
            tryVerify(() => rows().length === 4);
            const glass = Finder.all(item => item instanceof Symbol && item.name === "magnifyingglass", content())[0];
            compare(glass.pointSize, 12);
            verify(Qt.colorEqual(glass.color, Tokens.textTertiary));
            compare(glass.parent.mapToItem(content(), 0, 0).x, 16);
            compare(list().x, 8);
            compare(String(named("resultText").color), String(Tokens.textTertiary));
            compare(named("resultText").mapToItem(content(), 0, 0).x, 16);
            const header = named("sectionHeader");
            compare(header.leftPadding, 12);
            compare(header.topPadding, 4);
            compare(Finder.named(rows()[0], "name").parent.spacing, 1);
        }

        function test_emptyStateHasItsSymbol() {
            open(true);
            page.presenter.picker.query = "zzz";
            tryVerify(() => named("emptyState"));
            const empty = named("emptyState");
            const glass = Finder.all(item => item instanceof Symbol, empty)[0];
            compare(glass.name, "magnifyingglass");
            compare(glass.pointSize, 20);
            verify(Qt.colorEqual(glass.color, Tokens.textTertiary));
            compare(empty.spacing, 8);
            compare(empty.topPadding, 32);
            compare(String(named("emptyText").color), String(Tokens.textSecondary));
        }

        function test_returnPicksWhatTheScanHasBroughtAfterTheLastKey() {
            open(false);
            tryCompare(field(), "activeFocus", true);
            keyClick("r");
            keyClick("a");
            compare(list().count, 0);
            Forms.advance(0);
            tryVerify(() => rows().length === 1);
            keyClick(Qt.Key_Return);
            compare(Forms.triggers(), ["org.example.app1", "org.example.rain"]);
        }

        function test_runningOnesComeBeforeTheScanAndInstalledOnesAfter() {
            open(false);
            compare(rows().map(item => item.name), ["App 1", "App 2"]);
            compare(sections(), ["Running"]);
            Forms.advance(0);
            tryVerify(() => rows().length === 4);
            compare(rows().map(item => item.name), ["App 1", "App 2", "Rain", "Sea"]);
            compare(sections(), ["Running", "Installed"]);
            compare(named("resultText").text, "4 results");
        }

        function test_rowShowsNameIdentifierIconAndItsMark() {
            open(true);
            tryVerify(() => rows().length === 4);
            const rain = row("Rain");
            compare(Finder.named(rain, "name").text, "Rain");
            compare(Finder.named(rain, "bundleID").text, "org.example.rain");
            compare(String(Finder.named(rain, "bundleID").color), String(Tokens.textTertiary));
            const icon = Finder.all(item => item instanceof AppIcon, rain)[0];
            compare(icon.width, 28);
            compare(icon.tileOpacity, 0.12);
            compare(Finder.named(rain, "row").opacity, 1);
            const symbols = Finder.all(item => item instanceof Symbol && item.name === "plus.circle.fill", rain);
            compare(symbols.length, 1);
            compare(String(symbols[0].color), String(Tokens.brandSage));
            compare(Finder.named(rain, "addedText"), null);
        }

        function test_addedRowIsDimmedMarkedAndDead() {
            open(true);
            const one = row("App 1");
            compare(Finder.named(one, "row").opacity, 0.5);
            compare(Finder.named(one, "addedText").text, "Added");
            compare(String(Finder.named(one, "addedText").color), String(Tokens.brandSage));
            mouseClick(Finder.named(one, "row"));
            compare(page.presenter.picker.open, true);
            compare(Forms.triggers(), ["org.example.app1"]);
        }

        function test_clickPicksAndCloses() {
            open(true);
            tryVerify(() => rows().length === 4);
            mouseClick(Finder.named(row("Rain"), "row"));
            compare(Forms.triggers(), ["org.example.app1", "org.example.rain"]);
            compare(page.presenter.picker.open, false);
            tryCompare(sheet, "visible", false);
        }

        function test_filterHasTheFocusAndNarrowsTheList() {
            open(true);
            tryCompare(field(), "activeFocus", true);
            keyClick("a");
            keyClick("c");
            keyClick("m");
            tryVerify(() => rows().length === 1);
            compare(rows()[0].name, "Sea");
            compare(sections(), ["Installed"]);
            compare(named("resultText").text, "1 result");
            keyClick("x");
            tryVerify(() => rows().length === 0);
            compare(named("emptyText").text, "No apps match.");
            compare(named("resultText").text, "0 results");
        }

        function test_emptyListSaysThatItIsBeingFilled() {
            open(false);
            page.presenter.picker.query = "zzz";
            tryVerify(() => named("emptyText"));
            compare(named("emptyText").text, "Scanning Applications…");
            Forms.advance(0);
            compare(named("emptyText").text, "No apps match.");
        }

        function test_keysChooseFromTheFilter() {
            open(true);
            tryCompare(field(), "activeFocus", true);
            keyClick(Qt.Key_Return);
            compare(page.presenter.picker.open, true);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            compare(list().currentIndex, 1);
            compare(row("App 2").highlighted, true);
            keyClick(Qt.Key_Return);
            compare(Forms.triggers(), ["org.example.app1", "org.example.app2"]);
            compare(page.presenter.picker.open, false);
        }

        function test_filteredFirstRowIsTheOneThatReturnPicks() {
            open(true);
            tryCompare(field(), "activeFocus", true);
            keyClick("r");
            keyClick("a");
            tryVerify(() => rows().length === 1);
            keyClick(Qt.Key_Return);
            compare(Forms.triggers(), ["org.example.app1", "org.example.rain"]);
        }

        function test_escapeCancelAndTheCrossClose() {
            open(true);
            keyClick(Qt.Key_Escape);
            tryCompare(sheet, "visible", false);
            compare(page.presenter.picker.open, false);
            page.presenter.addTrigger();
            tryCompare(sheet, "opened", true);
            mouseClick(button("Cancel"));
            tryCompare(sheet, "visible", false);
            page.presenter.addTrigger();
            tryCompare(sheet, "opened", true);
            mouseClick(button("Close"));
            tryCompare(sheet, "visible", false);
            compare(page.presenter.picker.open, false);
            compare(Forms.triggers(), ["org.example.app1"]);
        }

        function test_reopenedSheetStartsWithAnEmptyFilter() {
            open(true);
            tryCompare(field(), "activeFocus", true);
            keyClick("z");
            compare(field().text, "z");
            keyClick(Qt.Key_Escape);
            tryCompare(sheet, "visible", false);
            page.presenter.addTrigger();
            tryCompare(sheet, "opened", true);
            compare(field().text, "");
            compare(rows().length, 2);
        }

        function test_focusIsBackWhereItWasOnceTheSheetIsGone() {
            open(true);
            keyClick(Qt.Key_Escape);
            tryCompare(sheet, "visible", false);
            const add = Finder.all(item => item instanceof PlainButton && item.text === "Add music app", page)[0];
            add.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryCompare(sheet, "opened", true);
            keyClick(Qt.Key_Escape);
            tryCompare(sheet, "visible", false);
            compare(add.activeFocus, true);
        }

        function test_browsingPicksAFile() {
            open(true);
            mouseClick(button("Browse Applications…"));
            Forms.advance(0);
            compare(Forms.isChoosing(), true);
            Forms.choose("");
            compare(page.presenter.picker.open, true);
            mouseClick(button("Browse Applications…"));
            Forms.advance(0);
            Forms.choose("/apps/com.acme.sea");
            compare(Forms.triggers(), ["com.acme.sea", "org.example.app1"]);
            compare(page.presenter.picker.open, false);
        }

        function test_tabStaysWithinTheSheet() {
            open(true);
            tryCompare(field(), "activeFocus", true);
            let order = [];
            for (let i = 0; i < 6; ++i) {
                order.push(scene.Window.activeFocusItem.Accessible.name);
                keyClick(Qt.Key_Tab);
            }
            compare(order, ["Filter", "App 1", "Browse Applications…", "Cancel", "Close", "Filter"]);
        }

        function test_hundredsOfApplicationsMakeAHandfulOfRows() {
            Forms.start(0);
            for (let i = 0; i < 600; ++i)
                Forms.install("org.example.installed" + i, "Installed " + i);
            page = createTemporaryObject(maker, scene, {presenter: Forms.open("AutoDuck")});
            page.presenter.addTrigger();
            sheet = [...Array(page.data.length).keys()].map(i => page.data[i]).find(item => item instanceof AppPicker);
            Forms.advance(0);
            tryCompare(sheet, "opened", true);
            compare(list().count, 600);
            tryVerify(() => rows().length > 0);
            verify(rows().length < 60, rows().length + " rows");
        }
    }
}
