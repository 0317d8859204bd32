// The mixer's page in numbers: sizes, fills, borders, shadows and symbols of its cards.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test
import "Finder.js" as Finder

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
        name: "MixerLook"
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

        function one(type, from) { return Finder.all(item => item instanceof type, from)[0]; }
        function symbol(name, from) { return Finder.all(item => item instanceof Symbol && item.name === name, from)[0]; }
        function label(text, from) { return Finder.all(item => item instanceof Label && item.text === text, from)[0]; }
        function card(name) {
            return Finder.all(item => item instanceof AppCardLarge && item.row.name === name, page)[0];
        }
        function button(name, from) {
            return Finder.all(item => item instanceof PlainButton && item.Accessible.name.startsWith(name), from)[0];
        }
        function xIn(item, other) { return item.mapToItem(other, 0, 0).x; }
        function colour(actual, expected) {
            // Texts keep eight bits of each channel.
            compare(String(actual), String(expected));
        }

        function test_pageHasItsMarginsAndGaps() {
            make(1, 1);
            const hero = one(MixerHero, page);
            compare(xIn(hero, page), 32);
            compare(hero.mapToItem(page, 0, 0).y, 24);
            const features = Finder.named(page, "features");
            compare(features.mapToItem(page, 0, 0).y, 24 + hero.height + 24);
            compare(features.spacing, 12);
            const output = one(OutputCard, page);
            compare(output.mapToItem(page, 0, 0).y - features.mapToItem(page, 0, 0).y, features.height + 24);
            compare(xIn(output, page) + output.width, 919 - 32);
            compare(Finder.named(page, "rows").spacing, 8);
        }

        function test_heroIsTwoHalvesWithAGap() {
            make(1, 1);
            const hero = one(MixerHero, page);
            const wave = one(WaveCard, hero);
            const words = Finder.named(hero, "greeting").parent;
            compare(words.width, wave.width);
            verify(xIn(wave, hero) - words.width >= 14);
            verify(xIn(wave, hero) - words.width < 16);
            const mark = symbol("slider.horizontal.3", hero);
            colour(mark.color, Tokens.brandSage);
            verify(mark.mapToItem(hero, 0, 0).y < Finder.named(hero, "greeting").mapToItem(hero, 0, 0).y);
        }

        function test_whisperButtonIsACardThatTurnsIntoTheBrandsGradient() {
            make(1, 1);
            const whisper = one(WhisperButton, page);
            compare(whisper.leftPadding, 12);
            compare(whisper.topPadding, 7);
            compare(one(ShushIcon, whisper).size, 13);
            compare(one(ShushIcon, whisper).parent.spacing, 6);
            compare(one(Label, whisper).font.pixelSize, 12);
            compare(one(Label, whisper).font.weight, Font.Medium);
            const ground = one(Panel, whisper);
            colour(ground.color, Tokens.cardBG);
            colour(ground.stroke, Tokens.cardStroke);
            colour(one(ShushIcon, whisper).color, Tokens.textPrimary);
            compare(one(GradientFill, whisper), undefined);
            mouseClick(whisper);
            mouseMove(scene, 1, 1399);
            verify(one(GradientFill, whisper));
            colour(ground.stroke, Tokens.alpha(Tokens.brandSage, 0.4));
            colour(one(ShushIcon, whisper).color, Tokens.white);
            colour(one(Label, whisper).color, Tokens.white);
        }

        function test_waveCardIsATranslucentPaneWithTheLargestShadow() {
            make(1, 1);
            const wave = one(WaveCard, page);
            const ground = one(Panel, wave);
            colour(ground.color, Tokens.alpha(Tokens.white, 0.045));
            colour(ground.stroke, Tokens.cardStroke);
            compare(ground.radius, 14);
            compare(one(Elevated, wave).elevation, Tokens.elevation.hero);
            const line = Finder.named(wave, "wave");
            colour(line.color, Tokens.brandSage);
            compare(xIn(line, wave), 16 + 18);
            compare(wave.width - xIn(line, wave) - line.width, 16 + 18);
            const tag = Finder.named(wave, "liveTag");
            compare(tag.mapToItem(wave, 0, 0), Qt.point(16, 16));
            compare(line.mapToItem(wave, 0, 0).y, 16 + tag.height + 14);
            colour(Finder.named(wave, "sources").color, Tokens.textSecondary);
        }

        function test_capsuleUnderTheWaveFollowsTheNumberOfSources() {
            make(4, 0);
            const wave = one(WaveCard, page);
            compare(wave.capsuleFill, 0);
            Bench.sound(1, true);
            fuzzyCompare(wave.capsuleFill, 1 / 3, 1e-6);
            tryVerify(() => Finder.named(wave, "capsuleFill"));
            const full = Finder.named(wave, "capsuleFill");
            tryCompare(full, "width", Math.round(full.parent.width / 3));
            Bench.sound(2, true);
            Bench.sound(3, true);
            Bench.sound(4, true);
            compare(wave.capsuleFill, 1);
        }

        function test_featureCardHasATintedTileAndTextsInTwoColours() {
            make(1, 0);
            const feature = one(FeatureHighlightCard, page);
            const tile = Finder.named(feature, "tile");
            compare(tile.width, 38);
            compare(tile.height, 38);
            colour(tile.color, Tokens.alpha(Tokens.brandCoral, 0.16));
            compare(tile.mapToItem(feature, 0, 0), Qt.point(16, 16));
            compare(symbol("bolt.fill", tile).pointSize, 16);
            colour(one(StatusTag, feature).accent, Tokens.textSecondary);
            const title = label("Mystery Sound Finder", feature);
            colour(title.color, Tokens.textPrimary);
            const description = label("Catch any app the moment it makes a sound, even if it's hiding in another Space.", feature);
            colour(description.color, Tokens.textSecondary);
            compare(title.parent.spacing, 4);
            compare(tile.parent.parent.spacing, 12);
            const words = Finder.texts(page);
            verify(words.includes("Music fades when a Zoom or Slack call begins. Restores the moment you hang up."));
            verify(words.includes("Bind volume layouts to macOS Focus modes — Work flips Slack down automatically."));
        }

        function test_featureCardsEdgeAndShadowGrowUnderThePointer() {
            make(1, 0);
            const feature = one(FeatureHighlightCard, page);
            const ground = Finder.named(feature, "ground");
            const shadows = () => Finder.all(item => item instanceof Elevated && item.opacity > 0, feature);
            compare(ground.radius, 14);
            colour(ground.stroke, Tokens.cardStroke);
            compare(shadows().map(item => item.elevation), [Tokens.elevation.resting]);
            mouseMove(feature, 60, 60);
            tryVerify(() => ground.stroke.a > Tokens.cardStrokeHover.a - 0.005);
            tryVerify(() => shadows().length === 1 && shadows()[0].elevation === Tokens.elevation.hover);
        }

        function test_outputCardHasItsTileItsMenuAndItsPercentage() {
            make(1, 1);
            const card = one(OutputCard, page);
            compare(card.padding, 16);
            compare(card.corner, 14);
            const tile = Finder.named(card, "deviceIcon").parent;
            compare(tile.width, 44);
            compare(tile.height, 44);
            colour(tile.color, Tokens.alpha(Tokens.brandSage, 0.14));
            colour(Finder.named(card, "deviceIcon").color, Tokens.brandSage);
            const menu = one(MenuButton, card);
            colour(symbol("chevron.down", menu).color, Tokens.textTertiary);
            const caps = label("Output", card);
            compare(caps.parent.spacing, 2);
            const slider = one(LevelSlider, card);
            compare(slider.isDucked, false);
            compare(slider.isMuted, false);
            Bench.sound(1, false);
            compare(slider.isLive, false);
            mouseClick(menu);
            tryCompare(menu.madeMenu, "opened", true);
            const titles = [];
            for (let at = 0; at < menu.madeMenu.count; ++at)
                titles.push(menu.madeMenu.itemAt(at).text);
            verify(titles.includes("Headset"));
            mouseClick(menu.madeMenu.itemAt(titles.indexOf("Headset")));
            tryCompare(Finder.named(card, "deviceIcon"), "name", "headphones");
            tryCompare(menu.madeMenu, "visible", false);
            mouseClick(menu);
            tryCompare(menu.madeMenu, "opened", true);
            compare(menu.madeMenu.itemAt(titles.indexOf("Headset")).checked, true);
        }

        function test_appsTitleCountsWhatIsLiveInTheLiveColour() {
            make(3, 2);
            const count = Finder.named(page, "liveCount");
            compare(one(Figures, count).text, "2 live");
            colour(one(Figures, count).color, Tokens.brandCoral);
            colour(one(LivePulse, count).color, Tokens.brandCoral);
            compare(count.spacing, 5);
        }

        function test_emptyStateIsASurfaceWithASymbolAndTwoLines() {
            make(0, 0);
            Bench.quitAll();
            const empty = Finder.named(page, "emptyState");
            compare(empty.corner, 10);
            compare(empty.padding, 32);
            const mark = symbol("waveform", empty);
            compare(mark.pointSize, 26);
            colour(mark.color, Tokens.textTertiary);
            compare(mark.parent.spacing, 10);
            verify(mark.parent.width <= 320);
            colour(label("Apps appear here the moment they make any sound.", empty).color, Tokens.textSecondary);
        }

        function test_cardOfAnApplicationHasItsColumns() {
            make(2, 1);
            tryVerify(() => card("App 1"));
            const one1 = card("App 1");
            const content = Finder.named(one1, "content");
            compare(xIn(content, one1), 16);
            const icon = one(AppIcon, one1);
            compare(icon.side, 38);
            compare(icon.tileSymbolSize, 16);
            compare(icon.tileOpacity, 0.14);
            const name = Finder.named(one1, "name");
            compare(name.parent.parent.width, 180);
            compare(name.parent.parent.spacing, 2);
            compare(Finder.named(one1, "pulse").size, 6);
            colour(Finder.named(one1, "pulse").color, Tokens.brandCoral);
            colour(Finder.named(one1, "subtitle").color, Tokens.textTertiary);
            const percent = Finder.named(one1, "percent");
            compare(percent.text, "100%");
            compare(percent.parent.width, 72);
            fuzzyCompare(percent.x + percent.width, 72, 0.01);
            colour(percent.color, Tokens.textPrimary);
            const slot = button("Output for App 1", one1).parent;
            compare(slot.parent.width, 60);
            compare(slot.spacing, 4);
            fuzzyCompare(slot.x + slot.width, 60, 0.01);
            compare(button("Output for App 1", one1).height, 24);
            const shadow = Finder.all(item => item instanceof Elevated, one1.parent)[0];
            compare(shadow.elevation, Tokens.elevation.resting);
        }

        function test_gainIsCutNotRounded() {
            make(1, 1);
            tryVerify(() => card("App 1"));
            Bench.setGain(1, 0.999);
            compare(Finder.named(card("App 1"), "percent").text, "99%");
        }

        function test_routedCardsSymbolIsFilledAndBlue() {
            make(1, 1);
            tryVerify(() => card("App 1"));
            const route = button("Output for App 1", card("App 1"));
            compare(symbol("headphones", route).pointSize, 12);
            colour(symbol("headphones", route).color, Tokens.textSecondary);
            Bench.setRoute(1, "headset");
            colour(symbol("headphones.circle.fill", route).color, Tokens.brandSage);
        }

        function test_muteButtonTellsWhatItDoes() {
            make(1, 1);
            tryVerify(() => card("App 1"));
            const mute = button("Mute App 1", card("App 1"));
            compare(mute.tip, "Mute");
            compare(mute.symbol, "speaker.wave.2");
            compare(mute.symbolSize, 10);
            colour(mute.color, Tokens.textSecondary);
            mouseClick(mute);
            colour(button("Unmute App 1", card("App 1")).color, Tokens.brandRed);
            compare(one(LevelSlider, card("App 1")).isMuted, true);
        }

        function test_duckedCardSaysSo() {
            make(2, 2);
            tryVerify(() => card("App 1"));
            Bench.duckAlso(1);
            Bench.call(true);
            compare(Finder.named(card("App 1"), "subtitle").text, "Ducked");
            compare(one(LevelSlider, card("App 1")).isDucked, true);
            compare(one(LevelSlider, card("App 2")).isDucked, false);
        }

        function test_stripHasItsTileItsTextsAndItsTransport() {
            make(1, 1);
            Bench.play("So What", "Miles Davis", 0, true);
            const strip = Finder.named(page, "strip");
            const note = symbol("music.note", strip);
            compare(note.pointSize, 22);
            colour(note.color, Tokens.brandSage);
            compare(note.parent.width, 48);
            compare(note.parent.height, 48);
            colour(note.parent.color, Tokens.alpha(Tokens.brandSage, 0.14));
            compare(xIn(note.parent, strip), 16);
            const ground = one(Panel, strip);
            colour(ground.color, Tokens.cardBG);
            colour(ground.stroke, Tokens.cardStroke);
            compare(ground.radius, 14);
            verify(label("Now playing", strip));
            colour(Finder.named(strip, "source").color, Tokens.textTertiary);
            compare(Finder.named(strip, "title").font.pixelSize, 14);
            compare(Finder.named(strip, "title").font.weight, Font.DemiBold);
            compare(Finder.named(strip, "artist").font.pixelSize, 13);
            colour(Finder.named(strip, "artist").color, Tokens.textSecondary);
            const previous = button("Previous track", strip);
            const next = button("Next track", strip);
            compare([previous.symbol, next.symbol], ["backward.fill", "forward.fill"]);
            compare([previous.symbolSize, next.symbolSize], [12, 12]);
            compare(previous.parent.spacing, 4);
            const pause = symbol("pause.fill", button("Pause", strip));
            compare(pause.pointSize, 13);
            colour(pause.color, Tokens.white);
            Bench.play("So What", "Miles Davis", 0, false);
            verify(symbol("play.fill", button("Play", strip)));
        }

        function test_namesOfTracksAreOneLineOfPlainText() {
            make(1, 1);
            Bench.play("<b>So</b>\nWhat", "Miles\nDavis", 1, true);
            const strip = Finder.named(page, "strip");
            const quiet = strip.height;
            const title = Finder.named(strip, "title");
            compare(title.lineCount, 1);
            compare(title.textFormat, Text.PlainText);
            Bench.play("So What", "Miles Davis", 1, true);
            compare(strip.height, quiet);
        }
    }
}
