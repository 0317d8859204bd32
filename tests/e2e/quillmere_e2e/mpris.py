"""A media player that is nothing but its bus interface: it says that it plays, does what it is told, and remembers it."""

import threading

from gi.repository import Gio, GLib

INTERFACE = """<node>
  <interface name="org.mpris.MediaPlayer2">
    <property name="Identity" type="s" access="read"/>
  </interface>
  <interface name="org.mpris.MediaPlayer2.Player">
    <method name="Play"/><method name="Pause"/><method name="PlayPause"/><method name="Stop"/>
    <method name="Next"/><method name="Previous"/>
    <property name="PlaybackStatus" type="s" access="read"/>
    <property name="Metadata" type="a{sv}" access="read"/>
    <property name="CanPlay" type="b" access="read"/>
    <property name="CanPause" type="b" access="read"/>
    <property name="CanControl" type="b" access="read"/>
  </interface>
</node>"""
PATH = "/org/mpris/MediaPlayer2"
PLAYER = "org.mpris.MediaPlayer2.Player"


class BusPlayer:
    """Sound doesn't depend on it, so a daemon that restarts leaves it alone."""

    def __init__(self, name="quillmereTest", title="A Steady Song"):
        self.name, self.title = name, title
        self.calls = []
        self.status = "Playing"
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._ready = threading.Event()
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._bus = None

    def _run(self):
        self._context.push_thread_default()
        address = Gio.dbus_address_get_for_bus_sync(Gio.BusType.SESSION)
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._bus = Gio.DBusConnection.new_for_address_sync(address, flags)
        for interface in Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces:
            self._bus.register_object(PATH, interface, self._call, self._get, None)
        self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                            GLib.Variant("(su)", (f"org.mpris.MediaPlayer2.{self.name}", 0)), None,
                            Gio.DBusCallFlags.NONE, -1)
        self._ready.set()
        self._loop.run()
        self._bus.close_sync()

    def _get(self, _bus, _sender, _path, _interface, name):
        return {"Identity": GLib.Variant("s", "Bus Player"), "PlaybackStatus": GLib.Variant("s", self.status),
                "Metadata": GLib.Variant("a{sv}", {"xesam:title": GLib.Variant("s", self.title)})}.get(
                    name, GLib.Variant("b", True))

    def _call(self, _bus, _sender, _path, _interface, method, _parameters, invocation):
        self.calls.append(method)
        invocation.return_value(None)
        pauses = method in ("Pause", "Stop") or (method == "PlayPause" and self.status == "Playing")
        if method in ("Play", "Pause", "PlayPause", "Stop"):
            self.set_status("Paused" if pauses else "Playing")

    def set_status(self, status):
        self.status = status
        self._bus.emit_signal(None, PATH, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                              GLib.Variant("(sa{sv}as)", (PLAYER, {"PlaybackStatus": GLib.Variant("s", status)}, [])))

    def __enter__(self):
        self._thread.start()
        if not self._ready.wait(10):
            raise AssertionError("the player is not on the bus")
        return self

    def __exit__(self, *_):
        self._context.invoke_full(GLib.PRIORITY_DEFAULT, self._loop.quit)
        self._thread.join()
