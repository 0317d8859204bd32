"""The settings as they lie on the disk, looked at from outside."""

import contextlib
import sqlite3

from quillmere_e2e import settings

from .knock import Fell


def check_whole():
    """The file is a database without damage."""
    with contextlib.closing(sqlite3.connect(f"file:{settings.file()}?mode=ro", uri=True)) as database:
        told = database.execute("PRAGMA integrity_check").fetchone()[0]
    if told != "ok":
        raise Fell(f"the settings are damaged: {told}")
