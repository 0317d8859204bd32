#!/usr/bin/python3
"""What the program costs while nothing is asked of it: twenty silent applications, beside pavucontrol in one session."""

import contextlib
import os
import subprocess
from pathlib import Path

from quillmere_e2e.players import Player
from quillmere_e2e.processes import family, processor_share, resident_mib
from quillmere_e2e.tones import tone_file
from quillmere_e2e.waiting import wait_for
from watched import figure

APPLICATIONS = 20
SETTLE_SHARE = 5.0
SECONDS = 15


def log_of(command):
    return Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / f"{Path(command[0]).name}.log"


@contextlib.contextmanager
def running(command):
    with open(log_of(command), "ab") as log:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log)
    try:
        yield process
    finally:
        process.terminate()
        process.wait()


def settled(process):
    """Started up: alive, and no longer busy with its own start."""
    wait_for(lambda: process.poll() is None and processor_share([process.pid], 1)[process.pid] < SETTLE_SHARE,
             f"{process.args[0]} has come to rest", 30)


def close_windows(process):
    """The start opens a window; idle is the tray icon alone, with nothing kept for the window's quick return."""

    def windows():
        found = []
        for pid in family(process.pid)[1:]:
            search = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(pid)], check=False,
                                    stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
            found += search.stdout.split()
        return found

    wait_for(windows, "the first window is there", 20)

    def closed():
        # A key that comes before the window takes it is lost, so it is pressed until the window has gone.
        for window in windows():
            subprocess.run(["xdotool", "windowactivate", "--sync", window, "key", "alt+F4"], check=False,
                           stdin=subprocess.DEVNULL)
        return not windows()

    wait_for(closed, "the first window is closed", 20)
    wait_for(lambda: family(process.pid) == [process.pid], "what drew the window has gone", 60)


def main():
    program = Path(os.environ["QUILLMERE_BUILD"]) / "app/quillmere"
    with contextlib.ExitStack() as stack:
        silence = tone_file(0, 0)
        for number in range(APPLICATIONS):
            stack.enter_context(Player("pw-play", f"Silent {number}", 0, file=silence))
        ours = stack.enter_context(running([str(program)]))
        # Before the peer's window comes: it would take the keyboard, and the key with it.
        close_windows(ours)
        peer = stack.enter_context(running(["pavucontrol"]))
        settled(ours)
        settled(peer)
        share = processor_share([ours.pid, peer.pid], SECONDS)
        figure("idle program, 20 silent applications", share[ours.pid], "% of a core", "pavucontrol", share[peer.pid],
               "value < 0.5 and ratio < 1")
        figure("memory of the idle program", resident_mib(ours.pid), "MiB", "pavucontrol", resident_mib(peer.pid))


if __name__ == "__main__":
    main()
