// A menu whose entries come from a presenter.
pragma ComponentBehavior: Bound

import QtQuick
import QtQml.Models
import Quillmere.Design
import Quillmere.Views

DropMenu {
    id: root

    required property MenuModel choices

    // The choice may take entries away, the chosen one among them: the menu closes first.
    function choose(row: int): void {
        root.dismiss();
        root.choices.trigger(row);
    }

    Instantiator {
        model: root.choices

        ChoiceItem {
            hasMarks: root.choices.anyChecked
            onTriggered: root.choose(index)
        }

        onObjectAdded: (index, object) => root.insertItem(index, object as ChoiceItem)
        onObjectRemoved: (index, object) => root.removeItem(object as ChoiceItem)
    }
}
