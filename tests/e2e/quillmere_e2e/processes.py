"""What processes cost, read from /proc."""

import os
import re
import time
from pathlib import Path


def processor_seconds(pid):
    """Processor time of all living threads of a process, to the nanosecond (schedstat; stat counts in ticks)."""
    total = 0
    for task in os.listdir(f"/proc/{pid}/task"):
        try:
            total += int(Path(f"/proc/{pid}/task/{task}/schedstat").read_text(encoding="ascii").split()[0])
        except (FileNotFoundError, ProcessLookupError):
            continue
    return total / 1e9


def processor_share(pids, seconds):
    """Percent of one core that each of the processes used over the next `seconds`."""
    before, start = {pid: processor_seconds(pid) for pid in pids}, time.monotonic()
    time.sleep(seconds)
    wall = time.monotonic() - start
    return {pid: 100 * (processor_seconds(pid) - before[pid]) / wall for pid in pids}


def parent_of(pid):
    """None for a process that has gone."""
    try:
        return int(Path(f"/proc/{pid}/stat").read_text(encoding="ascii", errors="replace").rpartition(")")[2].split()[1])
    except (FileNotFoundError, ProcessLookupError):
        return None


def is_alive(pid):
    """False for one that has ended and waits for somebody to notice, too."""
    try:
        return Path(f"/proc/{pid}/stat").read_text(encoding="ascii", errors="replace").rpartition(")")[2].split()[0] != "Z"
    except (FileNotFoundError, ProcessLookupError):
        return False


def is_of_this_session(pid):
    """Whether a process was started in the private session that this one runs in; None for one that has ended, or that
    has no environment."""
    try:
        environment = Path(f"/proc/{pid}/environ").read_bytes().split(b"\0")
    except PermissionError:
        return False
    except (FileNotFoundError, ProcessLookupError):
        return None
    if environment == [b""]:
        return None
    return b"QUILLMERE_SESSION_DIR=" + os.fsencode(os.environ["QUILLMERE_SESSION_DIR"]) in environment


def name_of(pid):
    """The file that a process runs, without its folder; None for one that has gone."""
    try:
        return os.path.basename(os.readlink(f"/proc/{pid}/exe"))
    except (FileNotFoundError, ProcessLookupError, PermissionError):
        return None


def names_in_this_session():
    """What runs in this session, by the names of the files."""
    return {name_of(pid) for pid in os.listdir("/proc") if pid.isdigit() and is_of_this_session(pid)} - {None}


def family(pid):
    """A process and its living children."""
    return [pid] + [int(entry) for entry in os.listdir("/proc") if entry.isdigit() and parent_of(entry) == pid and is_alive(entry)]


def resident_mib(pid):
    status = Path(f"/proc/{pid}/status").read_text(encoding="ascii", errors="replace")
    return int(re.search(r"^VmRSS:\s*(\d+)", status, re.M)[1]) / 1024
