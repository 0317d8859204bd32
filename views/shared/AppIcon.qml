// An application's icon, or a tile of ours where it has none.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property url source
    property real side: 22
    property real tileSymbolSize: 11
    // As long as it isn't there too. A single pixel stands for no icon.
    readonly property bool missing: picture.status !== Image.Ready || picture.implicitWidth <= 1

    // The provider rounds its pictures by it.
    property real corner: side * 5 / 22
    property real tileOpacity: 0.14
    readonly property int pixels: Math.ceil(side * Screen.devicePixelRatio)

    implicitWidth: side
    implicitHeight: side

    Image {
        id: picture

        objectName: "picture"
        anchors.fill: parent
        source: String(root.source).length > 0 ? root.source + "?corner=" + root.corner / root.side : ""
        sourceSize.width: root.pixels
        sourceSize.height: root.pixels
        fillMode: Image.PreserveAspectFit
        visible: !root.missing
        Accessible.ignored: true
    }

    Rectangle {
        objectName: "tile"
        anchors.fill: parent
        visible: root.missing
        radius: root.corner
        color: Tokens.alpha(Tokens.brandSage, root.tileOpacity)

        Symbol {
            anchors.centerIn: parent
            name: "app.fill"
            pointSize: root.tileSymbolSize
            color: Tokens.brandSage
        }
    }
}
