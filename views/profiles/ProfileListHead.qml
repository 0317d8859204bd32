// What stands over the tiles: the active profile, and a heading.
import QtQuick
import Quillmere.Design

Column {
    id: root

    required property bool anyActive
    required property string title
    required property string detail

    bottomPadding: Tokens.spacing.s
    spacing: Tokens.spacing.l

    ProfilesHero {
        width: parent.width
        anyActive: root.anyActive
        title: root.title
        detail: root.detail
    }

    SectionCaps {
        width: parent.width
        text: qsTr("All profiles")
        Accessible.role: Accessible.Heading
    }
}
