"""A mouse and a keyboard for a Wayland compositor that has none: its protocols for virtual ones, spoken by hand."""

import array
import socket
import struct
import tempfile
import time

LEFT, RIGHT = 0x110, 0x111
KEYS = {"Escape": 1, "0": 11, "Tab": 15, "q": 16, "w": 17, "Return": 28, "comma": 51, "Down": 108}
CONTROL, CONTROL_MASK = 29, 4

DISPLAY, REGISTRY, SYNC, SEAT, POINTERS, KEYBOARDS, POINTER, KEYBOARD = range(1, 9)
WANTED = {"wl_seat": SEAT, "zwlr_virtual_pointer_manager_v1": POINTERS, "zwp_virtual_keyboard_manager_v1": KEYBOARDS}
KEYMAP = b"""xkb_keymap {
  xkb_keycodes { include "evdev+aliases(qwerty)" };
  xkb_types { include "complete" };
  xkb_compat { include "complete" };
  xkb_symbols { include "pc+us+inet(evdev)" };
};\0"""


def text(words):
    raw = words.encode() + b"\0"
    return struct.pack("=I", len(raw)) + raw + b"\0" * (-len(raw) % 4)


class WaylandInput:
    """Plugged in as long as it lives. The display is its socket's path; places are those of the output, in its logical pixels."""

    def __init__(self, display, width, height):
        self.extent = (width, height)
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(10)
        self.socket.connect(display)
        self.request(DISPLAY, 1, REGISTRY)
        self.request(DISPLAY, 0, SYNC)
        names = self.find_globals()
        for interface, number in WANTED.items():
            arguments = struct.pack("=I", names[interface]) + text(interface) + struct.pack("=II", 1, number)
            self.send(REGISTRY, 0, arguments)
        self.request(POINTERS, 0, SEAT, POINTER)
        self.request(KEYBOARDS, 0, SEAT, KEYBOARD)
        with tempfile.TemporaryFile() as keymap:
            keymap.write(KEYMAP)
            keymap.flush()
            self.send(KEYBOARD, 0, struct.pack("=II", 1, len(KEYMAP)), keymap.fileno())

    def send(self, target, opcode, arguments=b"", descriptor=None):
        message = struct.pack("=II", target, (8 + len(arguments)) << 16 | opcode) + arguments
        rights = [] if descriptor is None else [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [descriptor]))]
        self.socket.sendmsg([message], rights)

    def request(self, target, opcode, *numbers):
        self.send(target, opcode, struct.pack(f"={len(numbers)}I", *numbers))

    def find_globals(self):
        """The compositor's own numbers for what it has, by interface."""
        found = {}
        while True:
            target, head = struct.unpack("=II", self.receive(8))
            body = self.receive((head >> 16) - 8)
            if target == REGISTRY and head & 0xFFFF == 0:
                name, length = struct.unpack("=II", body[:8])
                found[body[8:8 + length - 1].decode()] = name
            elif target == SYNC:
                return found

    def receive(self, size):
        parts = b""
        while len(parts) < size:
            part = self.socket.recv(size - len(parts))
            assert part, "the compositor has closed the line"
            parts += part
        return parts

    @staticmethod
    def now():
        return int(time.monotonic() * 1000) & 0xFFFFFFFF

    def move(self, x, y):
        self.request(POINTER, 1, self.now(), x, y, *self.extent)
        self.request(POINTER, 4)

    def button(self, button, is_down):
        self.request(POINTER, 2, self.now(), button, int(is_down))
        self.request(POINTER, 4)

    def key(self, name, control=False):
        held = [CONTROL] if control else []
        for code in [*held, KEYS[name]]:
            self.request(KEYBOARD, 1, self.now(), code, 1)
            self.request(KEYBOARD, 2, CONTROL_MASK if control else 0, 0, 0, 0)
        for code in [KEYS[name], *held]:
            self.request(KEYBOARD, 1, self.now(), code, 0)
        self.request(KEYBOARD, 2, 0, 0, 0, 0)

    def close(self):
        self.socket.close()
