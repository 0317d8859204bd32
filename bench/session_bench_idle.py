#!/usr/bin/python3
"""What the program costs while nothing is asked of it: twenty paused applications, and one that sounds as it is, beside
pavucontrol and the daemon in one session."""

import contextlib
import os
import subprocess
import time
from pathlib import Path

from quillmere_e2e.graph import daemon_pid
from quillmere_e2e.players import Player
from quillmere_e2e.processes import family, processor_share, resident_mib
from quillmere_e2e.tones import tone_file
from quillmere_e2e.waiting import wait_for
from quillmere_e2e.wakeups import wakeups
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


def wakeups_a_second(pids, seconds):
    """Of all threads together; processor shares over the same time."""
    before = {pid: wakeups(pid) for pid in pids}
    start = time.monotonic()
    share = processor_share(pids, seconds)
    passed = time.monotonic() - start
    after = {pid: wakeups(pid) for pid in pids}
    counts = {pid: sum(count - before[pid].get(thread, 0) for thread, count in after[pid].items()) for pid in pids}
    return {pid: count / passed for pid, count in counts.items()}, share


def tell(what, ours, peer, targets):
    server = daemon_pid("pipewire")
    rate, share = wakeups_a_second([ours.pid, peer.pid, server], SECONDS)
    figure(f"wake-ups, {what}", rate[ours.pid], "1/s", "pavucontrol", rate[peer.pid], targets[0])
    figure(f"wake-ups, {what} (daemon)", rate[ours.pid], "1/s", "pipewire", rate[server])
    figure(f"processor, {what}", share[ours.pid], "% of a core", "pavucontrol", share[peer.pid], targets[1])
    figure(f"processor, {what} (daemon)", share[ours.pid], "% of a core", "pipewire", share[server])


def main():
    program = Path(os.environ["QUILLMERE_BUILD"]) / "app/quillmere"
    with contextlib.ExitStack() as stack:
        silence = tone_file(0, 0)
        players = [stack.enter_context(Player("mpv-pipewire", f"Silent {number}", 0, file=silence))
                   for number in range(APPLICATIONS)]
        for player in players:
            player.command_mpv("set_property", "pause", True)
        ours = stack.enter_context(running([str(program)]))
        # Before the peer's window comes: it would take the keyboard, and the key with it.
        close_windows(ours)
        peer = stack.enter_context(running(["pavucontrol"]))
        settled(ours)
        settled(peer)
        tell("20 paused applications", ours, peer, ("value <= 2", "value <= 0.03 and ratio < 1"))
        figure("threads of the idle program", len(wakeups(ours.pid)), "threads", "pavucontrol", len(wakeups(peer.pid)),
               "value <= 6")
        figure("memory of the idle program", resident_mib(ours.pid), "MiB", "pavucontrol", resident_mib(peer.pid))
        stack.enter_context(Player("pw-play", "Untouched", 500))
        settled(ours)
        tell("one of them sounding untouched", ours, peer, (None, "value <= 0.15 and ratio < 1"))


if __name__ == "__main__":
    main()
