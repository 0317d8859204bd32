"""What the mixer holds: memory and descriptors must be the same after many knocks as after a few."""

import os
import re
import time
from pathlib import Path

from .knock import Fell

# Memory that comes and goes with the allocator's habits and with the log's buffers.
MOST_MIB = 3.0
MOST_DESCRIPTORS = 3


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def resident_mib(pid):
    """What is the process's own: pages of libraries come and go with whoever else uses them."""
    smaps = Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii")
    return (int(re.search(r"^Private_Dirty:\s*(\d+)", smaps, re.M)[1])) / 1024


class Ledger:
    """The first entry counts once the process is warm."""

    def __init__(self, pid):
        self.pid = pid
        self.entries = []

    def note(self):
        self.entries.append((resident_mib(self.pid), descriptors(self.pid)))

    def check(self, settle=3.0):
        """Falls when the process has grown since the first entry. What goes by itself within `settle` seconds is no growth."""
        first_memory, first_descriptors = self.entries[0]
        deadline = time.monotonic() + settle
        while True:
            memory, count = resident_mib(self.pid), descriptors(self.pid)
            grown = memory - first_memory
            more = count - first_descriptors
            if grown <= MOST_MIB and more <= MOST_DESCRIPTORS:
                return {"memory": [round(first_memory, 1), round(memory, 1)], "descriptors": [first_descriptors, count]}
            if time.monotonic() > deadline:
                raise Fell(f"memory {first_memory:.1f} to {memory:.1f} MiB, descriptors {first_descriptors} to {count}")
            time.sleep(0.1)
