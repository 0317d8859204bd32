"""The status item as a panel sees it: items on the bus, clicks, the menu."""

from gi.repository import Gio, GLib

from .waiting import wait_for

WATCHER = ("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher")
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"


def bus():
    return Gio.bus_get_sync(Gio.BusType.SESSION)


def call(owner, path, interface, method, arguments=None, reply=None):
    return bus().call_sync(owner, path, interface, method, arguments, GLib.VariantType(reply) if reply else None,
                           Gio.DBusCallFlags.NONE, 5000, None).unpack()


def get(owner, path, interface, name):
    return call(owner, path, "org.freedesktop.DBus.Properties", "Get", GLib.Variant("(ss)", (interface, name)),
                "(v)")[0]


def process_of(owner):
    return call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                GLib.Variant("(s)", (owner,)), "(u)")[0]


class StatusItem:
    def __init__(self, address):
        owner, _, path = address.partition("/")
        self.owner, self.path = owner, "/" + path

    def property(self, name):
        return get(self.owner, self.path, ITEM, name)

    def click(self, x=1180, y=20, token=None):
        """A left click at a place on the screen, with the token that the desktop gives for what it launches."""
        if token is not None:
            call(self.owner, self.path, ITEM, "ProvideXdgActivationToken", GLib.Variant("(s)", (token,)))
        call(self.owner, self.path, ITEM, "Activate", GLib.Variant("(ii)", (x, y)))

    def context_click(self, x=1180, y=20):
        call(self.owner, self.path, ITEM, "ContextMenu", GLib.Variant("(ii)", (x, y)))

    def scroll(self, delta, orientation="vertical"):
        call(self.owner, self.path, ITEM, "Scroll", GLib.Variant("(is)", (delta, orientation)))

    def menu(self):
        """The menu's visible entries: (id, label, enabled, checked, children)."""
        path = self.property("Menu")
        try:
            call(self.owner, path, MENU, "AboutToShow", GLib.Variant("(i)", (0,)), "(b)")
        except GLib.Error:
            pass  # Some items have nothing to prepare.
        _, layout = call(self.owner, path, MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])), "(u(ia{sv}av))")

        def entries(node):
            return [(number, properties.get("label", ""), properties.get("enabled", True),
                     properties.get("toggle-state", 0) == 1, entries((number, properties, children)))
                    for number, properties, children in node[2]
                    if properties.get("visible", True) and properties.get("type") != "separator"]

        return entries(layout)

    def choose(self, number):
        """A click on an entry of the menu."""
        path = self.property("Menu")
        call(self.owner, path, MENU, "Event", GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("s", ""), 0)))


def items():
    return [StatusItem(address) for address in get(*WATCHER, "RegisteredStatusNotifierItems")]


def wait_for_item(pid=None, seconds=10.0):
    """The status item of a process."""

    def own():
        return [item for item in items() if pid is None or process_of(item.owner) == pid]

    return wait_for(own, "the status item is in the tray", seconds)[0]
