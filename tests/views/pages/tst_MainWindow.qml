// The main window: its sidebar, its banner, and the canvases that it loads.
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

        property MainWindow page: null

        function cleanup() {
            if (page)
                page.destroy();
            page = null;
            wait(0);
        }

        function make(count, sounding) {
            Bench.start(count, sounding);
            mouseMove(scene, 1119, 719);
            page = maker.createObject(scene) as MainWindow;
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

        function items() { return all(item => item instanceof SidebarItem, page); }
        function entry(title) { return items().find(item => item.title === title); }
        function canvas() { return findChild(page, "canvas") as MainCanvas; }
        function statusTexts() { return all(item => item instanceof StatusLine, page).map(item => item.text); }
        function banner() { return all(item => item instanceof UpdateBanner, page)[0]; }

        function test_sidebarListsItsSectionsAndKeepsSettingsAtTheEnd() {
            make(1, 1);
            compare(items().map(item => item.title), ["Mixer", "Profiles", "Activity", "Auto-Duck", "Focus", "Settings"]);
            const last = entry("Settings").mapToItem(page, 0, 0).y;
            const before = entry("Focus").mapToItem(page, 0, 0).y;
            verify(last - before > 200);
        }

        function test_sidebarIsTwoHundredWideBesideALineAndTheCanvas() {
            make(1, 1);
            compare(findChild(page, "sidebar").width, 200);
            compare(canvas().x, 201);
            compare(canvas().width, 1120 - 201);
            compare(canvas().height, 720);
        }

        function test_selectedItemIsFilledAndBold() {
            make(1, 1);
            const mixer = entry("Mixer");
            const focus = entry("Focus");
            compare(findChild(mixer, "selectedGround").opacity, 1);
            compare(String(findChild(mixer, "selectedGround").color), String(Tokens.alpha(Tokens.white, 0.04)));
            compare(String(findChild(mixer, "iconBox").color), String(Tokens.alpha(Tokens.brandSage, 0.18)));
            compare(findChild(mixer, "iconBox").width, 22);
            compare(String(findChild(mixer, "icon").color), String(Tokens.brandSage));
            compare(findChild(mixer, "icon").pointSize, 12);
            compare(findChild(mixer, "title").font.weight, Font.DemiBold);
            compare(findChild(mixer, "title").font.pixelSize, 13);
            compare(String(findChild(mixer, "title").color), String(Tokens.textPrimary));
            compare(findChild(focus, "selectedGround").opacity, 0);
            compare(findChild(focus, "iconBox").opacity, 0);
            compare(String(findChild(focus, "icon").color), String(Tokens.textSecondary));
            compare(findChild(focus, "title").font.weight, Font.Medium);
            compare(String(findChild(focus, "title").color), String(Tokens.textSecondary));
        }

        function test_hoverLightsAnItemThatIsNotSelected() {
            make(1, 1);
            const focus = entry("Focus");
            const mixer = entry("Mixer");
            compare(String(findChild(focus, "hoverGround").color), String(Tokens.cardBGHover));
            compare(findChild(focus, "hoverGround").visible, false);
            mouseMove(focus, 20, 10);
            tryCompare(findChild(focus, "hoverGround"), "visible", true);
            mouseMove(mixer, 20, 10);
            tryCompare(findChild(focus, "hoverGround"), "visible", false);
            compare(findChild(mixer, "hoverGround").visible, false);
        }

        function test_clickShowsASectionsCanvas() {
            make(1, 1);
            verify(canvas().page instanceof MixerCanvas);
            mouseClick(entry("Activity"));
            compare(Bench.window.section, "Activity");
            verify(canvas().page instanceof ActivityCanvas);
            tryCompare(findChild(entry("Activity"), "selectedGround"), "opacity", 1);
            tryCompare(findChild(entry("Mixer"), "selectedGround"), "opacity", 0);
            mouseClick(entry("Settings"));
            verify(canvas().page instanceof PreferencesCanvas);
        }

        function test_everySectionHasAPage() {
            make(1, 1);
            for (const title of ["Profiles", "Activity", "Auto-Duck", "Focus", "Settings", "Mixer"]) {
                mouseClick(entry(title));
                verify(canvas().page, title);
                compare(canvas().page.width, canvas().width);
                compare(canvas().page.height, canvas().height);
            }
        }

        function test_canvasStartsAnewWhenItIsShownAgain() {
            make(40, 40);
            const list = findChild(canvas().page, "rows");
            tryVerify(() => list.contentHeight > 2000);
            list.positionViewAtEnd();
            verify(list.contentY > 500);
            mouseClick(entry("Focus"));
            mouseClick(entry("Mixer"));
            const fresh = findChild(canvas().page, "rows");
            verify(fresh !== list);
            tryVerify(() => fresh.contentY === fresh.originY);
        }

        function test_arrowsChooseAndStayInTheSidebar() {
            make(1, 1);
            entry("Mixer").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Down);
            compare(Bench.window.section, "Profiles");
            verify(entry("Profiles").activeFocus);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Up);
            compare(Bench.window.section, "Settings");
            verify(entry("Settings").activeFocus);
        }

        function test_sidebarIsOneStopOfTheTabKey() {
            make(1, 1);
            entry("Mixer").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(!items().some(item => item.activeFocus));
        }

        function test_shortcutsGoToTheNextSection() {
            make(1, 1);
            keyClick(Qt.Key_PageDown, Qt.ControlModifier);
            compare(Bench.window.section, "Profiles");
            keyClick(Qt.Key_PageUp, Qt.ControlModifier);
            compare(Bench.window.section, "Mixer");
        }

        function test_screenReadersHearTabsAndWhichOneIsSelected() {
            make(2, 2);
            const mixer = entry("Mixer");
            compare(mixer.Accessible.role, Accessible.PageTab);
            compare(mixer.Accessible.name, "Mixer");
            compare(mixer.Accessible.description, "2 sources active");
            compare(mixer.Accessible.selected, true);
            compare(entry("Focus").Accessible.selected, false);
            compare(entry("Focus").Accessible.description, "");
            compare(findChild(page, "sidebar").Accessible.role, Accessible.PageTabList);
        }

        function test_badgeAndStatusComeAndGoWithTheirRoom() {
            make(2, 0);
            compare(statusTexts(), []);
            compare(findChild(entry("Mixer"), "badge").visible, false);
            const settings = entry("Settings").mapToItem(page, 0, 0).y;
            Bench.sound(1, true);
            Bench.sound(2, true);
            Bench.call(true);
            compare(statusTexts(), ["2 sources active", "Ducked — call active"]);
            compare(findChild(entry("Mixer"), "badge").visible, true);
            compare(findChild(entry("Focus"), "badge").visible, false);
            tryVerify(() => entry("Settings").mapToItem(page, 0, 0).y < settings - 30);
        }

        function test_badgeIsACapsuleAroundItsNumber() {
            make(2, 2);
            const badge = findChild(entry("Mixer"), "badge");
            const number = all(item => item instanceof Figures, badge)[0];
            compare(number.text, "2");
            fuzzyCompare(badge.width, number.width + 2 * 5, 0.01);
            fuzzyCompare(badge.height, number.height + 2 * 1, 0.01);
            compare(badge.radius, badge.height / 2);
            // A fill: it must not turn bright with the edges where contrast is wanted.
            compare(String(badge.color), String(Tokens.alpha(Tokens.white, 0.06)));
        }

        function test_statusLinesHaveTheirMarks() {
            make(2, 1);
            Bench.call(true);
            const lines = all(item => item instanceof StatusLine, page);
            compare(lines.map(item => item.text), ["1 source active", "Ducked — call active"]);
            compare(all(item => item instanceof LivePulse, lines[0]).length, 1);
            const mark = all(item => item instanceof Symbol, lines[1])[0];
            compare(mark.name, "waveform.badge.minus");
            compare(String(mark.color), String(Tokens.brandSage));
            Bench.sound(1, false);
            compare(statusTexts(), ["Ducked — call active"]);
        }

        function test_everyItemHasItsSymbol() {
            make(1, 0);
            compare(items().map(item => findChild(item, "icon").name),
                    ["slider.horizontal.3", "rectangle.stack", "waveform.path", "waveform.badge.minus", "timer", "gearshape"]);
            for (const item of items()) {
                compare(findChild(item, "icon").weight, Font.Medium);
                compare(findChild(item, "title").font.pixelSize, 13);
            }
            compare(all(item => item instanceof Wordmark, findChild(page, "sidebar")).length, 1);
        }

        function test_requestForASectionShowsItAndOneForNoneChangesNothing() {
            make(1, 1);
            Bench.window.show("Settings");
            verify(canvas().page instanceof PreferencesCanvas);
            compare(entry("Settings").isSelected, true);
            Bench.window.show("Elsewhere");
            verify(canvas().page instanceof PreferencesCanvas);
            compare(entry("Settings").isSelected, true);
        }

        function test_focusInTheSidebarLeavesANarrowPageWhereItIs() {
            make(6, 3);
            page.width = 560;
            const scroller = findChild(canvas(), "sideways");
            tryVerify(() => scroller.contentWidth === 640);
            scroller.contentX = 100;
            entry("Mixer").forceActiveFocus(Qt.TabFocusReason);
            compare(scroller.contentX, 100);
        }

        function test_bannerIsThereOnlyWithANewerVersion() {
            make(1, 1);
            compare(banner(), undefined);
            compare(canvas().y, 0);
            Bench.publish("1.9.9");
            compare(banner(), undefined);
            Bench.publish("2.0");
            compare(banner().text, "Update available — v2.0");
            compare(banner().width, 1120);
            compare(canvas().y, banner().height);
            verify(all(item => item instanceof GradientFill && item.width === 1120, banner()).length === 1);
            const arrow = all(item => item instanceof Symbol, banner())[0];
            compare(arrow.name, "arrow.down.circle.fill");
            compare(arrow.pointSize, 13);
            compare(String(arrow.color), String(Tokens.white));
        }

        function test_bannersTextsAreTwelveAndItsButtonIsACapsule() {
            make(1, 1);
            Bench.publish("2.0");
            const text = all(item => item instanceof Label && item.text.startsWith("Update available"), banner())[0];
            compare(text.font.pixelSize, 12);
            compare(String(text.color), String(Tokens.white));
            const button = all(item => item instanceof PlainButton, banner())[0];
            compare(button.contentItem.font.pixelSize, 12);
            compare(String(button.contentItem.color), String(Tokens.white));
            compare(String(button.background.color), String(Tokens.alpha(Tokens.white, 0.2)));
            compare(button.background.radius, button.height / 2);
            verify(button.mapToItem(banner(), button.width, 0).x > 1120 - 40);
        }

        function test_bannersButtonAsksForTheUpdateAndTheBannerStays() {
            make(1, 1);
            Bench.publish("2.0");
            const button = all(item => item instanceof PlainButton, banner())[0];
            compare(button.text, "Update");
            compare(button.horizontalPadding, 10);
            compare(button.verticalPadding, 4);
            mouseClick(button);
            compare(Bench.updatesAsked(), 1);
            verify(banner());
        }

        function test_pagesFitTheSmallestWindow() {
            make(6, 3);
            page.width = 1040;
            page.height = 660;
            Bench.publish("2.0");
            for (const title of ["Mixer", "Activity"]) {
                Bench.window.show(title);
                const list = findChild(canvas().page, "rows");
                tryVerify(() => list.count > 0);
                compare(list.width, 1040 - 201);
                for (const label of all(item => item instanceof Label && item.width > 0, canvas().page)) {
                    const right = label.mapToItem(canvas().page, label.width, 0).x;
                    verify(right <= 1040 - 201 - 24, label.text + " reaches " + right);
                }
            }
        }

        function test_narrowWindowFoldsItsSidebarAndScrollsItsPage() {
            make(6, 3);
            page.width = 560;
            page.height = 360;
            compare(findChild(page, "sidebar").width, 56);
            compare(findChild(entry("Mixer"), "title").visible, false);
            compare(entry("Mixer").tip, "Mixer");
            compare(entry("Mixer").Accessible.name, "Mixer");
            compare(canvas().page.width, 640);
            compare(canvas().width, 560 - 57);
            const list = findChild(canvas().page, "rows");
            tryVerify(() => list.contentHeight > list.height);
        }

        function test_lowWindowScrollsItsSidebar() {
            make(6, 3);
            page.height = 220;
            const sidebar = findChild(page, "sidebar");
            verify(sidebar.contentHeight > 220);
            const shown = items();
            compare(shown.length, 6);
            for (let i = 1; i < shown.length; ++i) {
                const above = shown[i - 1].mapToItem(sidebar.contentItem, 0, shown[i - 1].height).y;
                verify(shown[i].mapToItem(sidebar.contentItem, 0, 0).y >= above);
            }
        }
    }
}
