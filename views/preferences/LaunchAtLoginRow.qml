// Whether the program starts with the session.
import QtQuick
import Quillmere.Views

ToggleRow {
    id: root

    required property LaunchAtLoginPresenter launchAtLogin

    title: qsTr("Launch at login")
    help: qsTr("quillmere opens silently into the menu bar when you log in.")
    on: launchAtLogin.on
    onToggled: (on) => launchAtLogin.on = on
}
