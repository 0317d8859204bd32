"""A tapped application that falls silent is live for 1.5 s more and no longer, where nothing else keeps its device running."""

import signal
import time
import unittest

from quillmere_e2e import graph
from quillmere_e2e.case import DESK, MixerTest
from quillmere_e2e.waiting import wait_for

PAUSING = ("mpv-pulse", "mpv-pipewire")


class Liveness(MixerTest):
    listens = False

    def play_tapped(self, kind, name, hz=500, gain=0.5):
        player = self.play(kind, name, hz)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, gain)
        self.wait_until_tapped(player)
        return player, app

    def wait_until_silent(self, app, since):
        """The time is told, not asserted: on a busy machine everything comes late."""
        wait_for(lambda: app not in self.agent.state()["live"], f"{app} is live no more", 20)
        print(f"{self.id()}: live for {time.monotonic() - since:.2f} s after its last sound", flush=True)

    def wait_until_nothing_runs(self):
        """Or the case is another one: the cycles go on."""
        wait_for(lambda: graph.Graph().node(DESK)["info"]["state"] != "running", f"{DESK} has come to rest")

    def check_pause(self, kind):
        player, app = self.play_tapped(kind, f"Pausing {kind}")
        for _ in range(2):
            since = time.monotonic()
            player.command_mpv("set_property", "pause", True)
            self.wait_until_silent(app, since)
            self.wait_until_nothing_runs()
            since = time.monotonic()
            player.command_mpv("set_property", "pause", False)
            wait_for(lambda: app in self.agent.state()["live"], f"{app} is live again")
            print(f"{self.id()}: live again after {time.monotonic() - since:.2f} s", flush=True)
            self.wait_until_tapped(player)

    def test_an_application_of_the_pulseaudio_server_that_pauses_is_live_no_longer_and_is_live_again_when_it_plays_on(self):
        self.check_pause("mpv-pulse")

    def test_an_application_of_pipewire_that_pauses_is_live_no_longer_and_is_live_again_when_it_plays_on(self):
        self.check_pause("mpv-pipewire")

    def test_an_application_that_is_stopped_is_live_no_longer(self):
        for number, kind in enumerate(PAUSING):
            with self.subTest(kind):
                player, app = self.play_tapped(kind, f"Stopping {kind}")
                since = time.monotonic()
                player.command_mpv("stop")
                self.wait_until_silent(app, since)
                self.wait_until_nothing_runs()
                self.assertTrue(player.alive(), "it only plays nothing")

    def test_an_application_that_quits_is_live_no_longer(self):
        for kind, how in (("pw-play", signal.SIGTERM), ("paplay", signal.SIGKILL), ("gst-pulse", signal.SIGINT)):
            with self.subTest(kind):
                player, app = self.play_tapped(kind, f"Quitting {kind}")
                since = time.monotonic()
                player.stop(how)
                self.wait_until_silent(app, since)
                self.wait_until_nothing_runs()

    def test_one_that_pauses_is_live_no_longer_while_another_plays_on(self):
        player, app = self.play_tapped("mpv-pulse", "Pausing")
        other = self.play("pw-play", "Going on", 900)
        playing = self.agent.wait_until_live(other)
        since = time.monotonic()
        player.command_mpv("set_property", "pause", True)
        self.wait_until_silent(app, since)
        self.assertIn(playing, self.agent.state()["live"])


if __name__ == "__main__":
    unittest.main()
