"""Numbered tries, each with a seed of its own, told one by one as lines of JSON.

A scenario is a script with one class for each kind of knock:

    class KilledUnderAFlood(Knock):
        def set_up(self): ...                 # once, everything it starts goes to self.enter(...)
        def knock(self, number, random): ...  # one try; the seconds it took, or Fell
        def tear_down(self): ...              # conditions that hold for all tries together, or Fell

    if __name__ == "__main__":
        main({"kill-flood": KilledUnderAFlood})

What it prints is read by scripts/knocks; a script that can't go on after a fall ends with `NEW_SESSION` and is started in
another session, at the next try."""

import argparse
import contextlib
import json
import os
import random
import subprocess
import sys
import time
import traceback

from quillmere_e2e.waiting import NotInTime

from .machine import Lateness

NEW_SESSION = 75
# A machine that keeps a thread waiting for so long is not fit to be measured on; what was late then is tried again.
MOST_LATE = 0.25
MOST_REPEATS = 3


class Fell(AssertionError):
    """A try that went wrong. `was_late`: it came right by itself, only too late."""

    def __init__(self, why, was_late=False, seconds=None):
        super().__init__(why)
        self.was_late = was_late
        self.seconds = seconds


class Knock:
    # After a fall the session may be broken for good; a new one tells what falls by itself.
    new_session_after_a_fall = True
    # What one try counts for in the table.
    times = 1

    def __init__(self):
        self._stack = contextlib.ExitStack()

    def enter(self, context):
        """Starts something that ends with the scenario."""
        return self._stack.enter_context(context)

    def later(self, function, *arguments):
        self._stack.callback(function, *arguments)

    def set_up(self):
        pass

    def prepare(self):
        """Before each try, not counted as part of it."""

    def knock(self, number, random):
        raise NotImplementedError

    def tear_down(self):
        pass

    def close(self):
        self._stack.close()


def tell(**words):
    print(json.dumps(words), flush=True)


def one_try(scenario, seed, kind, number):
    """Tells how it went; false where the session can't be used any more."""
    for repeat in range(MOST_REPEATS + 1):
        why, was_late, seconds = None, False, None
        with Lateness() as lateness:
            began = time.monotonic()
            try:
                seconds = scenario.knock(number, random.Random(f"{seed}/{kind}/{number}"))
            except Fell as fall:
                why, was_late, seconds = str(fall), fall.was_late, fall.seconds
            except NotInTime as fall:
                why = str(fall)
            except subprocess.TimeoutExpired as fall:
                why = f"the daemon does not answer: {fall}"
            except AssertionError as fall:
                why = str(fall) or "an assertion"
                traceback.print_exc()
            took = time.monotonic() - began
        words = {"kind": kind, "try": number, "times": scenario.times, "seconds": seconds, "took": round(took, 2),
                 "late": round(lateness.longest, 3), "waiting": lateness.waiting and round(lateness.waiting, 3)}
        if why is None:
            tell(outcome="survived", **words)
            return True
        # Only what came right by itself can have been the machine's doing.
        if was_late and lateness.longest > MOST_LATE and repeat < MOST_REPEATS:
            tell(outcome="machine", why=why, **words)
            continue
        tell(outcome="fell", why=why, **words)
        return not scenario.new_session_after_a_fall
    return True


def main(kinds):
    parser = argparse.ArgumentParser()
    parser.add_argument("--kind", choices=sorted(kinds), required=True)
    parser.add_argument("--seed", required=True)
    parser.add_argument("--first", type=int, default=0)
    parser.add_argument("--count", type=int, default=1)
    options = parser.parse_args()
    scenario = kinds[options.kind]()
    code = 0
    try:
        scenario.set_up()
        number = options.first
        while number < options.first + options.count:
            scenario.prepare()
            if not one_try(scenario, options.seed, options.kind, number):
                code = NEW_SESSION
                break
            number += 1
        else:
            try:
                scenario.tear_down()
                tell(kind=options.kind, outcome="over", **getattr(scenario, "figures", {}))
            except AssertionError as fall:
                tell(kind=options.kind, outcome="fell", why=f"in the end: {fall}", seconds=None,
                     **{"try": options.first + options.count - 1})
    except (AssertionError, OSError, EOFError, subprocess.SubprocessError) as problem:
        traceback.print_exc()
        tell(kind=options.kind, outcome="stuck", why=str(problem), **{"try": None})
        code = 1
    finally:
        with contextlib.suppress(AssertionError, OSError, subprocess.SubprocessError):
            scenario.close()
    sys.stdout.flush()
    # Nobody waits for threads of a session that is broken.
    os._exit(code)


__all__ = ["NEW_SESSION", "Fell", "Knock", "main", "tell"]
