// The first run under mouse and keys.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test
import "Finder.js" as Finder

Item {
    id: scene

    width: 640
    height: 600

    Component {
        id: maker

        OnboardingWindow {
            width: 640
            height: 600
        }
    }

    Component {
        id: darkness

        Rectangle {
            width: 100
            height: 100
            color: "black"
        }
    }

    TestCase {
        name: "OnboardingWindow"
        when: windowShown

        property OnboardingWindow page: null

        function cleanup() { DesktopWishes.reset(); }

        function init() {
            Forms.start(1);
            mouseMove(scene, 1, 1);
            page = createTemporaryObject(maker, scene, {presenter: Forms.open("Onboarding")});
            verify(page);
            waitForRendering(page);
        }

        function named(name) { return Finder.named(page, name); }
        function go() { return named("continue"); }
        function dots() { return Finder.all(item => item.objectName === "dot", page); }
        function cards() { return Finder.all(item => item instanceof PermissionCard, page); }
        function toPermissions() {
            mouseClick(go());
            tryVerify(() => named("permissions").x === 0 && !named("welcome"));
        }

        function test_windowHasItsSizes() {
            compare(page.implicitWidth, 640);
            compare(page.implicitHeight, 600);
            const bar = go().parent.parent;
            compare(bar.height, 64);
            compare(bar.y, 536);
            compare(dots()[0].parent.x, 28);
            compare(go().mapToItem(page, go().width, 0).x, 640 - 28);
            compare(go().symbol, "arrow.right");
            compare(go().symbolTrails, true);
        }

        function test_greetingHasItsTexts() {
            const texts = Finder.texts(named("welcome"));
            for (const each of ["The per-app volume mixer macOS forgot to ship.", "Find the app that's making noise. Auto-duck music when calls start. One slider per app — finally.", "Mystery Sound Finder", "Auto-Duck calls", "Focus profiles"])
                verify(texts.includes(each), each);
            const pills = Finder.all(item => item instanceof FeaturePill, page);
            compare(pills.map(item => item.icon), ["bolt.fill", "waveform.badge.minus", "moon.fill"]);
            const head = Finder.named(named("welcome"), "headline");
            compare(head.font.pixelSize, 26);
            fuzzyCompare(head.font.letterSpacing, -0.5, 0.02);
            verify(Finder.all(item => item instanceof Wordmark, page).length === 1);
        }

        function test_greetingHasItsMeasures() {
            const shell = Finder.all(item => item instanceof StepShell, named("welcome"))[0];
            compare(shell.width, 640);
            compare([shell.edge, shell.bottomEdge], [36, 28]);
            const head = Finder.named(named("welcome"), "headline");
            compare(head.width, 480);
            const mark = Finder.all(item => item instanceof Wordmark, page)[0];
            compare(mark.mapToItem(page, 0, 0).y, 36 + 8);
            const pills = Finder.all(item => item instanceof FeaturePill, page);
            for (const pill of pills) {
                const symbol = Finder.all(item => item instanceof Symbol, pill)[0];
                const label = Finder.all(item => item instanceof Label, pill)[0];
                compare(symbol.useGradient, true);
                compare(label.font.weight, Font.Medium);
                compare(symbol.mapToItem(pill, 0, 0).x, 12);
                compare(label.mapToItem(pill, label.width, 0).x, pill.width - 12);
                compare(pill.height, label.parent.height + 2 * 7);
                compare(label.x - symbol.x - symbol.width, 6);
                compare(pill.radius, pill.height / 2);
                compare(String(pill.stroke), String(Tokens.alpha(Tokens.white, 0.08)));
            }
            // In the middle, on a whole pixel.
            const left = pills[0].mapToItem(page, 0, 0).x;
            fuzzyCompare(left, page.width - pills[2].mapToItem(page, pills[2].width, 0).x, 1);
        }

        function test_permissionsHaveTheirMeasures() {
            toPermissions();
            const head = Finder.named(named("permissions"), "headline");
            compare(head.width, 460);
            compare(cards().map(item => item.width), [480, 480]);
            compare(cards()[1].y - cards()[0].y - cards()[0].height, 12);
            const card = cards()[0];
            const tile = Finder.named(card, "tile");
            compare([tile.x, tile.height], [14, 40]);
            compare(Finder.all(item => item instanceof Symbol, tile)[0].pointSize, 18);
            const action = Finder.named(card, "action");
            compare(action.mapToItem(card, action.width, 0).x, 480 - 14);
            const words = Finder.all(item => item instanceof Label, card).filter(item => ["Accessibility", card.detail].includes(item.text));
            compare(words[0].mapToItem(card, 0, 0).x, 14 + 40 + 14);
            compare(words[0].font.weight, Font.DemiBold);
            compare(words[1].y - words[0].y - words[0].height, 2);
            compare(String(words[1].color), String(Tokens.textSecondary));
        }

        function test_firstStepIsThereFromTheStart() {
            compare(named("welcome").x, 0);
            compare(named("welcome").opacity, 1);
        }

        function test_stepEntersFromTheTrailingEdgeAndLeavesOverTheLeadingOne() {
            const welcome = named("welcome");
            go().clicked();
            const permissions = named("permissions");
            // Already at its beginning: no picture shows it at its end.
            compare([permissions.x, permissions.opacity, welcome.x, welcome.opacity], [640, 0, 0, 1]);
            tryVerify(() => permissions.x < 640 && welcome.x < 0 && welcome.opacity < 1);
            tryCompare(permissions, "x", 0);
            compare(permissions.opacity, 1);
            tryCompare(welcome, "visible", false);
            named("back").clicked();
            compare([welcome.x, welcome.opacity], [640, 0]);
            tryCompare(welcome, "x", 0);
            compare(welcome.opacity, 1);
        }

        function test_firstStepHasNoBack() {
            compare(named("back"), null);
            toPermissions();
            verify(named("back"));
            mouseClick(named("back"));
            tryVerify(() => named("welcome") && named("welcome").x === 0 && !named("permissions"));
            compare(named("back"), null);
        }

        function test_permissionsStepHasItsTexts() {
            toPermissions();
            const texts = Finder.texts(named("permissions"));
            for (const each of ["A couple of optional permissions", "Grant now, or skip and we'll ask again when you turn on the related feature.", "Required for global keyboard shortcuts (mute Slack from anywhere).", "Lets profiles auto-switch when you change macOS Focus modes."])
                verify(texts.includes(each), each);
            compare(cards().map(item => item.title), ["Accessibility", "Focus Status"]);
            compare(cards().map(item => item.icon), ["command", "moon.fill"]);
            const glyph = Finder.all(item => item instanceof HeroGlyph, page)[0];
            compare(glyph.width, 100);
            compare(Finder.named(glyph, "symbol").name, "lock.shield.fill");
            compare(Finder.named(glyph, "symbol").pointSize, 36);
            compare(Finder.named(glyph, "ring").width, 100);
            compare(Finder.named(glyph, "ring").border.width, 1);
            compare(String(Finder.named(glyph, "ring").border.color), String(Tokens.alpha(Tokens.brandSage, 0.3)));
            const head = Finder.named(named("permissions"), "headline");
            compare(head.font.pixelSize, 24);
            fuzzyCompare(head.font.letterSpacing, -0.4, 0.02);
        }

        function test_cardTurnsGreenWhenItsPermissionIsGiven() {
            toPermissions();
            const card = cards()[0];
            const action = () => Finder.named(card, "action");
            compare(action().text, "Grant");
            compare(action().symbol, "arrow.up.right.square");
            compare(String(card.stroke), String(Tokens.alpha(Tokens.white, 0.08)));
            compare(card.radius, 14);
            compare(Finder.named(card, "tile").width, 40);
            compare(Finder.named(card, "tileFill"), null);
            Forms.setTrusted(true);
            Forms.setFocusAuthorization(1);
            Forms.advance(0.6);
            compare(action(), null);
            const granted = Finder.named(card, "granted");
            const label = Finder.all(item => item instanceof ButtonLabel, granted)[0];
            compare(label.text, "Granted");
            compare(label.symbol, "checkmark.circle.fill");
            compare(String(label.color), String(Tokens.systemGreen));
            compare(String(granted.color), String(Tokens.alpha(Tokens.systemGreen, 0.1)));
            tryVerify(() => Qt.colorEqual(card.stroke, Tokens.alpha(Tokens.systemGreen, 0.4)));
            tryVerify(() => Finder.named(card, "tileFill") && Finder.named(card, "tileFill").opacity === 1);
            const denied = Finder.named(cards()[1], "action");
            compare(denied.text, "Open Settings");
            compare(denied.symbol, "gear");
        }

        function test_grantingAsksTheSystem() {
            toPermissions();
            mouseClick(Finder.named(cards()[0], "action"));
            mouseClick(Finder.named(cards()[1], "action"));
            compare(Forms.openedAnchors, ["Privacy_Accessibility", "Privacy_FocusStatus"]);
        }

        function test_whereThereAreNoSettingsTheCardSaysHowThePermissionComes() {
            Forms.setHasSettings(false);
            toPermissions();
            const card = cards()[1];
            compare(Finder.named(card, "hint"), null);
            const before = card.height;
            mouseClick(Finder.named(card, "action"));
            verify(Finder.named(card, "hint").text.startsWith("No settings for this were found."));
            tryVerify(() => card.height > before);
            Forms.setHasSettings(true);
            mouseClick(Finder.named(card, "action"));
            compare(Finder.named(card, "hint"), null);
            compare(Forms.openedAnchors, ["Privacy_FocusStatus"]);
        }

        function test_stepsAreThereAtOnceWhereMotionIsReduced() {
            DesktopWishes.reduceMotion(true);
            go().clicked();
            compare(named("welcome"), null);
            compare([named("permissions").x, named("permissions").opacity], [0, 1]);
            compare([dots()[0].width, dots()[1].width], [6, 22]);
            named("back").clicked();
            compare(named("permissions"), null);
            compare([named("welcome").x, named("welcome").opacity], [0, 1]);
        }

        function test_haloIsTheBrandsGradientAcrossItsCircle() {
            toPermissions();
            const glyph = Finder.all(item => item instanceof HeroGlyph, page)[0];
            const halo = Finder.named(glyph, "halo");
            compare([halo.width, halo.height, halo.corner], [80, 80, 40]);
            compare(halo.x, 10);
            const dark = createTemporaryObject(darkness, scene);
            halo.parent = dark;
            waitForRendering(dark);
            const image = grabImage(halo);
            const share = (x, y) => image.red(x, y) / image.blue(x, y);
            // Sage has less red in its blue than mint.
            verify(share(16, 16) < 0.19, share(16, 16));
            verify(share(64, 64) > 0.205, share(64, 64));
        }

        function test_dotsFollowTheStep() {
            compare(dots().length, 2);
            compare(dots().map(item => item.height), [6, 6]);
            compare(dots()[0].width, 22);
            compare(dots()[1].width, 6);
            compare(String(Finder.named(dots()[1], "plain").color), String(Tokens.alpha(Tokens.white, 0.15)));
            verify(Finder.named(dots()[0], "bright"));
            toPermissions();
            tryCompare(dots()[1], "width", 22);
            tryCompare(dots()[0], "width", 6);
            compare(String(Finder.named(dots()[0], "plain").color), String(Tokens.alpha(Tokens.white, 0.35)));
        }

        function test_returnActsLikeThePrimaryButtonOnEveryStep() {
            keyClick(Qt.Key_Return);
            tryVerify(() => named("permissions"));
            compare(Forms.onboardingsFinished, 0);
            keyClick(Qt.Key_Enter);
            compare(Forms.onboardingsFinished, 1);
            compare(Forms.onboardingCompleted, true);
        }

        function test_returnActsLikeThePrimaryButtonWhereverTheFocusIs() {
            toPermissions();
            Finder.named(cards()[0], "action").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            compare(Forms.onboardingsFinished, 1);
            compare(Forms.openedAnchors, []);
        }

        function test_returnThatIsHeldGoesOneStep() {
            keyPress(Qt.Key_Return);
            for (let i = 0; i < 5; ++i)
                Forms.repeatKey(scene.Window.window, Qt.Key_Return);
            keyRelease(Qt.Key_Return);
            compare(page.presenter.step, OnboardingPresenter.Permissions);
            compare(Forms.onboardingsFinished, 0);
            keyClick(Qt.Key_Return);
            compare(Forms.onboardingsFinished, 1);
        }

        function test_spacePressesTheButtonThatHasTheFocus() {
            toPermissions();
            Finder.named(cards()[0], "action").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            compare(Forms.openedAnchors, ["Privacy_Accessibility"]);
            compare(Forms.onboardingsFinished, 0);
        }

        function test_continueIsNeverDisabled() {
            compare(go().enabled, true);
            toPermissions();
            Forms.setFocusAuthorization(2);
            Forms.advance(0.6);
            compare(go().enabled, true);
        }

        function test_tabGoesFromTheCardsToTheFooter() {
            toPermissions();
            Finder.named(cards()[0], "action").forceActiveFocus(Qt.TabFocusReason);
            let order = [];
            for (let i = 0; i < 4; ++i) {
                order.push(scene.Window.activeFocusItem.Accessible.name);
                keyClick(Qt.Key_Tab);
            }
            compare(order, ["Grant", "Grant", "Back", "Continue"]);
        }

        function test_lowWindowScrollsAboveItsFooter() {
            page.height = 320;
            toPermissions();
            const step = named("permissions");
            verify(step.contentHeight > step.height);
            compare(step.height, 320 - 64);
            const last = Finder.named(cards()[1], "action");
            last.forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => last.mapToItem(step, 0, last.height).y <= step.height);
        }
    }
}
