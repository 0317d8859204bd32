#!/usr/bin/python3
"""What is seen of the program: how soon its icon, list and popover are there, what they cost, and what stays when they
are closed. Beside it in the same session: a bare tray program, a bare Qt Quick window, and pavucontrol."""

import contextlib
import statistics
import time

from quillmere_e2e.players import Player
from quillmere_e2e.processes import processor_share, resident_mib
from quillmere_e2e.waiting import wait_for
from watched import (BUILD, MIXER, QUICK, TRAY, Program, Screen, Tray, click, close_popover, figure, millis, ours,
                     quick_window, share_mib)

ROWS = 10
SECONDS = 10


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
    figure("start to the main window's first picture", window, "ms", QUICK, bare_window, "ratio <= 3")


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
               "value <= 150 and ratio <= 2")
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
               bare_window, "value <= 150 and ratio <= 2")
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
