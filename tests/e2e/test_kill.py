"""Killed at any moment, the mixer leaves every application at its own level, and nothing of its own behind."""

import os
import time
import unittest
from pathlib import Path

from quillmere_e2e import graph
from quillmere_e2e.case import DESK, PHONES, MixerTest
from quillmere_e2e.players import Player
from quillmere_e2e.settings import forget_settings
from quillmere_e2e.waiting import wait_for


def stored_by_the_session_manager():
    folder = Path(os.environ["XDG_STATE_HOME"]) / "wireplumber"
    return "\n".join(path.read_text(encoding="utf-8", errors="replace") for path in sorted(folder.glob("*"))
                     if path.is_file())


class Kill(MixerTest):
    starts_mixer = False

    def test_ten_random_moments(self):
        random = self.seeded_random()
        tapped = self.play("pw-play", "Survivor", 500)
        other = self.play("paplay", "Bystander", 900)
        phones = self.monitor(PHONES)
        for number in range(10):
            moment = random.uniform(0, 0.6)
            with self.subTest(number=number, moment=round(moment, 4)):
                self.agent.start()
                app = self.agent.wait_until_live(tapped)
                self.agent.wait_until_live(other)
                # The kill falls somewhere into the making, the moving, the gliding and the giving back of a tap.
                deadline = time.monotonic() + moment
                while time.monotonic() < deadline:
                    self.agent.gain(app, random.choice((0.1, 0.4, 0.8, 1)))
                    self.agent.route(app, random.choice((PHONES, None, None)))
                    pause = min(deadline, time.monotonic() + random.uniform(0, 0.2))
                    while time.monotonic() < pause:
                        self.agent.state()
                self.agent.kill()
                self.assert_level(self.desk, tapped, 1, seconds=1.0)
                self.assert_level(self.desk, other, 1, seconds=1.0)
                self.assert_level(phones, tapped, 0, seconds=1.0)
                self.assertEqual(graph.Graph().ours(), [])
                forget_settings()
        wait_for(lambda: "quillmere-" not in stored_by_the_session_manager().lower().replace(
            "quillmere-test", ""), "nothing of ours is stored", 3)
        tapped.stop()
        # An application with the same identity that starts later is neither quiet nor sent to a device that is gone.
        with Player("pw-play", "Survivor", 700) as again:
            self.assert_level(self.desk, again, 1)
            self.assertEqual(graph.Graph().targets_of(again.streams()[0]["id"]), [DESK])

    def test_a_flood_of_changes_that_is_killed_leaves_nobody_silent(self):
        """The mixer dies with nodes that the session manager has only begun to look at. `./dev knocks` does it hundreds of
        times."""
        random = self.seeded_random()
        players = [self.play("pw-play", "Flooded", 500), self.play("paplay", "Washed", 900),
                   self.play("gst-pipewire", "Drenched", 1300)]
        for number in range(10):
            moment = random.uniform(0.1, 0.8)
            with self.subTest(number=number, moment=round(moment, 4)):
                self.agent.start()
                apps = [self.agent.wait_until_live(player) for player in players]
                deadline = time.monotonic() + moment
                while time.monotonic() < deadline:
                    what = random.choice(("gain", "route", "whisper"))
                    if what == "gain":
                        self.agent.gain(random.choice(apps), random.choice((0.1, 0.4, 0.8, 1)))
                    elif what == "route":
                        self.agent.route(random.choice(apps), random.choice((PHONES, None)))
                    else:
                        self.agent.ask("whisper")
                self.agent.kill()
                for player in players:
                    self.assert_level(self.desk, player, 1, seconds=2.0)
                forget_settings()

    def test_the_next_start_takes_up_the_stored_gain(self):
        player = self.play("pw-play", "Returning", 500)
        self.agent.start()
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.3)
        self.assert_level(self.desk, player, 0.3)
        self.agent.kill()
        self.assert_level(self.desk, player, 1, seconds=1.0)
        self.agent.start()
        self.addCleanup(self.agent.stop)
        self.assert_level(self.desk, player, 0.3)

    def test_a_polite_end_gives_everything_back_too(self):
        player = self.play("pw-play", "Goodbye", 500)
        self.agent.start()
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.2)
        self.assert_level(self.desk, player, 0.2)
        self.assertEqual(self.agent.stop(), 0)
        self.assert_level(self.desk, player, 1, seconds=1.0)
        self.assertEqual(graph.Graph().ours(), [])


if __name__ == "__main__":
    unittest.main()
