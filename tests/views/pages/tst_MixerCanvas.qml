// The mixer's page.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test

Item {
    id: scene

    width: 919
    height: 1400

    Component {
        id: maker

        MixerCanvas {
            width: 919
            height: 1400
            presenter: Bench.mixer
        }
    }

    TestCase {
        name: "MixerCanvas"
        when: windowShown

        property MixerCanvas page: null

        function cleanup() {
            if (page)
                page.destroy();
            page = null;
            wait(0);
        }

        function make(count, sounding) {
            Bench.start(count, sounding);
            mouseMove(scene, 1, 1399);
            page = maker.createObject(scene) as MixerCanvas;
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

        function cards() { return all(item => item instanceof AppCardLarge, page); }
        function card(name) { return cards().find(item => item.row.name === name); }
        function features() { return all(item => item instanceof FeatureHighlightCard, page); }
        function button(from, name) {
            return all(item => item instanceof PlainButton && item.Accessible.name.startsWith(name), from)[0];
        }
        function texts(from) { return all(item => item instanceof Label, from).map(item => item.text); }
        function same(left, right) { return String(left) === String(right); }

        function test_heroGreetsAndTellsWhatIsConnected() {
            make(3, 2);
            const greeting = findChild(page, "greeting");
            compare(greeting.text, "Mixing 2 sources.");
            compare(greeting.font.pixelSize, 36);
            compare(greeting.font.weight, Font.DemiBold);
            fuzzyCompare(greeting.font.letterSpacing, -0.6, 0.02);
            const subtitle = findChild(page, "subtitle");
            compare(subtitle.text, "4 apps connected.");
            compare(subtitle.font.pixelSize, 15);
            verify(same(subtitle.color, Tokens.textSecondary));
            verify(texts(page).includes("Live mixer"));
        }

        function test_waveCardIsLiveOrIdle() {
            make(1, 0);
            const tag = () => findChild(page, "liveTag");
            compare(tag().text, "Idle");
            compare(tag().neutral, true);
            compare(tag().showsDot, false);
            compare(findChild(page, "sources").text, "0 sources");
            compare(findChild(page, "wave").liveCount, 0);
            Bench.sound(1, true);
            compare(tag().text, "Live");
            verify(same(tag().accent, Tokens.brandCoral));
            compare(tag().pulses, true);
            compare(findChild(page, "sources").text, "1 source");
            compare(findChild(page, "wave").liveCount, 1);
            fuzzyCompare(findChild(page, "wave").lineWidth, 2.6, 1e-6);
            const card = all(item => item instanceof WaveCard, page)[0];
            verify(card.height >= 150);
        }

        function test_capsuleStartsAtItsShareAndGlidesToTheNextOne() {
            make(3, 2);
            const fill = findChild(page, "capsuleFill");
            compare(fill.width, Math.round(fill.parent.width * 2 / 3));
            page.width -= 60;
            compare(fill.width, Math.round(fill.parent.width * 2 / 3));
            Bench.sound(3, true);
            verify(fill.width < fill.parent.width);
            tryCompare(fill, "width", fill.parent.width);
        }

        function test_whisperButtonTurnsWhisperModeOnAndChangesItsLook() {
            make(1, 1);
            const whisper = all(item => item instanceof WhisperButton, page)[0];
            compare(whisper.text, "Engage Whisper Mode");
            verify(same(whisper.contentColor, Tokens.textPrimary));
            mouseClick(whisper);
            verify(Bench.whispers());
            compare(whisper.text, "Whisper Mode on — tap to restore");
            verify(same(whisper.contentColor, Tokens.white));
            compare(whisper.tip, "Fades every app down to a whisper. One more tap brings everything back.");
        }

        function test_featureCardsTellTheirStates() {
            make(2, 0);
            compare(features().map(item => item.title), ["Mystery Sound Finder", "Auto-Duck on calls", "Focus profiles"]);
            compare(features().map(item => item.stateText), ["Listening", "Standing by", "1 saved"]);
            compare(features().map(item => item.isActive), [false, false, false]);
            compare(features().map(item => item.icon), ["bolt.fill", "waveform.badge.minus", "rectangle.stack.fill"]);
            Bench.sound(1, true);
            Bench.call(true);
            Bench.addProfile("Evening", true);
            compare(features().map(item => item.stateText), ["1 live", "Ducking now", "Profile active"]);
            compare(features().map(item => item.isActive), [true, true, true]);
            const accents = [Tokens.brandCoral, Tokens.brandSage, Tokens.brandMint];
            for (let i = 0; i < 3; ++i) {
                verify(same(features()[i].accent, accents[i]));
                verify(features()[i].height >= 150);
                const tag = all(item => item instanceof StatusTag, features()[i])[0];
                verify(same(tag.accent, accents[i]));
            }
        }

        function test_featureCardLiftsUnderThePointer() {
            make(1, 0);
            const feature = features()[0];
            const ground = findChild(feature, "ground");
            fuzzyCompare(ground.color.a, 0.035, 0.003);
            fuzzyCompare(feature.scale, 1, 1e-6);
            mouseMove(feature, 60, 60);
            tryVerify(() => Math.abs(feature.scale - 1.003) < 1e-6);
            fuzzyCompare(ground.color.a, 0.05, 0.003);
            mouseMove(scene, 1, 1399);
            tryVerify(() => Math.abs(feature.scale - 1) < 1e-6);
        }

        function test_outputCardShowsTheDeviceAndSetsTheMaster() {
            make(1, 1);
            const card = all(item => item instanceof OutputCard, page)[0];
            compare(findChild(card, "deviceIcon").name, "hifispeaker.2.fill");
            compare(findChild(card, "deviceIcon").pointSize, 18);
            const slider = all(item => item instanceof LevelSlider, card)[0];
            compare(slider.width, 240);
            compare(slider.height, 20);
            compare(slider.isLive, true);
            mouseClick(slider, 120, 10);
            fuzzyCompare(Bench.master(), 0.5, 0.01);
            tryCompare(findChild(card, "masterPercent"), "text", Math.floor(Bench.master() * 100 + 1e-4) + "%");
        }

        function test_stripIsThereOnlyWhileSomethingPlays() {
            make(1, 1);
            const strip = findChild(page, "strip");
            compare(strip.visible, false);
            Bench.play("So What", "Miles Davis", 1, true);
            compare(strip.visible, true);
            compare(findChild(strip, "title").text, "So What");
            compare(findChild(strip, "artist").text, "Miles Davis");
            compare(findChild(strip, "source").text, "· App 1");
            compare(findChild(strip, "shadow").elevation, Tokens.elevation.hover);
            Bench.play("So What", "", 0, false);
            compare(findChild(strip, "artist").visible, false);
            compare(findChild(strip, "source").text, "· Unknown");
            compare(findChild(strip, "note").visible, true);
            compare(findChild(strip, "shadow").elevation, Tokens.elevation.resting);
            Bench.play("", "", 0, false);
            compare(strip.visible, false);
        }

        function test_transportPressesItsKeys() {
            make(1, 1);
            Bench.play("So What", "Miles Davis", 1, true);
            const strip = findChild(page, "strip");
            mouseClick(button(strip, "Previous track"));
            mouseClick(button(strip, "Pause"));
            mouseClick(button(strip, "Next track"));
            compare(Bench.pressedKeys(), [18, 16, 17]);
            const play = button(strip, "Pause");
            compare(play.width, 32);
            verify(same(findChild(play, "disc").color, Tokens.brandSage));
            Bench.play("So What", "Miles Davis", 1, false);
            verify(button(strip, "Play"));
        }

        function test_silentApplicationsAreListedToo() {
            make(3, 1);
            tryVerify(() => cards().length === 4);
            compare(findChild(card("App 1"), "pulse").opacity, 1);
            compare(findChild(card("App 2"), "pulse").opacity, 0);
            compare(card("App 1").height, 72);
            compare(findChild(card("App 1"), "subtitle").text, "org.example.app1");
            compare(findChild(page, "liveCount").visible, true);
        }

        function test_emptyMachineHasAnEmptyState() {
            make(0, 0);
            Bench.quitAll();
            const empty = findChild(page, "emptyState");
            tryCompare(empty, "visible", true);
            verify(texts(empty).includes("Nothing's playing."));
            verify(texts(empty).includes("Apps appear here the moment they make any sound."));
            compare(findChild(page, "liveCount").visible, false);
            compare(findChild(page, "greeting").text, "Quiet right now.");
        }

        function test_cardsGroundChangesUnderThePointer() {
            make(2, 1);
            tryVerify(() => card("App 1"));
            const ground = findChild(card("App 1"), "ground");
            verify(same(ground.color, Tokens.cardBG));
            verify(same(ground.stroke, Tokens.cardStroke));
            mouseMove(card("App 1"), 30, 30);
            tryVerify(() => same(ground.color, Tokens.cardBGHover));
            tryVerify(() => same(ground.stroke, Tokens.cardStrokeHover));
        }

        function test_mutedCardFadesItsContentAndKeepsItsGround() {
            make(2, 1);
            tryVerify(() => card("App 1"));
            mouseClick(button(card("App 1"), "Mute App 1"));
            compare(Bench.muted(1), true);
            compare(findChild(card("App 1"), "content").opacity, 0.55);
            compare(findChild(card("App 1"), "ground").opacity, 1);
            verify(same(findChild(card("App 1"), "percent").color, Tokens.textTertiary));
            const mute = button(card("App 1"), "Unmute App 1");
            compare(mute.tip, "Unmute");
            compare(mute.symbol, "speaker.slash.fill");
        }

        function test_mutedCardStaysReadableWhereContrastIsWanted() {
            make(2, 1);
            tryVerify(() => card("App 1"));
            mouseClick(button(card("App 1"), "Mute App 1"));
            DesktopWishes.wantContrast(true);
            compare(findChild(card("App 1"), "content").opacity, 0.85);
            DesktopWishes.reset();
            compare(findChild(card("App 1"), "content").opacity, 0.55);
        }

        function test_routeMenuSendsTheApplicationToADevice() {
            make(1, 1);
            tryVerify(() => card("App 1"));
            const route = button(card("App 1"), "Output for App 1");
            compare(route.width, 24);
            compare(route.tip, "Route to a specific output");
            mouseClick(route);
            tryCompare(route.madeMenu, "opened", true);
            const titles = [0, 1, 2, 3].map(at => route.madeMenu.itemAt(at).text);
            mouseClick(route.madeMenu.itemAt(titles.indexOf("Headset")));
            compare(Bench.route(1), "headset");
            compare(findChild(card("App 1"), "subtitle").text, "→ Headset");
        }

        function test_sliderSetsTheGainAndTheWheelMovesIt() {
            make(1, 1);
            tryVerify(() => card("App 1"));
            const slider = all(item => item instanceof LevelSlider, card("App 1"))[0];
            compare(slider.height, 20);
            mouseClick(slider, slider.width / 2, 10);
            fuzzyCompare(Bench.gain(1), 0.5, 0.01);
            const before = Bench.gain(1);
            mouseWheel(slider, 20, 10, 0, 120);
            verify(Bench.gain(1) > before);
        }

        function test_cardJoinsItsTabsAndRoundsAgainWithoutThem() {
            make(2, 1);
            tryVerify(() => card("App 1"));
            const ground = findChild(card("App 1"), "ground");
            compare(ground.topRadius, 14);
            compare(ground.bottomRadius, 14);
            Bench.openTabs(card("App 1").row, 3);
            const lists = () => all(item => item instanceof BrowserTabsList, page);
            tryVerify(() => lists().length === 1);
            compare(ground.bottomRadius, 0);
            compare(ground.topRadius, 14);
            const below = lists()[0].mapToItem(card("App 1"), 0, 0).y;
            compare(below, 72);
            Bench.openTabs(card("App 1").row, 0);
            tryVerify(() => lists().length === 0);
            compare(ground.bottomRadius, 14);
        }

        function test_cardsKeepTheirItemsWhileTheListIsMerged() {
            make(5, 2);
            tryVerify(() => cards().length === 6);
            const third = card("App 3");
            mouseMove(third, 30, 30);
            tryCompare(third, "hovering", true);
            for (let i = 0; i < 7; ++i)
                Bench.advance(0.15);
            Bench.sound(4, true);
            Bench.quitApp(5);
            verify(card("App 3") === third);
            compare(third.hovering, true);
        }

        function test_dragGoesOnWhileTheListChanges() {
            make(4, 1);
            tryVerify(() => card("App 1"));
            const slider = all(item => item instanceof LevelSlider, card("App 1"))[0];
            const y = slider.height / 2;
            mousePress(slider, slider.width * 0.5, y);
            mouseMove(slider, slider.width * 0.6, y);
            Bench.sound(3, true);
            Bench.quitApp(4);
            compare(slider.dragging, true);
            mouseMove(slider, slider.width * 0.8, y);
            mouseRelease(slider, slider.width * 0.8, y);
            fuzzyCompare(Bench.gain(1), 0.8, 0.02);
        }

        function test_focusStaysWhereItIsWhileTheListChanges() {
            make(4, 1);
            tryVerify(() => card("App 2"));
            const mute = button(card("App 2"), "Mute App 2");
            mute.forceActiveFocus(Qt.TabFocusReason);
            Bench.sound(4, true);
            Bench.quitApp(3);
            verify(mute.activeFocus);
        }

        function test_changeOfOneRowEvaluatesThatRowOnly() {
            make(30, 5);
            tryVerify(() => cards().length > 10);
            const others = [];
            let own = 0;
            for (const each of cards()) {
                const label = findChild(each, "percent");
                if (each.row.name === "App 1")
                    label.textChanged.connect(() => ++own);
                else
                    label.textChanged.connect(() => others.push(each.row.name));
            }
            Bench.setGain(1, 0.25);
            compare(own, 1);
            compare(others, []);
        }

        function test_screenReadersHearAListOfApplications() {
            make(2, 1);
            tryVerify(() => cards().length === 3);
            compare(card("App 1").Accessible.role, Accessible.ListItem);
            compare(card("App 1").Accessible.name, "App 1");
            const list = findChild(page, "rows");
            compare(list.Accessible.role, Accessible.List);
            compare(list.Accessible.name, "Apps");
        }

        function isInSight(item) {
            const top = item.mapToItem(page, 0, 0).y;
            return top >= 0 && top + item.height <= page.height;
        }

        function test_whatTheKeyboardReachesComesIntoSight() {
            make(30, 5);
            page.height = 300;
            const list = findChild(page, "rows");
            tryVerify(() => list.contentHeight > 1500);
            const first = all(item => item instanceof WhisperButton, page)[0];
            const master = all(item => item instanceof LevelSlider && item.label === "Output volume", page)[0];
            verify(!isInSight(master));
            findChild(master, "handle").forceActiveFocus(Qt.TabFocusReason);
            verify(isInSight(master));
            list.positionViewAtEnd();
            verify(!isInSight(first));
            first.forceActiveFocus(Qt.TabFocusReason);
            verify(isInSight(first));
        }

        function test_tabKeyGoesThroughTheWholePageAndKeepsItInSight() {
            make(12, 2);
            page.height = 400;
            const list = findChild(page, "rows");
            tryVerify(() => list.count === 13);
            all(item => item instanceof WhisperButton, page)[0].forceActiveFocus(Qt.TabFocusReason);
            const reached = [];
            for (let i = 0; i < 60; ++i) {
                keyClick(Qt.Key_Tab);
                const item = page.Window.activeFocusItem;
                // From the end it starts again.
                if (item.Accessible.name === "Engage Whisper Mode")
                    break;
                verify(isInSight(item), item.Accessible.name + " at " + item.mapToItem(page, 0, 0).y);
                reached.push(item.Accessible.name);
            }
            // The output and its level, then slider, output and mute of each application.
            compare(reached.slice(0, 5), ["Output device: System Output", "Output volume", "App 1", "Output for App 1",
                                          "Mute App 1"]);
            compare(reached.length, 2 + 3 * 13);
        }

        function test_tabKeyFollowsThePlacesOfRowsThatHaveComeLater() {
            make(3, 1);
            tryVerify(() => cards().length === 4);
            Bench.launch(11, "Another");
            Bench.quitApp(1);
            Bench.launch(12, "Aardvark");
            tryVerify(() => card("Another") && card("Aardvark"));
            const inOrder = [];
            for (let at = 0; at < Bench.mixer.rows.count; ++at)
                inOrder.push(all(item => item instanceof AppCardLarge, findChild(page, "rows").itemAtIndex(at))[0]);
            const handle = item => findChild(all(each => each instanceof LevelSlider, item)[0], "handle");
            for (let i = 0; i + 1 < inOrder.length; ++i) {
                button(inOrder[i], inOrder[i].row.muteTip).forceActiveFocus(Qt.TabFocusReason);
                keyClick(Qt.Key_Tab);
                verify(handle(inOrder[i + 1]).activeFocus, inOrder[i].row.name + " leads to " + inOrder[i + 1].row.name);
            }
        }

        function test_buttonThatIsCutOffStaysUnderThePointer() {
            make(30, 5);
            page.height = 400;
            const list = findChild(page, "rows");
            tryVerify(() => card("App 1"));
            const mute = button(card("App 1"), "Mute App 1");
            list.contentY = mute.mapToItem(list.contentItem, 0, 0).y + mute.height / 2;
            const before = list.contentY;
            verify(!isInSight(mute));
            mouseClick(mute, 12, mute.height - 4);
            compare(list.contentY, before);
            compare(Bench.muted(1), true);
        }

        function test_pageKeysScroll() {
            make(30, 5);
            page.height = 400;
            const list = findChild(page, "rows");
            tryVerify(() => list.contentHeight > 1500);
            all(item => item instanceof WhisperButton, page)[0].forceActiveFocus(Qt.TabFocusReason);
            const before = list.contentY;
            keyClick(Qt.Key_PageDown);
            verify(list.contentY >= before + 300);
            keyClick(Qt.Key_PageUp);
            compare(list.contentY, before);
        }

        function test_thousandApplicationsMakeNoThousandCards() {
            make(1000, 5);
            page.height = 700;
            const list = findChild(page, "rows");
            tryVerify(() => list.count === 1001);
            verify(cards().length < 200);
        }
    }
}
