// The profiles page: all profiles at the left, the editor of the selected one at the right.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property ProfilesCanvasPresenter presenter

    // A page that is forced to be narrower than it asks for leaves the editor what it needs.
    readonly property real leastList: 160
    readonly property real leastEditor: 460
    readonly property real listWidth: Math.min(280, Math.max(leastList, width - leastEditor))

    ProfileList {
        id: list

        objectName: "profiles"
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        width: root.listWidth
        presenter: root.presenter
        footHeight: adder.height
    }

    Item {
        anchors.fill: list
        clip: true

        AddProfileTile {
            id: adder

            x: list.leftMargin
            y: list.footY
            width: list.tileWidth
            onClicked: root.presenter.create()
            onActiveFocusChanged: if (activeFocus) list.positionViewAtEnd()
        }
    }

    ScrollFade {
        list: list
        topGround: Tokens.lightened(Tokens.canvasBG, Tokens.brandSage, backdropLight)

        // The window's backdrop is lightest there.
        readonly property real backdropLight: 0.07
    }

    ScrollThumb {
        list: list
    }

    Rectangle {
        id: line

        anchors.left: list.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: 1
        color: Tokens.hairline
    }

    ProfileEditor {
        objectName: "editor"
        anchors.left: line.right
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        visible: root.presenter.anySelected
        editor: root.presenter.editor
    }

    Column {
        objectName: "nothingSelected"
        anchors.centerIn: parent
        anchors.horizontalCenterOffset: root.listWidth / 2
        width: Math.min(implicitWidth, parent.width - root.listWidth - 2 * Tokens.spacing.xl)
        visible: !root.presenter.anySelected
        spacing: Tokens.spacing.s

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "rectangle.stack"
            pointSize: 28
            weight: Font.Light
            color: Tokens.textTertiary
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Select a profile to edit")
            font: Tokens.cardTitle
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("or click + New profile to capture the current mixer.")
            color: Tokens.textSecondary
        }
    }
}
