// The two lists of tabs.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test

Item {
    id: scene

    width: 400
    height: 600

    Component {
        id: compactMaker

        CompactTabsList {
            width: 324
            height: implicitHeight
        }
    }

    Component {
        id: fullMaker

        BrowserTabsList {
            width: 380
            height: implicitHeight
            browserName: "Chrome"
        }
    }

    TestCase {
        name: "Tabs"
        when: windowShown

        // Made objects go before the presenters that they show.
        property Item made: null

        function cleanup() {
            if (made)
                made.destroy();
            made = null;
            wait(0);
        }

        function init() {
            Bench.start(1, 1);
            mouseMove(scene, 1, 599);
        }

        function all(predicate, from) {
            let found = [];
            for (let i = 0; i < from.children.length; ++i) {
                if (from.children[i].visible && predicate(from.children[i]))
                    found.push(from.children[i]);
                found = found.concat(all(predicate, from.children[i]));
            }
            return found;
        }

        function header(list) { return all(item => item instanceof TabsHeader, list)[0]; }
        function rows(list) {
            return all(item => item instanceof PlainButton && !(item instanceof TabsHeader), list);
        }
        function texts(list) { return all(item => item instanceof Label, list).map(item => item.text); }

        function makeCompact(count) {
            Bench.openTabs(Bench.row(0), count);
            made = compactMaker.createObject(scene, {tabs: Bench.row(0).tabs});
            return made;
        }

        function makeFull(count) {
            Bench.openTabs(Bench.fullRow(0), count);
            made = fullMaker.createObject(scene, {tabs: Bench.fullRow(0).tabs});
            return made;
        }

        function test_listsAreClosedAtFirst() {
            const list = makeCompact(3);
            compare(rows(list).length, 0);
            compare(header(list).text, "3 tabs");
        }

        function test_nineTabsAreEightRowsAndOneMore() {
            const list = makeCompact(9);
            mouseClick(header(list));
            tryVerify(() => rows(list).length === 8);
            verify(texts(list).includes("+ 1 more"));
        }

        function test_tilesAndTheLineForMoreStandAtTheSamePadding() {
            const list = makeCompact(9);
            mouseClick(header(list));
            tryVerify(() => rows(list).length === 8);
            const tile = all(item => item instanceof TabTile, list)[0];
            const more = all(item => item instanceof Label && item.text === "+ 1 more", list)[0];
            compare(tile.mapToItem(list, 0, 0).x, 28);
            compare(more.mapToItem(list, more.leftPadding, 0).x, 28);
        }

        function test_eightTabsHaveNoLineForMore() {
            const list = makeCompact(8);
            mouseClick(header(list));
            tryVerify(() => rows(list).length === 8);
            verify(!texts(list).some(text => text.startsWith("+")));
        }

        function test_oneTabIsSingular() {
            compare(header(makeCompact(1)).text, "1 tab");
        }

        function test_secondClickClosesTheListAgain() {
            const list = makeCompact(4);
            const closed = list.height;
            mouseClick(header(list));
            tryVerify(() => list.height > closed + 60);
            mouseClick(header(list));
            tryVerify(() => list.height === closed);
            tryVerify(() => rows(list).length === 0);
        }

        function test_clickOnATabAsksForIt() {
            const list = makeCompact(3);
            mouseClick(header(list));
            tryVerify(() => rows(list).length === 3 && rows(list)[2].height === 20);
            wait(200);
            mouseClick(rows(list)[1]);
            compare(Bench.activatedTabs(), [2]);
        }

        // As the text of a button it would be: "&T" is a shortcut there.
        function test_anAmpersandInATitleIsNoShortcut() {
            for (const make of [makeCompact, makeFull]) {
                const list = make(1);
                Bench.openTitledTab(list.tabs, "AT&T & friends");
                mouseClick(header(list));
                tryVerify(() => rows(list).length === 1);
                compare(rows(list)[0].Accessible.name, "AT&T & friends");
                verify(texts(list).includes("AT&T & friends"));
                keyClick(Qt.Key_T, Qt.AltModifier);
                keyClick(Qt.Key_Space, Qt.AltModifier);
                compare(Bench.activatedTabs(), []);
                cleanup();
            }
        }

        function test_titlesAreShownAsTheyAreWritten() {
            const markup = "<b>bold</b> &amp; <img src='file:///nowhere.png'>";
            for (const make of [makeCompact, makeFull]) {
                const list = make(1);
                Bench.openTitledTab(list.tabs, markup);
                mouseClick(header(list));
                tryVerify(() => rows(list).length === 1);
                const title = all(item => item instanceof Label && item.text === markup, list);
                compare(title.length, 1);
                compare(title[0].textFormat, Text.PlainText);
                cleanup();
            }
        }

        function test_anEndlessTitleOfManyLinesStaysInItsRow() {
            const list = makeFull(1);
            Bench.openTitledTab(list.tabs, "first\nsecond\u0007\u2028third" + "x".repeat(100000) + "end");
            mouseClick(header(list));
            tryVerify(() => rows(list).length === 1);
            const row = rows(list)[0];
            const title = all(item => item instanceof Label && item.text.startsWith("first second third"), row)[0];
            verify(title.text.length <= 1024);
            verify(title.text.endsWith("end"));
            compare(title.lineCount, 1);
            verify(title.truncated);
            compare(title.elide, Text.ElideMiddle);
            tryVerify(() => title.x + title.width <= row.width);
        }

        function test_keysOpenTheList() {
            const list = makeCompact(3);
            header(list).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => rows(list).length === 3);
        }

        function test_mainWindowShowsEveryTabAndMarksTheActiveOne() {
            const list = makeFull(12);
            mouseClick(header(list));
            tryVerify(() => rows(list).length === 12);
            compare(texts(list).filter(text => text === "active").length, 1);
        }

        function test_hoverOverATabShowsAnArrow() {
            const list = makeFull(2);
            mouseClick(header(list));
            tryVerify(() => rows(list).length === 2);
            wait(200);
            const arrows = () => all(item => item instanceof Symbol && item.name === "arrow.up.right", list).length;
            compare(arrows(), 0);
            mouseMove(rows(list)[1], 40, 10);
            tryVerify(() => arrows() === 1);
        }

        function test_tabsThatAreClosedLeaveTheOpenList() {
            const list = makeFull(5);
            mouseClick(header(list));
            tryVerify(() => rows(list).length === 5);
            Bench.openTabs(Bench.fullRow(0), 2);
            tryVerify(() => rows(list).length === 2);
            compare(header(list).text, "2 tabs open");
        }
    }
}
