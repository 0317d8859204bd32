// The small components: looks by state, keys, names.
import QtQuick
import QtTest
import Quillmere.Design

Item {
    id: scene

    width: 500
    height: 400

    Component {
        id: tag

        StatusTag {
            text: "Live"
        }
    }

    Component {
        id: caps

        SectionCaps {
            text: "Now playing"
        }
    }

    Component {
        id: ring

        RingProgress {
            progress: 0
            animate: false
        }
    }

    Component {
        id: iconButton

        SubtleIconButton {
            property int clicks: 0

            text: "Quit quillmere"
            symbol: "power"
            onClicked: ++clicks
        }
    }

    Component {
        id: ghostButton

        GhostButton {
            property int clicks: 0

            text: "Cancel"
            onClicked: ++clicks
        }
    }

    Component {
        id: primaryButton

        PrimaryButton {
            property int clicks: 0

            text: "Continue"
            onClicked: ++clicks
        }
    }

    Component {
        id: mark

        Wordmark {
            height: 20
        }
    }

    Component {
        id: shush

        ShushIcon {
            size: 14
        }
    }

    Component {
        id: card

        Surface {
            width: 200
            padding: 16

            Rectangle {
                width: parent.width
                height: 40
            }
        }
    }

    Component {
        id: deviceMenu

        MenuButton {
            id: button

            property string picked: ""

            text: "Speakers"
            width: 120
            height: 24
            contentItem: Label {
                text: button.text
            }
            menu: DropMenu {
                DropMenuItem { text: "System default"; checkable: true; checked: true; onTriggered: button.picked = text }
                DropMenuDivider {}
                DropMenuItem { text: "Headphones"; onTriggered: button.picked = text }
            }
        }
    }

    Component {
        id: flip

        Toggle {
            property int flips: 0

            label: "Launch at login"
            onToggled: ++flips
        }
    }

    Component {
        id: name

        Label {
            width: 200
            text: "First\nsecond\u2028third"
        }
    }

    Component {
        id: paragraph

        Paragraph {
            width: 80
            text: "What is longer than a line goes on in the next one."
        }
    }

    Component {
        id: emptyMenu

        MenuButton {
            width: 60
            height: 24
            text: "Nothing"
            menu: DropMenu {}
        }
    }

    TestCase {
        name: "Components"
        when: windowShown

        function test_aTagWithASecondaryAccentIsNeutral() {
            verify(createTemporaryObject(tag, scene, { accent: Tokens.textSecondary }).neutral);
            verify(createTemporaryObject(tag, scene, { accent: Tokens.textTertiary }).neutral);
            verify(!createTemporaryObject(tag, scene, { accent: Tokens.brandCoral }).neutral);
        }

        function test_aNameIsOneLineWhateverItsOwnerHasPutIntoIt() {
            const label = createTemporaryObject(name, scene);
            compare(label.lineCount, 1);
            compare(label.height, createTemporaryObject(name, scene, { text: "Plain" }).height);
        }

        function test_aParagraphHasAsManyLinesAsItNeeds() {
            verify(createTemporaryObject(paragraph, scene).lineCount > 1);
        }

        function test_capitalsKeepTheNameReadable() {
            const label = createTemporaryObject(caps, scene);
            compare(label.Accessible.name, "Now playing");
            compare(label.font.capitalization, Font.AllUppercase);
            fuzzyCompare(label.font.letterSpacing, 0.8, 0.01);
        }

        function test_aRingTakesProgressBeyondOne() {
            const pictureAt = progress => {
                const made = createTemporaryObject(ring, scene, { progress });
                verify(waitForRendering(made));
                const picture = grabImage(made);
                made.destroy();
                return picture;
            };
            const full = pictureAt(1);
            verify(!pictureAt(0.6).equals(full));
            verify(pictureAt(1.6).equals(full));
        }

        function test_buttonsAnswerToMouseAndKeys_data() {
            return [
                { tag: "icon", component: iconButton, name: "Quit quillmere" },
                { tag: "ghost", component: ghostButton, name: "Cancel" },
                { tag: "primary", component: primaryButton, name: "Continue" },
            ];
        }

        function test_buttonsAnswerToMouseAndKeys(data) {
            const button = createTemporaryObject(data.component, scene);
            compare(button.Accessible.role, Accessible.Button);
            compare(button.Accessible.name, data.name);
            button.forceActiveFocus(Qt.TabFocusReason);
            verify(button.visualFocus);
            keyClick(Qt.Key_Space);
            compare(button.clicks, 1);
            mouseClick(button);
            compare(button.clicks, 2);
            keyClick(Qt.Key_Return);
            compare(button.clicks, 3);
            button.Accessible.pressAction();
            compare(button.clicks, 4);
        }

        function test_anIconButtonIsTwentyFourSquare() {
            const button = createTemporaryObject(iconButton, scene);
            compare(button.width, 24);
            compare(button.height, 24);
        }

        function test_aPressedPrimaryButtonShrinksALittle() {
            const button = createTemporaryObject(primaryButton, scene);
            mousePress(button);
            tryCompare(button, "scale", 0.98);
            mouseRelease(button);
            tryCompare(button, "scale", 1);
        }

        function test_marksTellTheirNames() {
            compare(createTemporaryObject(mark, scene).Accessible.name, "quillmere");
            compare(createTemporaryObject(shush, scene).Accessible.name, "Whisper Mode");
        }

        function test_theWordmarkKeepsItsProportions() {
            const small = createTemporaryObject(mark, scene);
            const large = createTemporaryObject(mark, scene, { height: 40 });
            verify(small.implicitWidth > small.height);
            fuzzyCompare(large.implicitWidth, 2 * small.implicitWidth, 2);
        }

        function test_aSurfaceIsAsHighAsItsContentAndPadding() {
            compare(createTemporaryObject(card, scene).implicitHeight, 72);
        }

        function test_aMenuOpensByKeyAndPicksByKey() {
            const button = createTemporaryObject(deviceMenu, scene);
            button.forceActiveFocus(Qt.TabFocusReason);
            verify(!button.open);
            keyClick(Qt.Key_Space);
            tryVerify(() => button.open);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(button.picked, "Headphones");
            tryVerify(() => !button.open);
        }

        function test_aMenuWithoutEntriesDoesNotOpen() {
            const button = createTemporaryObject(emptyMenu, scene);
            mouseClick(button);
            compare(button.open, false);
        }

        function test_aMenuClosesOnEscape() {
            const button = createTemporaryObject(deviceMenu, scene);
            mouseClick(button);
            tryVerify(() => button.open);
            keyClick(Qt.Key_Escape);
            tryVerify(() => !button.open);
            compare(button.picked, "");
        }

        function test_aToggleFlipsByMouseAndKey() {
            const toggle = createTemporaryObject(flip, scene);
            compare(toggle.Accessible.name, "Launch at login");
            mouseClick(toggle);
            verify(toggle.checked);
            toggle.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            verify(!toggle.checked);
            compare(toggle.flips, 2);
        }
    }
}
