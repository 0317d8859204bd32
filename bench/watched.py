"""What all session benchmarks share: how a figure is told, and programs whose start, windows and lines are watched."""

import contextlib
import json
import os
import re
import subprocess
import threading
import time
from pathlib import Path

from gi.repository import Gio, GLib

from quillmere_e2e import settings, tray
from quillmere_e2e.processes import family, parent_of, processor_share
from quillmere_e2e.waiting import wait_for

BUILD = Path(os.environ["QUILLMERE_BUILD"])
LOGS = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs"
SETTLED_SHARE = 5.0
STEADY_SECONDS = 3
TRAY, QUICK, MIXER = "bare Qt tray program", "bare Qt Quick window", "pavucontrol"
# Nobody reads the screen aloud here; the tests' session says otherwise, and a tree for it has its price.
ENVIRONMENT = {name: value for name, value in os.environ.items()
               if name not in ("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "QT_ACCESSIBILITY")}
ENVIRONMENT |= {"QT_QUICK_BACKEND": os.environ.get("QUILLMERE_BENCH_QUICK_BACKEND", "software"),
                "QT_LOGGING_RULES": "app.quillmere.frames.debug=true",
                "QT_MESSAGE_PATTERN": "%{category} %{message}"}


def figure(name, value, unit, peer=None, peer_value=None, target=None):
    print(json.dumps({"name": name, "value": value, "unit": unit, "peer": peer, "peerValue": peer_value,
                      "target": target}), flush=True)


class Program:
    """A started program whose lines are kept, each with the moment at which it came."""

    def __init__(self, *command):
        self.kept = []
        self.log = open(LOGS / f"face-{Path(command[0]).name}-{time.monotonic_ns()}.log", "w", encoding="utf-8")
        self.started = time.monotonic()
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, env=ENVIRONMENT, text=True, errors="replace")
        self.pid = self.process.pid
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        for line in self.process.stdout:
            self.kept.append((time.monotonic(), line.rstrip()))
            self.log.write(line)

    def lines(self, pattern):
        """The lines that end so: (seconds of the monotonic clock, match)."""
        return [(when, match) for when, line in list(self.kept) if (match := re.search(rf"{pattern}$", line))]

    def everyone(self):
        """The process, and the one that draws its windows while there is one."""
        return family(self.pid)

    def settled(self):
        """Started up and no longer busy with that: at rest, or, where it draws levels all the time, at a steady pace."""
        def is_settled():
            if self.process.poll() is not None:
                return False
            if share_of(self, 1) < SETTLED_SHARE:
                return True
            before, now = (share_of(self, STEADY_SECONDS) for _ in range(2))
            return abs(now - before) < before / 10

        wait_for(is_settled, f"{self.process.args[0]} has come to rest", 60)
        return self

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()
        self.reader.join()
        self.process.stdout.close()
        self.log.close()


def share_of(program, seconds):
    """Percent of a core, of all its processes."""
    return sum(processor_share(program.everyone(), seconds).values())


class Screen:
    """When windows are mapped and drawn, by process."""

    def __enter__(self):
        self.probe = subprocess.Popen([BUILD / "bench/first_frame_probe"], stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE, text=True)
        if self.probe.stdout.readline() != "ready\n":
            raise AssertionError("the probe has no display")
        self.seen = []
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()
        return self

    def _read(self):
        for line in self.probe.stdout:
            what, pid, nanoseconds = line.split()
            self.seen.append((what, {int(pid), parent_of(pid)}, int(nanoseconds) / 1e9))

    def first(self, what, pid, since):
        """The moment of the first 'mapped' or 'drawn' of a process, or of a child of its own, after `since`."""
        return wait_for(lambda: [when for word, processes, when in list(self.seen)
                                 if word == what and pid in processes and when >= since],
                        f"a window of process {pid} is {what}", 30)[0]

    def __exit__(self, *_):
        self.probe.stdin.close()
        self.probe.wait()
        self.reader.join()
        self.probe.stdout.close()


class Tray:
    """When status items appear, as every panel is told."""

    def __enter__(self):
        self.registered = []
        self.context = GLib.MainContext.new()
        self.loop = GLib.MainLoop.new(self.context, False)
        ready = threading.Event()

        def listen():
            self.context.push_thread_default()
            address = Gio.dbus_address_get_for_bus_sync(Gio.BusType.SESSION)
            flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
            self.bus = Gio.DBusConnection.new_for_address_sync(address, flags)
            self.bus.signal_subscribe(None, tray.WATCHER[2], "StatusNotifierItemRegistered", tray.WATCHER[1], None,
                                      Gio.DBusSignalFlags.NONE, self._note)
            # The answer to anything asked now means that the wish above is in force.
            self.bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId", None, None,
                               Gio.DBusCallFlags.NONE, -1)
            ready.set()
            self.loop.run()

        self.thread = threading.Thread(target=listen, daemon=True)
        self.thread.start()
        ready.wait()
        return self

    def _note(self, _bus, _sender, _path, _interface, _signal, arguments):
        self.registered.append((time.monotonic(), arguments.unpack()[0]))

    def appeared(self, program):
        """The moment at which the program's item was told, and the item."""

        def own():
            for when, address in list(self.registered):
                item = tray.StatusItem(address)
                with contextlib.suppress(GLib.Error):
                    if tray.process_of(item.owner) == program.pid:
                        return when, item
            return None

        return wait_for(own, f"the status item of {program.process.args[0]} is in the tray", 30)

    def __exit__(self, *_):
        self.loop.quit()
        self.thread.join()


def millis(later, earlier):
    return 1000 * (later - earlier)


def visible_windows(program):
    found = []
    for pid in program.everyone():
        search = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(pid)], check=False,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        found += search.stdout.split()
    return found


def ours(*arguments):
    settings.complete_first_run()
    return Program(str(BUILD / "app/quillmere"), *arguments)


def click(item, program, screen):
    """Opens the popover; milliseconds to its first picture."""
    before = time.monotonic()
    item.click()
    return millis(screen.first("drawn", program.pid, before), before)


def close_popover(item, program):
    item.click()
    wait_for(lambda: not visible_windows(program), "the popover is closed", 10)


def quick_window(screen):
    """Milliseconds from the start of a bare Qt Quick program to its first picture."""
    with Program(str(BUILD / "bench/peer_quick")) as peer:
        return millis(screen.first("drawn", peer.pid, peer.started), peer.started)


def share_mib(pid):
    """Resident memory with each page counted in parts where several processes have it."""
    rollup = Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii")
    return int(re.search(r"^Pss:\s*(\d+)", rollup, re.M)[1]) / 1024
