// The page of the preferences.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Flickable {
    id: root

    required property PreferencesCanvasPresenter presenter

    readonly property real widest: 480

    contentHeight: card.height + 2 * Tokens.spacing.xl
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    Card {
        id: card

        x: Tokens.spacing.xxl
        y: Tokens.spacing.xl
        width: Math.min(root.widest, root.width - 2 * x)
        title: qsTr("Settings")

        SettingRow {
            width: parent.width
            title: qsTr("Scroll over an app row to adjust its volume")
            help: qsTr("Use the trackpad or mouse wheel over any app row to nudge its gain by 0.5%.")
            on: root.presenter.scrollAdjusts
            onToggled: (on) => root.presenter.scrollAdjusts = on
        }

        Hairline {
            width: parent.width
        }

        SettingRow {
            width: parent.width
            title: qsTr("Show duck banner during calls")
            help: qsTr("Slim banner appears at the top of the menu-bar widget while music is auto-ducked.")
            on: root.presenter.showsDuckBanner
            onToggled: (on) => root.presenter.showsDuckBanner = on
        }

        Hairline {
            width: parent.width
        }

        SettingRow {
            width: parent.width
            title: qsTr("Pause music when headphones disconnect")
            help: qsTr("When AirPods or wired headphones drop, quillmere sends a global pause to all media-playing apps.")
            on: root.presenter.pausesOnDisconnect
            onToggled: (on) => root.presenter.pausesOnDisconnect = on
        }
    }
}
