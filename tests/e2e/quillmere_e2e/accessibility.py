"""The window as a screen reader sees it: elements by role and name, values, presses."""

import pyatspi

from .waiting import wait_for

SLIDER, BUTTON, LABEL, CHECK_BOX, MENU_ITEM = (pyatspi.ROLE_SLIDER, pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_LABEL,
                                               pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_MENU_ITEM)

# Qt 6.4 tells a button that was given another role as a button all the same when assistive technology comes late.
PRESSABLE = (BUTTON, CHECK_BOX, pyatspi.ROLE_PAGE_TAB, pyatspi.ROLE_LIST_ITEM, pyatspi.ROLE_RADIO_BUTTON)


def applications(name=None):
    desktop = pyatspi.Registry.getDesktop(0)
    found = []
    for index in range(desktop.childCount):
        try:
            application = desktop.getChildAtIndex(index)
            if application is not None and (name is None or application.name == name):
                found.append(application)
        except Exception:  # The bus gives errors of many kinds for an application that is just ending.
            continue
    return found


def walk(element):
    """The element and everything below it; what vanishes meanwhile is skipped."""
    try:
        yield element
        children = [element.getChildAtIndex(index) for index in range(element.childCount)]
    except Exception:
        return
    for child in children:
        if child is not None:
            yield from walk(child)


def showing(element):
    try:
        return element.getState().contains(pyatspi.STATE_SHOWING)
    except Exception:
        return False


def selected(element):
    try:
        return element.getState().contains(pyatspi.STATE_SELECTED)
    except Exception:
        return False


def find_all(application, role=None, name=None, visible=True):
    """Elements of an application (by its name) with a role, and with a name (exact, or a predicate)."""
    matches = name if callable(name) else (lambda text: name is None or text == name)
    found = []
    for root in applications(application):
        for element in walk(root):
            try:
                if ((role is None or element.getRole() == role) and matches(element.name)
                        and (not visible or showing(element))):
                    found.append(element)
            except Exception:
                continue
    return found


def find(application, role=None, name=None, seconds=5.0, visible=True):
    return wait_for(lambda: find_all(application, role, name, visible),
                    f"an element with role {role} and name {name!r} in {application}", seconds)[0]


def find_pressable(application, name, seconds=5.0, visible=True):
    """What has this name and can be pressed, whatever the screen reader calls it."""
    def found():
        return [each for each in find_all(application, name=name, visible=visible) if each.getRole() in PRESSABLE]

    return wait_for(found, f"{name!r} can be pressed in {application}", seconds)[0]


def value(element):
    return element.queryValue().currentValue


def fraction(element):
    """Where a slider stands between its ends, 0 to 1."""
    slider = element.queryValue()
    return (slider.currentValue - slider.minimumValue) / (slider.maximumValue - slider.minimumValue)


def set_value(element, wanted):
    """Sets a slider and waits until it shows the value."""
    element.queryValue().currentValue = wanted
    wait_for(lambda: abs(value(element) - wanted) < 0.005, f"{element.name} shows {wanted}")


def set_fraction(element, fraction):
    """The same as a part of the slider's range: 0.5 is the middle, whatever the scale."""
    scale = element.queryValue()
    set_value(element, scale.minimumValue + fraction * (scale.maximumValue - scale.minimumValue))


def press(element):
    """Does what a click would do."""
    action = element.queryAction()
    names = [action.getName(index) for index in range(action.nActions)]
    for preferred in ("Press", "Toggle", "SetFocus"):
        if preferred in names:
            action.doAction(names.index(preferred))
            return
    raise AssertionError(f"{element.name} can't be pressed; its actions: {names}")


def tree_text(application, visible=True):
    """The tree as indented text, for a failed test's message."""
    lines = []

    def add(element, depth):
        try:
            if not visible or showing(element):
                lines.append(f"{'  ' * depth}{element.getRoleName()} {element.name!r}")
            for index in range(element.childCount):
                child = element.getChildAtIndex(index)
                if child is not None:
                    add(child, depth + 1)
        except Exception:
            return

    for root in applications(application):
        add(root, 0)
    return "\n".join(lines)
