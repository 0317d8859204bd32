// The fading edges of a page of the main window, on the window's backdrop.
import QtQuick
import Quillmere.Design
import Quillmere.Views

ScrollFade {
    // The backdrop is lightest at its top.
    readonly property real backdropLight: 0.07

    topGround: Tokens.lightened(Tokens.canvasBG, Tokens.brandSage, backdropLight)
}
