// The level slider under hands: mouse, wheel, keys, and what assistive technology sees.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Test

Item {
    id: scene

    width: 400
    height: 300

    Component {
        id: standard

        LevelSlider {
            id: slider

            property real held: 0.5
            property int writes: 0
            property real scrolled: 0
            property int scrolls: 0

            label: "Spotify"
            width: 200
            height: 18
            value: held
            onMoved: (value) => {
                held = value;
                ++writes;
            }
            onScrollDelta: (delta) => {
                scrolled += delta;
                ++scrolls;
            }
        }
    }

    Component {
        id: onCanvas

        Rectangle {
            property alias slider: level

            width: 200
            height: 18
            color: Tokens.canvasBG

            LevelSlider {
                id: level

                anchors.fill: parent
                label: "Spotify"
                value: 0.5
            }
        }
    }

    Component {
        id: inList

        Flickable {
            property alias slider: slider
            property real held: 0.5

            width: 200
            height: 100
            contentHeight: 1000

            LevelSlider {
                id: slider

                label: "Spotify"
                width: 200
                height: 18
                value: parent.parent.held
                scrollRule: SliderHandle.PassOn
                onMoved: (value) => parent.parent.held = value
            }
        }
    }

    TestCase {
        id: test

        name: "LevelSlider"
        when: windowShown

        function make(properties: var): LevelSlider {
            const slider = createTemporaryObject(standard, scene, properties);
            verify(slider);
            return slider;
        }

        function handleOf(slider: LevelSlider): Item {
            return findChild(slider, "handle");
        }

        function test_trackAndMutedSliderStandOutWhereContrastIsWanted() {
            const slider = createTemporaryObject(standard, scene);
            slider.isMuted = true;
            const track = findChild(slider, "track");
            tryCompare(track.parent, "opacity", 0.45);
            DesktopWishes.wantContrast(true);
            verify(Qt.colorEqual(track.leading, Tokens.alpha(Tokens.white, 0.35)));
            verify(Qt.colorEqual(track.trailing, track.leading));
            tryCompare(track.parent, "opacity", 0.75);
            DesktopWishes.reset();
            tryCompare(track.parent, "opacity", 0.45);
        }

        function test_nothingShowsThroughAFadedThumb() {
            const ground = createTemporaryObject(onCanvas, scene);
            const slider = ground.slider;
            slider.isMuted = true;
            tryVerify(() => slider.holeDiameter > 0);
            ground.opacity = 0.55;
            tryVerify(() => {
                const picture = grabImage(ground);
                // Half of the thumb lies over the fill, half over the empty track.
                return picture.red(95, 9) > 20 && picture.pixel(96, 9) === picture.pixel(104, 9);
            });
        }

        function test_aClickSetsTheValue() {
            const slider = make({});
            mouseClick(slider, 50, 9);
            compare(slider.held, 0.25);
            compare(slider.dragging, false);
        }

        function test_aDragWritesOnEveryChange() {
            const slider = make({});
            mousePress(slider, 100, 9);
            verify(slider.dragging);
            mouseMove(slider, 120, 9);
            compare(slider.held, 0.6);
            mouseMove(slider, 140, 9);
            compare(slider.held, 0.7);
            verify(slider.writes >= 3);
            mouseRelease(slider, 140, 9);
            verify(!slider.dragging);
        }

        function test_aDragPastEitherEndStopsAtTheBound() {
            const slider = make({});
            mousePress(slider, 100, 9);
            mouseMove(slider, 390, 9);
            compare(slider.held, 1);
            mouseMove(slider, -150, 9);
            compare(slider.held, 0);
            mouseRelease(slider, -150, 9);
            compare(slider.held, 0);
        }

        function test_aDragStaysInTheSlidersOwnRange() {
            const slider = make({ from: 10, to: 30, held: 20 });
            mouseClick(slider, 50, 9);
            compare(slider.held, 15);
        }

        function test_aRangeOfZeroWidthPutsTheThumbAtTheLeadingEnd() {
            const slider = make({ from: 0.4, to: 0.4, held: 0.4 });
            compare(slider.fraction, 0);
            compare(slider.thumbCentre, 7);
            mouseClick(slider, 150, 9);
            compare(slider.held, 0.4);
        }

        function test_aWidthNarrowerThanTheThumbKeepsTheThumbsCentreAtHalfAThumb() {
            const slider = make({ width: 6, held: 1 });
            compare(slider.thumbCentre, 7);
            compare(slider.fillWidth, 6);
        }

        function test_theThumbStaysWithinTheTrackAndTheFillDoesNot() {
            const slider = make({ held: 1 });
            compare(slider.thumbCentre, 193);
            compare(slider.fillWidth, 200);
        }

        function test_theSliderIsFourteenHighByItself() {
            const slider = make({});
            compare(slider.implicitHeight, 14);
        }

        function test_theValueIsShownAndNotKept() {
            const slider = make({});
            slider.value = 0.8;
            mouseClick(slider, 20, 9);
            compare(slider.value, 0.8);
            compare(slider.held, 0.1);
        }

        function test_scrollingUpAddsTwoHundredths() {
            const slider = make({});
            mouseWheel(slider, 100, 9, 0, 120);
            fuzzyCompare(slider.held, 0.52, 1e-9);
        }

        function test_scrollingDownTakesTwoHundredthsAwayWhateverTheSize() {
            const slider = make({});
            mouseWheel(slider, 100, 9, 0, -720);
            fuzzyCompare(slider.held, 0.48, 1e-9);
        }

        function test_aScrollWithoutVerticalPartTakesTwoHundredthsAway() {
            const slider = make({});
            mouseWheel(slider, 100, 9, 120, 0);
            fuzzyCompare(slider.held, 0.48, 1e-9);
        }

        function test_scrollingStopsAtTheBounds() {
            const slider = make({ held: 0.99 });
            mouseWheel(slider, 100, 9, 0, 120);
            compare(slider.held, 1);
            mouseWheel(slider, 100, 9, 0, 120);
            compare(slider.held, 1);
        }

        function test_aFineWheelAddsUpToOneStep() {
            const slider = make({});
            for (let i = 0; i < 7; ++i)
                mouseWheel(slider, 100, 9, 0, 15);
            compare(slider.writes, 0);
            mouseWheel(slider, 100, 9, 0, 15);
            compare(slider.writes, 1);
            fuzzyCompare(slider.held, 0.52, 1e-9);
        }

        function test_withARuleOfItsOwnersTheDistanceIsHandedOn() {
            const slider = make({ scrollRule: SliderHandle.Forward });
            mouseWheel(slider, 100, 9, 0, 120);
            mouseWheel(slider, 100, 9, 0, -240);
            compare(slider.scrolls, 2);
            compare(slider.scrolled, -4);
            compare(slider.writes, 0);
        }

        function test_beyondTheBoundTheDistanceIsStillHandedOn() {
            const slider = make({ scrollRule: SliderHandle.Forward, held: 1 });
            mouseWheel(slider, 100, 9, 0, 120);
            compare(slider.scrolls, 1);
        }

        function test_withTheSettingOffAScrollIsNotConsumed() {
            const list = createTemporaryObject(inList, scene);
            mouseWheel(list.slider, 100, 9, 0, -120);
            compare(list.held, 0.5);
            tryVerify(() => list.contentY > 0);
        }

        function test_withTheSettingOnTheListBehindDoesNotScroll() {
            const list = createTemporaryObject(inList, scene);
            list.slider.scrollRule = SliderHandle.OwnStep;
            mouseWheel(list.slider, 100, 9, 0, -120);
            fuzzyCompare(list.held, 0.48, 1e-9);
            compare(list.contentY, 0);
        }

        function test_aDragInAListDoesNotFlickIt() {
            const list = createTemporaryObject(inList, scene);
            mousePress(list.slider, 100, 9);
            mouseMove(list.slider, 130, -60);
            mouseMove(list.slider, 160, -90);
            compare(list.contentY, 0);
            compare(list.held, 0.8);
            mouseRelease(list.slider, 160, -90);
        }

        function test_arrowsStepByTwoHundredths() {
            const slider = make({});
            handleOf(slider).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Up);
            fuzzyCompare(slider.held, 0.54, 1e-9);
            keyClick(Qt.Key_Left);
            keyClick(Qt.Key_Down);
            fuzzyCompare(slider.held, 0.5, 1e-9);
        }

        function test_pageKeysStepByATenth() {
            const slider = make({});
            handleOf(slider).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_PageUp);
            fuzzyCompare(slider.held, 0.6, 1e-9);
            keyClick(Qt.Key_PageDown);
            keyClick(Qt.Key_PageDown);
            fuzzyCompare(slider.held, 0.4, 1e-9);
        }

        function test_homeAndEndGoToTheBounds() {
            const slider = make({});
            handleOf(slider).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            compare(slider.held, 1);
            keyClick(Qt.Key_Right);
            compare(slider.held, 1);
            keyClick(Qt.Key_Home);
            compare(slider.held, 0);
        }

        function test_theFocusRingShowsForTheKeyboardAndNotForTheMouse() {
            const slider = make({});
            const handle = handleOf(slider);
            mouseClick(slider, 50, 9);
            verify(handle.activeFocus);
            verify(!handle.visualFocus);
            keyClick(Qt.Key_Right);
            verify(handle.visualFocus);
            handle.focus = false;
            verify(!handle.visualFocus);
            handle.forceActiveFocus(Qt.TabFocusReason);
            verify(handle.visualFocus);
        }

        function test_tabReachesTheSlider() {
            const slider = make({});
            verify(handleOf(slider).activeFocusOnTab);
        }

        function test_aMutedSliderStillAcceptsDragsAndScrolls() {
            const slider = make({ isMuted: true });
            mouseClick(slider, 150, 9);
            compare(slider.held, 0.75);
            mouseWheel(slider, 100, 9, 0, 120);
            fuzzyCompare(slider.held, 0.77, 1e-9);
        }

        function test_onlyTheSliderUnderThePointerReactsToTheWheel() {
            const upper = make({});
            const lower = make({ y: 60 });
            mouseWheel(lower, 100, 9, 0, 120);
            compare(upper.writes, 0);
            compare(lower.writes, 1);
        }

        function test_assistiveTechnologySeesAndSetsTheValue() {
            const slider = make({ held: 0.3 });
            const handle = handleOf(slider);
            compare(handle.Accessible.role, Accessible.Slider);
            compare(handle.Accessible.name, "Spotify");
            compare(handle.value, 0.3);
            compare(handle.minimumValue, 0);
            compare(handle.maximumValue, 1);
            compare(handle.stepSize, 0.02);
            handle.value = 0.9;
            compare(slider.held, 0.9);
            handle.value = 3;
            compare(slider.held, 1);
        }

        function test_assistiveTechnologyStepsTheValue() {
            const slider = make({});
            const handle = handleOf(slider);
            handle.Accessible.increaseAction();
            fuzzyCompare(slider.held, 0.52, 1e-9);
            handle.Accessible.decreaseAction();
            handle.Accessible.decreaseAction();
            fuzzyCompare(slider.held, 0.48, 1e-9);
        }

        function test_onlyALiveAudibleSliderShimmers_data() {
            return [
                { tag: "silent", isLive: false, isMuted: false, level: 0, shimmers: false },
                { tag: "live", isLive: true, isMuted: false, level: 0, shimmers: true },
                { tag: "muted", isLive: true, isMuted: true, level: 0, shimmers: false },
                { tag: "with a level", isLive: true, isMuted: false, level: 0.5, shimmers: false },
                { tag: "with a level too small to show", isLive: true, isMuted: false, level: 0.02, shimmers: true },
            ];
        }

        function test_onlyALiveAudibleSliderShimmers(data) {
            const slider = make({ isLive: data.isLive, isMuted: data.isMuted, level: data.level });
            compare(slider.shimmers, data.shimmers);
        }

        function test_theThumbGrowsWhileHoveredAndMoreWhileDragged() {
            const slider = make({});
            const thumb = findChild(slider, "thumb");
            mouseMove(slider, 100, 9);
            tryCompare(thumb, "scale", 1.05);
            mousePress(slider, 100, 9);
            tryCompare(thumb, "scale", 1.15);
            mouseRelease(slider, 100, 9);
            tryCompare(thumb, "scale", 1.05);
            mouseMove(scene, 390, 290);
            tryCompare(thumb, "scale", 1);
        }
    }
}
