#!/usr/bin/python3
"""What the mixer page costs with thirty applications, ten of them live, beside pavucontrol with the same; and what
memory is left of an hour's use, a minute of which is a popover, a section, a change by the wheel and an application that
comes and goes."""

import contextlib
import statistics
import subprocess
import time

from quillmere_e2e.players import Player
from quillmere_e2e.processes import processor_share
from quillmere_e2e.tones import tone_file
from quillmere_e2e.waiting import wait_for
from watched import (BUILD, ENVIRONMENT, MIXER, Program, Screen, Tray, click, figure, ours, share_mib,
                     visible_windows)

LIVE, SILENT = 10, 20
SECONDS = 10
SECTIONS = ("Profiles", "Activity", "Auto-Duck", "Focus", "Settings", "Mixer")
MINUTES = 60
# By then everything has been shown and kept once.
SETTLED_MINUTES = 15


def measure_page(program):
    """The mixer page is what an ordinary start shows."""
    with Program("pavucontrol") as mixer:
        wait_for(lambda: visible_windows(program) and visible_windows(mixer), "both windows show", 30)
        mixer.settled()
        wait_for(lambda: program.lines("frame ([0-9]+) us"), "frames are told", 10)
        alone = program.everyone()
        share = processor_share([*alone, mixer.pid], SECONDS)
        since = time.monotonic() - SECONDS
        frames = [int(match[1]) / 1000 for when, match in program.lines("frame ([0-9]+) us") if when >= since]
        what = f"mixer page, {LIVE + SILENT} applications, {LIVE} live"
        figure(what, sum(share[pid] for pid in alone), "% of a core", MIXER, share[mixer.pid], "ratio <= 1")
        figure(f"frame of the {what}", statistics.median(frames), "ms", target="value < 16")
        figure(f"pace of the {what}", len(frames) / SECONDS, "frames/s")


def a_minute(minute, item, program, screen):
    with Player("pw-play", f"Guest {minute % 3}", 700, 0.02):
        click(item, program, screen)
        item.scroll(120 if minute % 2 else -120)
        item.click()
        wait_for(lambda: len(visible_windows(program)) == 1, "the popover is closed", 10)
        subprocess.run([BUILD / "app/quillmere", f"--section={SECTIONS[minute % len(SECTIONS)]}"], check=True, timeout=10,
                       env=ENVIRONMENT, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def memory(program):
    return [share_mib(pid) for pid in program.everyone()]


def measure_use(item, program, screen):
    """The main window stays open, so that the process that draws lives through all of it."""
    everyone = program.everyone()
    for minute in range(MINUTES):
        if minute == SETTLED_MINUTES:
            early = memory(program)
        a_minute(minute, item, program, screen)
    if program.everyone() != everyone:
        raise AssertionError("another process draws now")
    for what, before, after in zip(("mixer", "windows"), early, memory(program), strict=True):
        figure(f"memory of the {what} after an hour's use", after, "MiB", "after a quarter of it", before, "ratio <= 1.05")


def main():
    with contextlib.ExitStack() as stack:
        panel, screen = stack.enter_context(Tray()), stack.enter_context(Screen())
        for number in range(LIVE):
            stack.enter_context(Player("pw-play", f"Tone {number}", 300 + 100 * number, 0.02))
        for number in range(SILENT):
            stack.enter_context(Player("pw-play", f"Silence {number}", 0, file=tone_file(0, 0)))
        program = stack.enter_context(ours())
        item = panel.appeared(program)[1]
        measure_page(program)
        measure_use(item, program, screen)


if __name__ == "__main__":
    main()
