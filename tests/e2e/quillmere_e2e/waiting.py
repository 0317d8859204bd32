"""Waiting for a condition with a deadline, never for a time."""

import time


class NotInTime(AssertionError):
    pass


def wait_for(condition, what, seconds=10.0, pause=0.02):
    """Polls until the condition gives something true and returns that; says what was awaited when it doesn't come."""
    deadline = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > deadline:
            raise NotInTime(f"{what}: not within {seconds:g} s (last seen: {result!r})")
        time.sleep(pause)
