"""What is stored of earlier runs."""

import contextlib
import os
import sqlite3


def forget_settings():
    """The next start is a first run."""
    folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "quillmere")
    for name in os.listdir(folder) if os.path.isdir(folder) else []:
        os.unlink(os.path.join(folder, name))


def greet():
    """The next start is none of a first run: the program's onboarding has been gone through."""
    folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "quillmere")
    os.makedirs(folder, mode=0o700, exist_ok=True)
    with contextlib.closing(sqlite3.connect(os.path.join(folder, "defaults.sqlite"))) as settings, settings:
        settings.execute("CREATE TABLE IF NOT EXISTS defaults "
                         "(key TEXT PRIMARY KEY NOT NULL, type TEXT NOT NULL, value ANY) STRICT, WITHOUT ROWID")
        settings.execute("INSERT OR REPLACE INTO defaults VALUES ('quillmere.onboardingCompleted', 'bool', 1)")
