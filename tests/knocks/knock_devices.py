"""Devices that appear and vanish, one of them the route of an application that plays."""

import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from quillmere_knocks.knock import main
from quillmere_knocks.stage import Staged

from quillmere_e2e.visitors import Visitors

# Comings and goings of one try.
ROUNDS = 20


class Devices(Staged):
    times = ROUNDS

    def set_up(self):
        super().set_up()
        self.visitors = self.enter(Visitors())

    def knock(self, number, random):
        names = [f"knock_device_{place}" for place in range(4)]
        there = set()
        come = 0
        while come < ROUNDS or there:
            name = random.choice(names)
            if name in there:
                self.visitors.ask("undevice", name)
                there.discard(name)
            elif come < ROUNDS:
                self.visitors.ask("device", name)
                there.add(name)
                come += 1
                # The untapped application is sent after some of them, and comes back to its own device when they go.
                if random.random() < 0.3:
                    self.agent.route(self.apps[2], name)
            time.sleep(random.choice((0, 0.005, 0.02, 0.1)))
        self.agent.route(self.apps[2], None)
        return self.survived(time.monotonic())


if __name__ == "__main__":
    main({"devices": Devices})
