// The page of the focus block.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Flickable {
    id: root

    required property FocusCanvasPresenter presenter

    readonly property real widest: 480

    contentHeight: card.height + 2 * Tokens.spacing.xl
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    FocusCard {
        id: card

        x: Tokens.spacing.xxl
        y: Tokens.spacing.xl
        width: Math.min(root.widest, root.width - 2 * x)
        focusBlock: root.presenter.focus
    }
}
