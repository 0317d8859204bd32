"""Nothing clicks: a duck, a whisper, an application that is taken over and let go."""
# needs: the machine

import unittest

from quillmere_e2e import graph
from quillmere_e2e.clicks import ClickTest, is_realtime
from quillmere_e2e.players import Call
from quillmere_e2e.waiting import wait_for


class Smooth(ClickTest):
    def test_a_call_takes_a_player_down_and_the_end_of_the_call_brings_it_back(self):
        player = self.play_left("pw-play", "Music", 200)
        app = self.agent.wait_until_live(player)
        self.agent.ask("rule", "qm-test-call", app, 0.3, 500)
        self.agent.gain(app, 0.9)
        self.assert_level(self.desk, player, 0.9)

        def call_begins_and_ends():
            call = Call()
            self.addCleanup(call.stop)
            call.start()
            self.assert_level(self.desk, player, 0.3)
            self.assertTrue(self.agent.state()["isDucking"])
            call.stop()
            self.assert_level(self.desk, player, 0.9)
            self.assertFalse(self.agent.state()["isDucking"])

        self.assert_no_click(call_begins_and_ends, player)

    def test_whispering_a_live_tap_has_no_click(self):
        player = self.play_left("pw-play", "Smooth", 200)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.6)
        self.assert_level(self.desk, player, 0.6)

        def whisper_and_back():
            self.agent.ask("whisper")
            self.assert_level(self.desk, player, 0.1)
            self.agent.ask("whisper")
            self.assert_level(self.desk, player, 0.6)

        self.assert_no_click(whisper_and_back, player)

    def test_taking_a_jack_client_over_and_letting_it_go_has_no_click(self):
        player = self.play_left("jack", "Smooth Studio", 200)
        self.agent.wait_until_live(player)
        self.assert_level(self.desk, player, 1)

        def whisper_and_back():
            self.agent.ask("whisper")
            self.assert_level(self.desk, player, 0.1)
            self.agent.ask("whisper")
            self.assert_level(self.desk, player, 1)
            wait_for(lambda: not graph.Graph().detours(), "it is let go")

        self.assert_no_click(whisper_and_back, player)

    def test_a_tap_goes_before_ordinary_threads_where_the_daemon_does(self):
        player = self.play("pw-play", "Music", 200)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, player, 0.5)
        if not is_realtime(graph.daemon_pid("pipewire")):
            self.skipTest("this system gives no audio thread real-time priority")
        self.assertTrue(is_realtime(self.agent.process.pid))


if __name__ == "__main__":
    unittest.main()
