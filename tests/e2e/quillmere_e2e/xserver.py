"""What no tool says to an X server, or hears from it."""

import ctypes
import os
import struct

PROPERTY_CHANGE, CLIENT_MESSAGE = 0x400000, 33
EVENT_MASK = 2048
WINDOW = 33


class Cookie(ctypes.Structure):
    _fields_ = [("sequence", ctypes.c_uint)]


class Screens(ctypes.Structure):
    _fields_ = [("data", ctypes.POINTER(ctypes.c_uint32)), ("rest", ctypes.c_int), ("index", ctypes.c_int)]


class XServer:
    """A connection of its own."""

    def __init__(self):
        self.xcb = ctypes.CDLL("libxcb.so.1")
        self.libc = ctypes.CDLL(None)
        results = {"xcb_connect": ctypes.c_void_p, "xcb_get_setup": ctypes.c_void_p,
                   "xcb_setup_roots_iterator": Screens, "xcb_poll_for_event": ctypes.POINTER(ctypes.c_ubyte),
                   "xcb_intern_atom": Cookie, "xcb_intern_atom_reply": ctypes.POINTER(ctypes.c_ubyte),
                   "xcb_change_window_attributes": Cookie, "xcb_change_property": Cookie}
        for name, result in results.items():
            getattr(self.xcb, name).restype = result
        self.connection = ctypes.c_void_p(self.xcb.xcb_connect(os.environ["DISPLAY"].encode(), None))
        setup = ctypes.c_void_p(self.xcb.xcb_get_setup(self.connection))
        self.root = self.xcb.xcb_setup_roots_iterator(setup).data[0]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.xcb.xcb_disconnect(self.connection)

    def take(self, pointer):
        """The first 32 bytes of something that the library leaves to its caller."""
        raw = bytes(pointer[:32])
        self.libc.free(ctypes.cast(pointer, ctypes.c_void_p))
        return raw

    def atom(self, name):
        asked = self.xcb.xcb_intern_atom(self.connection, 0, len(name), name.encode())
        return struct.unpack_from("=I", self.take(self.xcb.xcb_intern_atom_reply(self.connection, asked, None)), 8)[0]

    def name_window(self, place, name, window):
        """Sets a property that names a window; the place 0 is the root."""
        value = (ctypes.c_uint32 * 1)(window)
        self.xcb.xcb_change_property(self.connection, 0, place or self.root, self.atom(name), WINDOW, 32, 1, value)
        self.xcb.xcb_flush(self.connection)


class Launches(XServer):
    """What programs tell the desktop of launches: messages to everybody, in pieces of 20 bytes."""

    def __init__(self):
        super().__init__()
        mask = (ctypes.c_uint32 * 1)(PROPERTY_CHANGE)
        self.xcb.xcb_change_window_attributes(self.connection, self.root, EVENT_MASK, mask)
        self.xcb.xcb_flush(self.connection)
        self.pieces = {}
        self.told = []

    def messages(self):
        """All that has been told so far."""
        while event := self.xcb.xcb_poll_for_event(self.connection):
            raw = self.take(event)
            if raw[0] & 0x7F != CLIENT_MESSAGE or raw[1] != 8:
                continue
            sender, = struct.unpack_from("=I", raw, 4)
            text = self.pieces.pop(sender, b"") + raw[12:]
            if b"\0" in text:
                self.told.append(text.split(b"\0")[0].decode())
            else:
                self.pieces[sender] = text
        return self.told
