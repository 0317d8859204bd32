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
    readonly property bool hasNone: missing && (picture.status === Image.Ready || picture.status === Image.Error)
    // How often it was asked for again. An application may be heard before the desktop lists it: what has no icon is
    // asked for once more after the time in which new ones are found, and whenever the window is shown.
    property int attempt: 0
    property int secondAttemptAfter: 7000
    readonly property bool isShown: Window.visibility !== Window.Hidden

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
        source: String(root.source).length > 0 ? root.source + "?corner=" + root.corner / root.side
                                                   + (root.attempt > 0 ? "&attempt=" + root.attempt : "") : ""
        sourceSize.width: root.pixels
        sourceSize.height: root.pixels
        fillMode: Image.PreserveAspectFit
        visible: !root.missing
        Accessible.ignored: true
    }

    onSourceChanged: attempt = 0
    onIsShownChanged: if (isShown && hasNone)
        attempt += 1

    Timer {
        interval: root.secondAttemptAfter
        running: root.isShown && root.hasNone && root.attempt === 0
        onTriggered: root.attempt += 1
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
