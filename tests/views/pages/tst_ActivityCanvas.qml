// The page of the activity.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test

Item {
    id: scene

    width: 1100
    height: 900

    Component {
        id: maker

        ActivityCanvas {
            width: 1000
            height: 900
            presenter: Bench.activity
        }
    }

    TestCase {
        name: "ActivityCanvas"
        when: windowShown

        property ActivityCanvas page: null

        function cleanup() {
            if (page)
                page.destroy();
            page = null;
            wait(0);
        }

        function make(count, sounding) {
            Bench.start(count, sounding);
            page = maker.createObject(scene) as ActivityCanvas;
            return page;
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

        function tiles() { return all(item => item instanceof RingStatTile, page); }
        function rows() { return all(item => item instanceof ActivityRow, page); }
        function row(name) { return rows().find(item => item.name === name); }
        function texts(from) { return all(item => item instanceof Label, from).map(item => item.text); }

        function test_headerAndHeadings() {
            make(1, 1);
            const heading = findChild(page, "heading");
            compare(heading.text, "What's been making noise");
            fuzzyCompare(heading.font.letterSpacing, -0.5, 0.02);
            for (const text of ["Activity", "Currently tracked", "Live snapshot"])
                verify(texts(page).includes(text), text);
        }

        function test_fourTilesInTheirOrder() {
            make(7, 2);
            compare(tiles().map(item => item.label), ["Live now", "Apps connected", "Profiles", "Auto-Duck triggers"]);
            compare(tiles().map(item => item.value), ["2", "8", "1", "8"]);
            compare(tiles().map(item => item.icon),
                    ["dot.radiowaves.right", "rectangle.connected.to.line.below", "rectangle.stack", "waveform.badge.minus"]);
            const colors = [Tokens.brandCoral, Tokens.brandSage, Tokens.brandMint, Tokens.brandAmber];
            for (let i = 0; i < 4; ++i) {
                verify(Qt.colorEqual(findChild(tiles()[i], "ring").fill, colors[i]));
                compare(findChild(tiles()[i], "value").font.pixelSize, 28);
                compare(findChild(tiles()[i], "value").lineCount, 1);
                compare(findChild(tiles()[i], "label").lineCount, 1);
            }
            fuzzyCompare(findChild(tiles()[0], "ring").progress, 0.25, 1e-6);
            fuzzyCompare(findChild(tiles()[1], "ring").progress, 1, 1e-6);
            compare(tiles()[0].Accessible.name, "Live now: 2");
        }

        function test_ringsHaveTheirSymbolsInTheirColours() {
            make(7, 2);
            for (const tile of tiles()) {
                const mark = all(item => item instanceof Symbol, findChild(tile, "ring"))[0];
                compare(mark.name, tile.icon);
                compare(String(mark.color), String(tile.ringColor));
                compare(findChild(tile, "value").font.weight, Font.DemiBold);
                tryVerify(() => findChild(tile, "label").y >= findChild(tile, "value").y + findChild(tile, "value").height);
            }
        }

        function test_columnsAreAtLeastTwoHundredAndTwentyWide_data() {
            return [
                {tag: "four", width: 1000, columns: 4},
                {tag: "room for three", width: 919, columns: 2},
                {tag: "two", width: 600, columns: 2},
                {tag: "one", width: 400, columns: 1},
            ];
        }

        function test_columnsAreAtLeastTwoHundredAndTwentyWide(data) {
            make(1, 1);
            page.width = data.width;
            const grid = findChild(page, "tiles");
            tryCompare(grid, "columns", data.columns);
            verify(tiles()[0].width >= 220);
            // Full rows, up to the edge, on whole pixels.
            tryVerify(() => tiles()[3].x + tiles()[3].width === grid.width);
            for (const tile of tiles())
                compare(tile.width, Math.round(tile.width));
        }

        function test_rowsTellLiveFromIdle() {
            make(2, 1);
            tryVerify(() => rows().length === 3);
            compare(findChild(row("App 1"), "state").text, "live");
            compare(findChild(row("App 1"), "pulse").visible, true);
            compare(findChild(row("App 2"), "state").text, "idle");
            compare(findChild(row("App 2"), "pulse").visible, false);
            compare(String(findChild(row("App 2"), "state").color), String(Tokens.textTertiary));
            compare(row("App 2").Accessible.role, Accessible.ListItem);
            compare(row("App 2").Accessible.description, "idle");
        }

        function test_applicationThatDoesNotRunHasNoIconAndIsIdle() {
            make(2, 1);
            tryVerify(() => row("App 2"));
            tryCompare(findChild(row("App 2"), "icon"), "visible", false);
            compare(findChild(row("App 2"), "state").text, "idle");
        }

        function test_iconsCornersAreRoundedByFive() {
            make(1, 1);
            tryVerify(() => row("App 1"));
            compare(findChild(row("App 1"), "icon").corner, 5);
        }

        function test_applicationWithoutAnIconHasNone() {
            make(1, 1);
            tryVerify(() => row("App 1"));
            tryCompare(findChild(row("App 1"), "icon"), "visible", false);
            verify(findChild(row("App 1"), "name").x > 22);
        }

        function test_cardLiesBehindAllRows() {
            make(30, 5);
            tryVerify(() => rows().length > 5);
            const card = findChild(page, "card");
            compare(card.height, 31 * 40 + 16);
            const first = rows()[0].mapToItem(card, 0, 0).y;
            tryVerify(() => Math.abs(rows()[0].mapToItem(card, 0, 0).y - 8) < 1);
        }

        function test_withoutApplicationsAnEmptyStateTakesTheListsPlace() {
            make(0, 0);
            Bench.quitAll();
            const empty = findChild(page, "emptyState");
            tryCompare(empty, "visible", true);
            verify(texts(empty).includes("No activity yet."));
            verify(texts(empty).includes("Start an audio app and it'll show up here in real time."));
            compare(findChild(page, "card").visible, false);
            const mark = all(item => item instanceof Symbol, empty)[0];
            compare(mark.name, "waveform.path");
            compare(mark.pointSize, 26);
            compare(tiles().slice(0, 2).map(item => findChild(item, "ring").progress), [0, 0]);
            compare(tiles().slice(0, 2).map(item => item.value), ["0", "0"]);
        }

        function test_rowsKeepTheirItemsWhileTheListIsMerged() {
            make(4, 1);
            tryVerify(() => rows().length === 5);
            const second = row("App 2");
            Bench.sound(2, true);
            Bench.quitApp(4);
            verify(row("App 2") === second);
            compare(findChild(second, "state").text, "live");
        }
    }
}
