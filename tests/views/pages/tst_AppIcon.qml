// An application's icon, and what stands there until it has come.
import QtQuick
import QtTest
import Quillmere.Design
import Quillmere.Views
import Quillmere.Test

Item {
    id: scene

    width: 100
    height: 100

    Component {
        id: maker

        AppIcon {
            side: 38
        }
    }

    TestCase {
        name: "AppIcon"
        when: windowShown

        function make(source) { return createTemporaryObject(maker, scene, {source: source}); }
        function tile(icon) { return findChild(icon, "tile"); }
        function picture(icon) { return findChild(icon, "picture"); }

        function test_tileStandsThereUntilTheIconHasCome() {
            const icon = make(Forms.iconSource("org.example.pictured"));
            compare(picture(icon).status, Image.Loading);
            compare(icon.missing, true);
            compare([tile(icon).visible, picture(icon).visible], [true, false]);
            tryCompare(picture(icon), "status", Image.Ready);
            compare(icon.missing, false);
            compare([tile(icon).visible, picture(icon).visible], [false, true]);
            compare(picture(icon).width, 38);
        }

        function test_tileStaysWhereThereIsNoIcon() {
            const icon = make(Forms.iconSource("org.example.nothing"));
            tryCompare(picture(icon), "status", Image.Ready);
            compare(icon.missing, true);
            compare([tile(icon).visible, picture(icon).visible], [true, false]);
            verify(Qt.colorEqual(tile(icon).color, Tokens.alpha(Tokens.brandSage, 0.14)));
        }

        function test_tileStandsThereWithoutASource() {
            const icon = make("");
            compare([tile(icon).visible, picture(icon).visible], [true, false]);
        }
    }
}
