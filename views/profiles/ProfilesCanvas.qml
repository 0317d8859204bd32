// The page of the profiles.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Flickable {
    id: root

    required property ProfilesCanvasPresenter presenter

    readonly property real widest: 480

    contentHeight: card.height + 2 * Tokens.spacing.xl
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    ProfilesCard {
        id: card

        x: Tokens.spacing.xxl
        y: Tokens.spacing.xl
        width: Math.min(root.widest, root.width - 2 * x)
        list: root.presenter.list
    }
}
