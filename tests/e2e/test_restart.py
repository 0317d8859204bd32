"""The daemon or the session manager restarted, singly or together: list, taps and gains are back within three seconds."""

import contextlib
import os
import signal
import socket
import time
import unittest

from quillmere_e2e import graph
from quillmere_e2e.case import DESK, MixerTest
from quillmere_e2e.players import Player
from quillmere_e2e.recording import Monitor
from quillmere_e2e.waiting import wait_for
from quillmere_e2e.wakeups import wakeups

SECONDS = 3.0

# WirePlumber 0.4.13 on PipeWire 0.3.65 links neither the clients that outlive it nor the devices that were in use,
# whoever plays: nobody's sound comes back by itself. What is ours, the tap's return, is tested with renewed devices
# and players in the session tests (Recovery.TheTapIsBackAfterTheSessionManagerHasRestarted).
links_clients_that_outlive_it = unittest.skipIf(
    graph.session_manager_version() < (0, 5),
    "the session manager of this distribution does not link clients that outlive it, with or without us")


class Restart(MixerTest):
    def check_restart(self, *words):
        players = {self.play("pw-play", "Restarted", 500): 0.5, self.play("paplay", "Untouched", 900): 1}
        for player, gain in players.items():
            app = self.agent.wait_until_live(player)
            if gain != 1:
                self.agent.gain(app, gain)
            self.assert_level(self.desk, player, gain)
        self.desk.stop()

        graph.session_control(*words)
        back = time.monotonic()
        for player in players:
            # Some clients end with the daemon, some when no device is left; people start them again.
            if not player.streams():
                player.stop()
                player.start()
        with Monitor(DESK) as desk:
            for player, gain in players.items():
                self.assert_level(desk, player, gain, seconds=max(0.1, back + SECONDS - time.monotonic()))
        identifiers = [app["bundleID"] for app in self.agent.state()["apps"]]
        self.assertEqual(len(identifiers), len(set(identifiers)), "no application is listed twice")
        for player in players:
            self.assertIsNotNone(self.agent.find(player))
        self.assertEqual(sorted(device["uid"] for device in self.agent.state()["devices"]),
                         ["quillmere_test_sink_a", "quillmere_test_sink_b"])
        tapped = next(iter(players))
        self.agent.gain(self.agent.find(tapped)["bundleID"], 0.8)
        with Monitor(DESK) as desk:
            self.assert_level(desk, tapped, 0.8)

    @links_clients_that_outlive_it
    def test_the_session_manager_restarts(self):
        self.check_restart("restart", "wireplumber")

    @links_clients_that_outlive_it
    def test_the_session_manager_is_killed(self):
        self.check_restart("kill", "wireplumber")

    def test_the_daemon_and_the_session_manager_restart(self):
        self.check_restart("restart", "pipewire")

    def test_the_daemon_is_killed(self):
        self.check_restart("kill", "pipewire")

    def test_a_gain_that_is_set_while_the_session_manager_is_away_is_heard_when_it_is_back(self):
        player = self.play("pw-play", "Set meanwhile", 500)
        app = self.agent.wait_until_live(player)
        self.assert_level(self.desk, player, 1)
        self.desk.stop()
        graph.session_control("stop", "wireplumber")
        self.agent.gain(app, 0.5)
        wait_for(lambda: [line for line in self.agent.log.read_text(encoding="utf-8").splitlines() if app in line
                          and ("subgraph live" in line or "subgraph activation failed" in line)],
                 "the engine has done what it could")
        graph.session_control("start", "wireplumber")
        # With the last device some clients end, and some are not linked again; people start them anew.
        player.stop()
        player.start()
        with Monitor(DESK) as desk:
            self.assert_level(desk, player, 0.5)

    def test_a_session_manager_that_hung_while_it_was_looked_at_and_is_replaced_is_heard(self):
        player = self.play("pw-play", "Before the hang", 500)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, player, 0.5)
        self.desk.stop()
        os.kill(graph.daemon_pid("wireplumber"), signal.SIGSTOP)
        # Whoever comes makes the mixer look at the metadata again, which the one that hangs doesn't answer.
        visitor = Player("pw-play", "During the hang", 900)
        self.addCleanup(visitor.stop)
        visitor.launch()
        self.wait_until_it_rests()
        graph.session_control("kill", "wireplumber")
        player.stop()
        player.start()
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.8)
        with Monitor(DESK) as desk:
            self.assert_level(desk, player, 0.8)
        newcomer = self.play("pw-play", "After the hang", 1300)
        self.agent.wait_until_live(newcomer)

    def wait_until_it_rests(self):
        """Nothing has woken what talks to the daemon for longer than it puts off looking again."""
        def count():
            return sum(times for (_, name), times in wakeups(self.agent.process.pid).items() if name == "quillmere-audio")

        seen = {"count": -1, "since": 0}

        def rests():
            now = count()
            if now != seen["count"]:
                seen.update(count=now, since=time.monotonic())
            return time.monotonic() - seen["since"] > 1.5

        wait_for(rests, "the mixer has looked", 20)

    def test_the_pulseaudio_server_restarts(self):
        player = self.play("paplay", "Through Pulse", 500)
        self.agent.gain(self.agent.wait_until_live(player), 0.5)
        self.assert_level(self.desk, player, 0.5)
        graph.session_control("restart", "pipewire-pulse")
        player.stop()
        player.start()
        self.assert_level(self.desk, player, 0.5, seconds=SECONDS)


class FullQueue(MixerTest):
    """So many clients wait for a daemon that is busy that its socket takes no more."""

    starts_mixer = False
    listens = False

    def test_a_mixer_that_starts_then_is_there_once_the_daemon_has_come_to_them(self):
        daemon = graph.daemon_pid("pipewire")
        with contextlib.ExitStack() as crowd:
            os.kill(daemon, signal.SIGSTOP)
            crowd.callback(os.kill, daemon, signal.SIGCONT)
            with contextlib.suppress(BlockingIOError):
                while True:
                    one = crowd.enter_context(socket.socket(socket.AF_UNIX, socket.SOCK_STREAM | socket.SOCK_NONBLOCK))
                    one.connect(os.path.join(os.environ["XDG_RUNTIME_DIR"], "pipewire-0"))
            self.agent.launch()
            self.addCleanup(self.agent.stop)
            wait_for(lambda: "the audio daemon is gone" in self.agent.log.read_text(encoding="utf-8"), "it has been refused")
        wait_for(lambda: self.agent.state()["devices"], "the mixer knows its devices")
        player = self.play("pw-play", "Late", 500)
        self.agent.gain(self.agent.wait_until_live(player), 0.5)
        with Monitor(DESK) as desk:
            self.assert_level(desk, player, 0.5)


if __name__ == "__main__":
    unittest.main()
