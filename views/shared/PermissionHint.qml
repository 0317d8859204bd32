// What to do about a permission whose settings could not be opened.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Paragraph {
    id: root

    required property PermissionPresenter permission

    objectName: "hint"
    visible: text.length > 0
    text: permission.hint
    font: Tokens.caption1
    color: Tokens.brandAmber

    Accessible.role: Accessible.AlertMessage
}
