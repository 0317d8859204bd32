"""What the program finds stored when it starts."""

import os
import sqlite3


def store_bool(key, value):
    """While the program doesn't run."""
    folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "quillmere")
    os.makedirs(folder, mode=0o700, exist_ok=True)
    with sqlite3.connect(os.path.join(folder, "defaults.sqlite")) as database:
        database.execute("CREATE TABLE IF NOT EXISTS defaults (key TEXT PRIMARY KEY NOT NULL, type TEXT NOT NULL, value ANY)"
                         " STRICT, WITHOUT ROWID")
        database.execute("INSERT OR REPLACE INTO defaults VALUES (?, 'bool', ?)", (key, int(value)))
    database.close()
