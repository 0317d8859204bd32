#!/usr/bin/python3
"""What is seen of the program: how soon its icon, list and popover are there, what they cost, and what stays when they
are closed. Beside it in the same session: a bare tray program, a bare Qt Quick window, and pavucontrol."""

import contextlib
import json
import os
import re
import statistics
import subprocess
import threading
import time
from pathlib import Path

from gi.repository import Gio, GLib

from quillmere_e2e import settings, tray
from quillmere_e2e.players import Player
from quillmere_e2e.processes import family, parent_of, processor_share, resident_mib
from quillmere_e2e.waiting import wait_for

BUILD = Path(os.environ["QUILLMERE_BUILD"])
LOGS = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs"
ROWS = 10
SECONDS = 10
SETTLED_SHARE = 5.0
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
        """Started up and no longer busy with that."""
        wait_for(lambda: self.process.poll() is None and share_of(self, 1) < SETTLED_SHARE,
                 f"{self.process.args[0]} has come to rest", 60)
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


def measure_start(panel, screen, bare_window):
    """The ordinary start, which opens the main window too."""
    with Program(str(BUILD / "bench/peer_tray")) as peer:
        peer_item = millis(panel.appeared(peer)[0], peer.started)
    with ours() as program:
        item = millis(panel.appeared(program)[0], program.started)
        listed = wait_for(lambda: [when for when, match in program.lines(r"(\d+) applications listed")
                                   if int(match[1]) >= ROWS], "the list stands", 20)[0]
        window = millis(screen.first("drawn", program.pid, program.started), program.started)
    figure("start to the status item", item, "ms", QUICK, bare_window, "value <= 400 and ratio <= 1.5")
    figure("the same beside a tray icon alone", item, "ms", TRAY, peer_item)
    figure("start to the first list", millis(listed, program.started), "ms", QUICK, bare_window)
    figure("start to the main window's first picture", window, "ms", QUICK, bare_window)


def share_mib(pid):
    """Resident memory with each page counted in parts where several processes have it."""
    rollup = Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii")
    return int(re.search(r"^Pss:\s*(\d+)", rollup, re.M)[1]) / 1024


def tell_memory(what, program, name, peer, target=None):
    for label, measure, promised in (("", resident_mib, target), (", own share", share_mib, None)):
        figure(f"memory, {what}{label}", sum(map(measure, program.everyone())), "MiB", name, measure(peer.pid), promised)


def measure_life(panel, screen, bare_window):
    """Started into the tray; the popover opened, closed and dropped; opened again."""
    with Program(str(BUILD / "bench/peer_tray")) as peer, Program("pavucontrol") as mixer, \
            ours("--background") as program:
        item = panel.appeared(program)[1]
        for each in (peer, mixer, program):
            each.settled()
        tell_memory("nothing ever opened", program, TRAY, peer, "ratio < 1.3")
        tell_memory("nothing ever opened, beside a mixer", program, MIXER, mixer)

        # Both start a process that loads Qt Quick; the popover has its engine, ten rows and icons besides.
        figure("click to the popover's first picture", click(item, program, screen), "ms", QUICK, bare_window,
               "value <= 150 and ratio <= 2.5")
        wait_for(lambda: program.lines("frame ([0-9]+) us"), "frames are told", 10)
        ours_alone = program.everyone()
        share = processor_share([*ours_alone, mixer.pid], SECONDS)
        since = time.monotonic() - SECONDS
        frames = [int(match[1]) / 1000 for when, match in program.lines("frame ([0-9]+) us") if when >= since]
        figure(f"popover with {ROWS} sounding rows", sum(share[pid] for pid in ours_alone), "% of a core", MIXER,
               share[mixer.pid])
        figure(f"frame of the popover with {ROWS} sounding rows", statistics.median(frames), "ms", None, None,
               "value < 16")
        figure(f"pace of the popover with {ROWS} sounding rows", len(frames) / SECONDS, "frames/s")
        tell_memory("popover open", program, MIXER, mixer)

        close_popover(item, program)
        wait_for(lambda: program.everyone() == [program.pid], "the process that drew the popover has gone", 60)
        program.settled()
        tell_memory("popover gone", program, TRAY, peer, "ratio < 1.3")
        figure("click to the popover's first picture, a second time", click(item, program, screen), "ms", QUICK,
               bare_window, "value <= 150 and ratio <= 2.5")
        close_popover(item, program)
        # The click that closes is told apart from the one that opens again.
        figure("click to the popover's first picture, just closed", click(item, program, screen), "ms", QUICK,
               bare_window)


def main():
    with contextlib.ExitStack() as stack:
        panel, screen = stack.enter_context(Tray()), stack.enter_context(Screen())
        for number in range(ROWS):
            stack.enter_context(Player("pw-play", f"Tone {number}", 300 + 100 * number, 0.02))
        # The first start of all reads its libraries from the disk; what counts is the second.
        quick_window(screen)
        bare_window = quick_window(screen)
        measure_start(panel, screen, bare_window)
        measure_life(panel, screen, bare_window)


if __name__ == "__main__":
    main()
