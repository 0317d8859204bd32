// The page of the activity.
import QtQuick
import Quillmere.Design
import Quillmere.Views

Item {
    id: root

    required property ActivityCanvasPresenter presenter
}
