"""A gain that is set is the level that is heard, whatever API the application plays through."""

import unittest

from quillmere_e2e import graph
from quillmere_e2e.case import MixerTest
from quillmere_e2e.waiting import wait_for


class Gain(MixerTest):
    def check_gains(self, kind, hz):
        player = self.play(kind, f"Gain {kind}", hz)
        app = self.agent.wait_until_live(player)
        self.assert_level(self.desk, player, 1)
        for gain in (0.5, 0, 1, 0.25, 1):
            with self.subTest(kind=kind, gain=gain):
                self.agent.gain(app, gain)
                self.assert_level(self.desk, player, gain)

    def test_a_pipewire_client_is_heard_at_its_gain(self):
        self.check_gains("pw-play", 500)

    def test_a_pulseaudio_client_is_heard_at_its_gain(self):
        self.check_gains("paplay", 600)

    def test_a_gstreamer_client_is_heard_at_its_gain(self):
        self.check_gains("gst-pulse", 700)

    def test_a_gstreamer_client_of_pipewire_is_heard_at_its_gain(self):
        self.check_gains("gst-pipewire", 800)

    def test_three_applications_have_three_gains_at_once(self):
        players = [self.play("pw-play", "First", 500), self.play("paplay", "Second", 800),
                   self.play("gst-pulse", "Third", 1100)]
        gains = (0.8, 0.3, 0.0)
        for player, gain in zip(players, gains):
            self.agent.gain(self.agent.wait_until_live(player), gain)
        for player, gain in zip(players, gains):
            self.assert_level(self.desk, player, gain)

    def test_muting_silences_and_unmuting_plays_at_full_level(self):
        player = self.play("pw-play", "Muted", 500)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.4)
        self.assert_level(self.desk, player, 0.4)
        self.agent.ask("mute", app)
        self.assert_level(self.desk, player, 0)
        self.agent.ask("mute", app)
        self.assert_level(self.desk, player, 1)

    def test_a_second_stream_of_a_tapped_application_gets_its_gain_too(self):
        first = self.play("pw-play", "Double", 500, binary="qm-test-double")
        app = self.agent.wait_until_live(first)
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, first, 0.5)
        second = self.play("pw-play", "Double", 900, binary="qm-test-double")
        self.assert_level(self.desk, second, 0.5)
        self.assert_level(self.desk, first, 0.5)
        self.assertEqual([a["bundleID"] for a in self.agent.state()["apps"]].count(app), 1)

    def test_an_application_keeps_its_gain_when_it_stops_and_starts_again(self):
        player = self.play("pw-play", "Again", 500)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, player, 0.5)
        player.stop()
        self.desk.wait_for_silence(500)
        player.start()
        self.assert_level(self.desk, player, 0.5)

    def test_an_application_that_starts_again_at_once_keeps_its_gain(self):
        """Its new stream finds the tap standing: a client of the PulseAudio server must get its answer all the same."""
        for number, kind in enumerate(("pw-play", "paplay", "gst-pulse", "gst-pipewire")):
            with self.subTest(kind):
                player = self.play(kind, f"At once {kind}", 500 + 300 * number)
                app = self.agent.wait_until_live(player)
                self.agent.gain(app, 0.5)
                self.assert_level(self.desk, player, 0.5)
                for _ in range(3):
                    player.stop()
                    player.start()
                    self.assert_level(self.desk, player, 0.5)

    def test_two_applications_with_equal_names_have_gains_of_their_own(self):
        one = self.play("pw-play", "Twin", 500, binary="qm-test-twin-one")
        two = self.play("pw-play", "Twin", 900, binary="qm-test-twin-two")
        app_one, app_two = self.agent.wait_until_live(one), self.agent.wait_until_live(two)
        self.assertNotEqual(app_one, app_two)
        self.agent.gain(app_one, 0.5)
        self.assert_level(self.desk, one, 0.5)
        self.assert_level(self.desk, two, 1)
        self.agent.gain(app_two, 0)
        self.assert_level(self.desk, one, 0.5)
        self.assert_level(self.desk, two, 0)

    def test_no_node_of_ours_exists_while_every_application_is_at_unity(self):
        player = self.play("pw-play", "Untouched", 500)
        app = self.agent.wait_until_live(player)
        self.assertEqual(graph.Graph().ours(), [])
        self.agent.gain(app, 0.5)
        wait_for(lambda: graph.Graph().ours(), "a tap is there")
        self.agent.gain(app, 1)
        wait_for(lambda: not graph.Graph().ours(), "the tap is gone")
        self.assert_level(self.desk, player, 1)

    def test_absurd_gains_are_clamped_or_ignored_and_nothing_breaks(self):
        player = self.play("pw-play", "Absurd", 500)
        app = self.agent.wait_until_live(player)
        for asked, heard in ((0.5, 0.5), (-1, 0), (7, 1)):
            self.agent.gain(app, asked)
            self.assert_level(self.desk, player, heard)
        for asked in ("nan", "inf", "-inf"):
            self.agent.gain(app, asked)
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, player, 0.5)


if __name__ == "__main__":
    unittest.main()
