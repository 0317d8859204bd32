"""Clients by the thousand, and two hundred applications at once."""

import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from quillmere_knocks.knock import Fell, main
from quillmere_knocks.stage import LISTED_SECONDS, Staged

from quillmere_e2e.case import PHONES
from quillmere_e2e.players import Crowd
from quillmere_e2e.tones import tone_file
from quillmere_e2e.visitors import Visitors
from quillmere_e2e.waiting import wait_for

# Clients of one try, and how many of them are there at the same time.
VISITORS, TOGETHER = 200, 20
CROWD, CROWD_HZ = 200, 2300


class Clients(Staged):
    times = VISITORS

    def set_up(self):
        super().set_up()
        self.visitors = self.enter(Visitors())

    def knock(self, number, random):
        for _ in range(VISITORS // TOGETHER):
            self.visitors.ask("join", TOGETHER)
            if random.random() < 0.5:
                time.sleep(random.uniform(0, 0.05))
            self.visitors.ask("leave")
        since = time.monotonic()
        seconds = self.survived(since)
        wait_for(lambda: "knock_visitors" not in self.agent.state()["live"], "nobody who has left sounds",
                 max(0.1, since + LISTED_SECONDS - time.monotonic()))
        return seconds


class CrowdAtOnce(Staged):
    times = CROWD
    warm_after = 1

    def knock(self, number, random):
        crowd = Crowd(CROWD)
        # A port of 0.3.65 takes 128 links and no more (mixer-dsp), so they play on two devices.
        for member in crowd.members[1::2]:
            member.target = PHONES
        # No tone that the others are known by.
        for member in crowd.members:
            member.file = tone_file(CROWD_HZ, 0.0005)
        try:
            since = time.monotonic()
            crowd.start()
            began = time.monotonic()
            binaries = {member.binary for member in crowd.members}
            listed = wait_for(lambda: binaries <= {app["bundleID"] for app in self.agent.state()["apps"]} and time.monotonic(),
                              "all are in the list", LISTED_SECONDS)
            print(f"{CROWD} applications play after {began - since:.1f} s and are listed {listed - began:.2f} s later",
                  file=sys.stderr)
            missing = [player.name for player in self.players if not player.alive()]
            if missing:
                raise Fell(f"ended: {missing}")
            self.heard(self.ear.mark())
        finally:
            crowd.stop()
        return max(self.survived(time.monotonic()), listed - began)


if __name__ == "__main__":
    main({"clients": Clients, "crowd": CrowdAtOnce})
