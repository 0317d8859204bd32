"""How long it takes until everything is heard as it should be: tones at the devices' monitors, window by window."""

import time
from dataclasses import dataclass

from quillmere_e2e.recording import RATE, Monitor
from quillmere_e2e.tones import tone_level

from .knock import Fell

WINDOW = RATE // 50
# What is right must be so for most of this time.
RUN_SECONDS = 0.4
RUN = round(RUN_SECONDS * RATE / WINDOW)
MOST = 0.7
# In frames. Shorter cycles than applications ask for would only keep the machine busy.
LATENCY = 1024
TOLERANCE_DB = 0.5
SILENCE_DB = -60.0


@dataclass(frozen=True)
class Tone:
    """What is to be heard at a device; a level of None is silence."""
    sink: str
    hz: int
    level: float | None


class Ear:
    def __init__(self, *sinks):
        self.sinks = sinks
        self.monitors = {}

    def start(self):
        for sink in self.sinks:
            # Several recordings at one device must differ by their names.
            self.monitors[sink] = Monitor(sink, name=f"quillmere-test-ear-{sink[-1]}", latency=LATENCY).start()
        return self

    def stop(self):
        for monitor in self.monitors.values():
            monitor.stop()
        self.monitors.clear()

    def __enter__(self):
        return self.start()

    def __exit__(self, *_):
        self.stop()

    def mark(self):
        """This moment, for `settled`."""
        return time.monotonic(), {sink: monitor.frames() for sink, monitor in self.monitors.items()}

    def settled(self, tones, mark, limit, patience=6.0):
        """Seconds from the mark until all tones stood as they should; falls when that is later than the limit. What is right
        only later still falls, but as something that was late.

        A machine that is busy loses a cycle now and then, whoever plays: a tone stands from the first window on after
        which MOST of those of RUN_SECONDS are right, the first among them."""
        since, frames = mark
        heard = {tone: [] for tone in tones}
        arrived = {tone: [] for tone in tones}
        while True:
            for tone in tones:
                monitor, windows = self.monitors[tone.sink], heard[tone]
                available = monitor.frames()
                while frames[tone.sink] + (len(windows) + 1) * WINDOW <= available:
                    first = frames[tone.sink] + len(windows) * WINDOW
                    windows.append(tone_level(monitor.read(first, WINDOW), tone.hz))
                    arrived[tone].append(time.monotonic() - since)
            stands = {tone: self._stands_from(tone, windows) for tone, windows in heard.items()}
            if None not in stands.values():
                # A device that stands still makes no frames: then the clock on the wall counts.
                recorded = min(map(len, heard.values())) * WINDOW / RATE
                missing = max(0.0, time.monotonic() - since - recorded - 0.15)
                # And one that catches up on what it has slept makes more of them than there are in that time.
                took = {tone: min(window * WINDOW / RATE + missing, arrived[tone][window])
                        for tone, window in stands.items()}
                seconds = max(took.values())
                if seconds > limit:
                    late = [f"{tone.hz} Hz at {tone.sink}" for tone, each in took.items() if each > limit]
                    raise Fell(f"right only after {seconds:.2f} s: {', '.join(late)}", was_late=True, seconds=seconds)
                return seconds
            if time.monotonic() - since > patience:
                raise Fell("; ".join(self._wrong(heard, stands)))
            time.sleep(0.02)

    @classmethod
    def _stands_from(cls, tone, windows):
        fits = [cls._fits(tone, level) for level in windows]
        for first in range(len(fits) - RUN + 1):
            if fits[first] and sum(fits[first:first + RUN]) >= MOST * RUN:
                return first
        return None

    @staticmethod
    def _fits(tone, level):
        return level < SILENCE_DB if tone.level is None else abs(level - tone.level) <= TOLERANCE_DB

    @staticmethod
    def _wrong(heard, stands):
        for tone, windows in heard.items():
            if not windows:
                yield f"nothing comes from {tone.sink}"
            elif stands[tone] is None:
                wanted = "silence" if tone.level is None else f"{tone.level:.1f} dB"
                yield f"{tone.hz} Hz at {tone.sink}: {windows[-1]:.1f} dB, {wanted} wanted"
