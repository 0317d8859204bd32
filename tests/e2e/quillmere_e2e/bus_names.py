"""Names on the session bus, asked from another process: the bus may go and come back under it."""

import subprocess


def has_owner(name):
    asked = subprocess.run(["gdbus", "call", "--session", "-d", "org.freedesktop.DBus", "-o", "/org/freedesktop/DBus", "-m",
                            "org.freedesktop.DBus.NameHasOwner", name], check=False, capture_output=True, text=True)
    return "true" in asked.stdout
