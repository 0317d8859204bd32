"""How often a program's threads wake."""

from pathlib import Path


def wakeups(pid):
    """Times that each living thread has gone to sleep, by thread id and name."""
    counts = {}
    for task in Path(f"/proc/{pid}/task").iterdir():
        try:
            lines = (task / "status").read_text(encoding="utf-8").splitlines()
            name = (task / "comm").read_text(encoding="utf-8").strip()
        except (FileNotFoundError, ProcessLookupError):
            continue
        counts[int(task.name), name] = sum(
            int(line.split()[1]) for line in lines if line.startswith("voluntary_ctxt_switches"))
    return counts
