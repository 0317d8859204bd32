// The page of the preferences under mouse and keys.
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

        PreferencesCanvas {
            width: 920
            height: 900
        }
    }

    Component {
        id: rowMaker

        ToggleRow {
            width: 400
            title: "Never"
            on: false
        }
    }

    TestCase {
        name: "PreferencesCanvas"
        when: windowShown

        property PreferencesCanvas page: null

        function init() {
            Forms.start(1);
            mouseMove(scene, 1, 1);
        }

        function make() {
            page = createTemporaryObject(maker, scene, {presenter: Forms.open("Preferences")});
            verify(page);
            // Positioners place their items with the next frame.
            waitForRendering(page);
            return page;
        }

        function named(name) { return Finder.named(page, name); }
        function switches() { return Finder.all(item => item instanceof ToggleRow, page); }
        function toggle(row) { return Finder.all(item => item instanceof Toggle, row)[0]; }
        function button(name) {
            return Finder.all(item => item instanceof PlainButton && item.text.startsWith(name), page)[0];
        }

        function test_textsOfThePage() {
            make();
            const texts = Finder.texts(page);
            compare(texts.slice(0, 2), ["Settings", "How quillmere behaves"]);
            fuzzyCompare(named("title").font.letterSpacing, -0.5, 0.02);
            compare(switches().map(item => item.title), [
                "Launch at login",
                "Scroll over an app row to adjust its volume",
                "Show duck banner during calls",
                "Pause music when headphones disconnect"]);
            compare(switches().map(item => item.help), [
                "quillmere opens silently into the menu bar when you log in.",
                "Use the trackpad or mouse wheel over any app row to nudge its gain by 0.5%.",
                "Slim banner appears at the top of the menu-bar widget while music is auto-ducked.",
                "When AirPods or wired headphones drop, quillmere sends a global pause to all media-playing apps."]);
            for (const each of ["Permissions", "Accessibility", "For global keyboard shortcuts.", "Focus Status", "For Focus-mode-bound profiles.", "About", "Version", "Website", "Send feedback"])
                verify(texts.includes(each), each);
            verify(/^\S+ \(\S+\)$/.test(named("version").text), named("version").text);
        }

        function test_pageHasItsMarginsAndCards() {
            make();
            const card = named("behaviour");
            compare(card.mapToItem(page, 0, 0).x, Tokens.spacing.xxl);
            compare(card.padding, Tokens.spacing.l);
            compare(card.corner, Tokens.corner.card);
            compare(named("permissions").y - card.y - card.height, Tokens.spacing.xl);
            compare(String(Finder.named(switches()[0], "help").color), String(Tokens.textTertiary));
            compare(Finder.all(item => item instanceof Hairline, card).length, 3);
        }

        function test_rowsAreApartByALineWithRoomAroundIt() {
            make();
            const lines = Finder.all(item => item instanceof Hairline, named("behaviour"));
            for (let i = 0; i < lines.length; ++i) {
                const above = switches()[i];
                compare(lines[i].y - above.y - above.height, Tokens.spacing.s);
                compare(switches()[i + 1].y - lines[i].y - lines[i].height, Tokens.spacing.s);
            }
            const row = switches()[0];
            const words = Finder.all(item => item instanceof Paragraph, row);
            compare(words[1].y - words[0].y - words[0].height, 2);
            compare(toggle(row).x + toggle(row).width, row.width);
        }

        function test_aboutHasItsVersionAtTheRightAndItsButtonsBelow() {
            make();
            const label = Finder.all(item => item instanceof Label && item.text === "Version", page)[0];
            compare(String(label.color), String(Tokens.textSecondary));
            const version = named("version");
            compare(version.mapToItem(named("about"), version.width, 0).x, named("about").width - Tokens.spacing.l);
            const website = button("Website");
            verify(website instanceof GhostButton && button("Send feedback") instanceof GhostButton);
            compare(button("Send feedback").x - website.x - website.width, 8);
            verify(website.mapToItem(page, 0, 0).y >= label.mapToItem(page, 0, label.height).y + 4);
        }

        function test_switchesWriteTheirSettings() {
            make();
            compare(switches().map(item => item.on), [false, true, true, true]);
            mouseClick(toggle(switches()[1]));
            compare(Forms.scrollSetting(), false);
            mouseClick(toggle(switches()[2]));
            compare(Forms.bannerSetting(), false);
            toggle(switches()[3]).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            compare(Forms.pauseSetting(), false);
            compare(switches().map(item => toggle(item).checked), [false, false, false, false]);
        }

        function test_switchKeepsFollowingItsSetting() {
            make();
            mouseClick(toggle(switches()[2]));
            Forms.setBannerSetting(true);
            compare(toggle(switches()[2]).checked, true);
        }

        function test_switchShowsWhatIsSoAndNotWhatWasAskedFor() {
            const row = createTemporaryObject(rowMaker, scene);
            waitForRendering(row);
            mouseClick(toggle(row));
            compare(toggle(row).checked, false);
            row.on = true;
            compare(toggle(row).checked, true);
        }

        function test_loginSwitchRegisters() {
            make();
            mouseClick(toggle(switches()[0]));
            Forms.advance(0);
            compare(Forms.loginItem(), true);
            compare(toggle(switches()[0]).checked, true);
        }

        function test_loginSwitchSnapsBack() {
            Forms.ignoreLoginChanges();
            make();
            mouseClick(toggle(switches()[0]));
            Forms.advance(0);
            compare(toggle(switches()[0]).checked, false);
        }

        function test_permissionsByStatus() {
            make();
            const accessibility = named("accessibility");
            const focusStatus = named("focusStatus");
            compare(Finder.named(accessibility, "action").text, "Grant");
            compare(Finder.named(focusStatus, "action").text, "Grant");
            compare(Finder.named(accessibility, "granted"), null);
            Forms.setTrusted(true);
            Forms.setFocusAuthorization(2);
            Forms.advance(0.6);
            compare(Finder.named(accessibility, "action"), null);
            const granted = Finder.named(accessibility, "granted");
            const label = Finder.all(item => item instanceof ButtonLabel, granted)[0];
            compare(label.text, "Granted");
            compare(label.symbol, "checkmark.circle.fill");
            compare(String(label.color), String(Tokens.systemGreen));
            compare(label.font.weight, Font.DemiBold);
            compare(Finder.named(focusStatus, "action").text, "Open Settings");
            Forms.setTrusted(false);
            Forms.setFocusAuthorization(3);
            Forms.advance(0.6);
            compare(Finder.named(accessibility, "action").text, "Grant");
            verify(Finder.named(focusStatus, "granted"));
        }

        function test_buttonsOpenTheSystemsSettings() {
            make();
            mouseClick(Finder.named(named("accessibility"), "action"));
            mouseClick(Finder.named(named("focusStatus"), "action"));
            compare(Forms.openedAnchors, ["Privacy_Accessibility", "Privacy_FocusStatus"]);
        }

        function test_whereThereAreNoSettingsTheRowSaysHowThePermissionComes() {
            Forms.setHasSettings(false);
            make();
            const row = named("accessibility");
            compare(Finder.named(row, "hint"), null);
            const before = row.height;
            mouseClick(Finder.named(row, "action"));
            const hint = Finder.named(row, "hint");
            compare(hint.text, "No settings for this were found. It is granted once the desktop's portal offers global shortcuts.");
            compare(hint.Accessible.role, Accessible.AlertMessage);
            compare(String(hint.color), String(Tokens.brandAmber));
            tryVerify(() => row.height > before);
            compare(Finder.named(named("focusStatus"), "hint"), null);
            mouseClick(Finder.named(named("focusStatus"), "action"));
            compare(Finder.named(named("focusStatus"), "hint").text, "No settings for this were found. It is granted once the desktop's notifications have a do-not-disturb mode.");
            Forms.setTrusted(true);
            Forms.advance(0.6);
            compare(Finder.named(row, "hint"), null);
        }

        function test_withoutABrowserThereIsNoCardForBrowsers() {
            make();
            verify(!named("browsers"));
            verify(!Finder.texts(page).includes("Browser tabs"));
        }

        function test_aBrowserIsSetUpAndTakenBackInItsRow() {
            Forms.installChromium();
            make();
            const card = named("browsers");
            verify(card);
            // Below the others, and as they are.
            compare(card.y - named("about").y - named("about").height, Tokens.spacing.xl);
            compare(card.corner, Tokens.corner.card);
            verify(Finder.texts(card).includes("Chromium"));
            const status = Finder.named(card, "status");
            const action = Finder.named(card, "action");
            compare(status.text, "Not set up");
            compare(String(status.color), String(Tokens.textTertiary));
            compare(action.text, "Set up");
            compare(Finder.named(card, "hint"), null);

            action.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            Forms.advance(0);
            compare(status.text, "Waits for its companion");
            compare(action.text, "Remove");
            verify(Finder.named(card, "hint").text.includes("/usr/share/quillmere/extension"));

            Forms.connectChromium("1.9.9");
            compare(status.text, "Connected");
            compare(String(status.color), String(Tokens.systemGreen));
            compare(Finder.named(card, "hint"), null);
            Forms.connectChromium("1.0");
            compare(status.text, "Connected, in another version: 1.0");

            action.clicked();
            Forms.advance(0);
            compare(action.text, "Set up");
        }

        function test_aBrowserThatThePackagesHaveSetUpHasNoButton() {
            Forms.installChromiumSetUp();
            make();
            const card = named("browsers");
            compare(Finder.named(card, "status").text, "Waits for its companion");
            compare(Finder.named(card, "action"), null);
        }

        function test_aboutsButtonsOpenAddresses() {
            make();
            mouseClick(button("Website"));
            mouseClick(button("Send feedback"));
            Forms.advance(0);
            compare(Forms.openedURLs.length, 2);
            verify(Forms.openedURLs[1].startsWith("mailto:"));
            verify(Forms.openedURLs[1].endsWith("?subject=quillmere%20feedback"));
        }

        function test_longHelpFoldsInANarrowPage() {
            make();
            page.width = 420;
            for (const row of switches()) {
                const words = Finder.named(row, "help");
                verify(words.mapToItem(page, words.width, 0).x < toggle(row).mapToItem(page, 0, 0).x);
                verify(row.height >= words.height);
            }
        }
    }
}
