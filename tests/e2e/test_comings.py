"""Clients that come and go by the dozen while the list is read: the mixer stays, with what it had in hand."""

import unittest

from quillmere_e2e.case import MixerTest
from quillmere_e2e.visitors import Visitors
from quillmere_e2e.waiting import wait_for

TOGETHER, TIMES = 20, 25


class Comings(MixerTest):
    def test_a_stream_of_clients_leaves_the_list_and_the_levels_as_they_were(self):
        player = self.play("pw-play", "Steady", 500)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, player, 0.5)
        with Visitors() as visitors:
            for _ in range(TIMES):
                visitors.ask("join", TOGETHER)
                self.assertIn(app, self.agent.state()["live"])
                visitors.ask("leave")
        wait_for(lambda: self.rows() == [app], "the list is what it was", 15)
        self.assert_level(self.desk, player, 0.5)


if __name__ == "__main__":
    unittest.main()
