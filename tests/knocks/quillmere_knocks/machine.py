"""How late the machine itself is: a thread that wants to come by every few milliseconds and has nothing else to do."""

import threading
import time
from pathlib import Path

PERIOD = 0.01


class Lateness:
    """Between `with` and its end: the longest time in seconds that a thread of ours waited for a processor, and the share
    of the time for which something on the machine did (0 to 1; absent where the kernel doesn't tell)."""

    def __init__(self):
        self.longest = 0.0
        self.waiting = None
        self._is_over = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)

    def _watch(self):
        before = time.monotonic()
        while not self._is_over.wait(PERIOD):
            now = time.monotonic()
            self.longest = max(self.longest, now - before - PERIOD)
            before = now

    def __enter__(self):
        self._since, self._stalled = time.monotonic(), _stalled()
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._is_over.set()
        self._thread.join()
        now = _stalled()
        if now is not None and self._stalled is not None:
            self.waiting = (now - self._stalled) / max(time.monotonic() - self._since, 1e-6)


def _stalled():
    """Seconds since the machine's start in which at least one task waited for a processor."""
    try:
        return int(Path("/proc/pressure/cpu").read_text(encoding="ascii").split("total=")[1].split()[0]) / 1e6
    except (OSError, IndexError, ValueError):
        return None
