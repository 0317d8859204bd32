// A shadow of one of the elevations under a rounded rectangle. Fill the card with it, below everything else.
import QtQuick
import Quillmere.Design

SoftShadow {
    property shadowStyle elevation: Tokens.elevation.resting

    color: elevation.color
    blurRadius: elevation.radius
    offsetDown: elevation.offsetDown
}
