// An application's icon, or a tile of ours where it has none.
import QtQuick
import Quillmere.Design

Item {
    id: root

    required property url source
    property real side: 22
    property real tileSymbolSize: 11
    // A single pixel stands for no icon. While it is asked for again, what was so is so.
    readonly property bool missing: picture.status === Image.Loading ? wasMissing : picture.isNone
    property bool wasMissing: false
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

        anchors.fill: parent
        source: String(root.source).length > 0 ? root.source + "?corner=" + root.corner / root.side
                                                   + (root.attempt > 0 ? "&attempt=" + root.attempt : "") : ""
        sourceSize.width: root.pixels
        sourceSize.height: root.pixels
        fillMode: Image.PreserveAspectFit
        visible: !root.missing
        Accessible.ignored: true

        readonly property bool isNone: status !== Image.Ready || implicitWidth <= 1

        onStatusChanged: if (status !== Image.Loading)
            root.wasMissing = status !== Image.Ready || implicitWidth <= 1
    }

    onSourceChanged: {
        attempt = 0;
        wasMissing = false;
    }
    onIsShownChanged: if (isShown && wasMissing)
        attempt += 1

    Timer {
        interval: root.secondAttemptAfter
        running: root.isShown && root.wasMissing && root.attempt === 0
        onTriggered: root.attempt += 1
    }

    Rectangle {
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
