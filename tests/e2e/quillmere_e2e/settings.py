"""What the program has stored, read and prepared from outside."""

import contextlib
import json
import os
import sqlite3
from pathlib import Path

from .waiting import wait_for

COMPLETED = "quillmere.onboardingCompleted"


def file():
    return Path(os.environ["XDG_CONFIG_HOME"]) / "quillmere" / "defaults.sqlite"


def stored(key):
    """The value of a key: text, a number or what its JSON says; None where there is none."""
    if not file().exists():
        return None
    with contextlib.closing(sqlite3.connect(f"file:{file()}?mode=ro", uri=True)) as database:
        row = database.execute("SELECT type, value FROM defaults WHERE key = ?", (key,)).fetchone()
    if row is None:
        return None
    kind, value = row
    return json.loads(value) if kind == "data" else bool(value) if kind == "bool" else value


def wait_until_stored(key, matches, what, seconds=5.0):
    """Waits until what is stored under a key matches, and returns it."""
    wait_for(lambda: (value := stored(key)) is not None and matches(value), f"{key}: {what}", seconds)
    return stored(key)


def complete_first_run():
    """The next start is none of a new user, unless settings are there already."""
    if file().exists():
        return
    file().parent.mkdir(mode=0o700, parents=True, exist_ok=True)
    with contextlib.closing(sqlite3.connect(file())) as database, database:
        database.execute("CREATE TABLE defaults (key TEXT PRIMARY KEY NOT NULL, type TEXT NOT NULL, value ANY) "
                         "STRICT, WITHOUT ROWID")
        database.execute("INSERT INTO defaults VALUES (?, 'bool', 1)", (COMPLETED,))
