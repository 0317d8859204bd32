"""Many applications changed at once: all are tapped side by side, the list is right all the time and nobody waits.

How long it takes is told here and held to its limits by the benchmark: this one may run on a busy machine."""
# needs: the machine

import time
import unittest

from quillmere_e2e import graph
from quillmere_e2e.case import DESK, MixerTest
from quillmere_e2e.players import Crowd
from quillmere_e2e.recording import Monitor
from quillmere_e2e.tones import to_db
from quillmere_e2e.waiting import wait_for

WHISPER = 0.1
# Milliseconds. Whoever waits for paths to be built is away for seconds; a machine that is busy is taken off before.
MOST_AWAY = 500


class Scale(MixerTest):
    listens = False

    def assert_list(self, crowd, gain):
        state = self.agent.state()
        expected = {member.binary: gain for member in crowd.members}
        self.assertEqual({app["bundleID"]: round(app["gain"], 6) for app in state["apps"] if app["bundleID"] in expected},
                         expected)

    def wait_until_all_are_live(self, crowd):
        """Where the session manager is too busy to link a stream again at once, it is silent, and not live, for a while."""
        everybody = {member.binary for member in crowd.members}
        wait_for(lambda: everybody <= set(self.agent.state()["live"]), "all are live", 30)

    def assert_nobody_waited(self, what):
        away, machine = self.agent.away()
        print(f"{self.id()}: {what}: main thread away for {away:.1f} ms at most, a thread with nothing to do "
              f"{machine:.1f} ms", flush=True)
        self.assertLess(away - machine, MOST_AWAY)

    def assert_heard(self, crowd, gain):
        for soloist in crowd.soloists:
            expected = to_db(soloist.amplitude * gain)
            self.assertAlmostEqual(self.desk.wait_for_level(soloist.hz, expected, seconds=20), expected, delta=0.2)

    def change_all_at_once(self, count):
        # No more cycles than the players themselves ask for.
        self.desk = self.enterContext(Monitor(DESK, latency=4096))
        crowd = self.enterContext(Crowd(count))
        self.wait_until_all_are_live(crowd)
        self.assert_heard(crowd, 1)
        self.agent.away()
        since = time.monotonic()
        self.agent.ask("whisper")

        self.agent.wait_until_heard({member.binary for member in crowd.members},
                                    lambda: self.assert_list(crowd, WHISPER))
        print(f"{self.id()}: {count} taps live after {time.monotonic() - since:.2f} s", flush=True)
        wait_for(lambda: crowd.tapped(graph.Graph()) == count, f"{count} applications play through their taps alone", 60)
        self.assert_heard(crowd, WHISPER)
        self.wait_until_all_are_live(crowd)
        self.assert_nobody_waited("making taps")
        self.agent.ask("whisper")
        wait_for(lambda: not graph.Graph().ours(), "all are given back", 60)
        self.assert_list(crowd, 1)
        self.assert_heard(crowd, 1)
        self.wait_until_all_are_live(crowd)
        self.assert_nobody_waited("giving back")

    def test_sixteen_applications_are_tapped_at_once(self):
        self.change_all_at_once(16)

    def test_thirty_two_applications_are_tapped_at_once(self):
        self.change_all_at_once(32)

    def test_sixty_four_applications_are_tapped_at_once(self):
        self.change_all_at_once(64)


if __name__ == "__main__":
    unittest.main()
