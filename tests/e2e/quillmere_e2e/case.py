"""What most end-to-end tests begin with: a running mixer, monitors at both devices, players that end with the test."""

import os
import random
import unittest

from . import graph
from .agent import Agent
from .players import Player
from .processes import is_of_this_session, name_of, names_in_this_session
from .recording import Monitor
from .settings import forget_settings
from .tones import to_db
from .waiting import wait_for

DESK = "quillmere_test_sink_a"
PHONES = "quillmere_test_sink_b"
AMPLITUDE = 0.25


class MixerTest(unittest.TestCase):
    """Each test has a mixer with empty settings."""

    starts_mixer = True
    # A recording of the device's monitor keeps the device running, whether anybody plays or not.
    listens = True

    def setUp(self):
        self.addCleanup(forget_settings)
        self.addCleanup(self.wait_until_nothing_of_ours_is_left)
        self.desk = self.enterContext(Monitor(DESK)) if self.listens else None
        self.agent = Agent()
        self.strangers = set()
        if self.starts_mixer:
            self.enterContext(self.agent)

    @staticmethod
    def wait_until_nothing_of_ours_is_left():
        wait_for(lambda: not graph.Graph().ours(), "no node of ours is left")

    def play(self, kind, name, hz, **options):
        """Starts a player that plays until the test ends."""
        return self.enterContext(Player(kind, name, hz, amplitude=AMPLITUDE, **options))

    def rows(self):
        """The list's identifiers, without applications that run outside this session alone: where a session sees processes
        that are not its own, whoever starts the tests may have a browser open, or close it."""
        self.note_strangers()
        rows = [app["bundleID"] for app in self.agent.state()["apps"]]
        self.note_strangers()
        return [app for app in rows if app not in self.strangers]

    def note_strangers(self):
        """One process stands for all of an application. Of two sessions that play under one name it may be the other's."""
        for app, pids in self.agent.ask("processes")["processes"].items():
            told = [is_of_this_session(pid) for pid in pids]
            if True in told or {name_of(pid) for pid in pids} & names_in_this_session():
                self.strangers.discard(app)
            elif False in told:
                self.strangers.add(app)

    def monitor(self, sink):
        return self.enterContext(Monitor(sink))

    def wait_until_tapped(self, *players, seconds=10.0):
        """Every stream of the players plays into a node of ours, and nowhere else."""
        def is_tapped():
            seen = graph.Graph()
            ours = set(seen.ours())
            links = [set(seen.targets_of(stream["id"])) for player in players for stream in player.streams(seen)]
            return len(links) >= len(players) and all(targets and targets <= ours for targets in links)

        wait_for(is_tapped, f"{', '.join(player.name for player in players)}: tapped", seconds)

    def assert_level(self, monitor, player, gain, seconds=5.0, delta=0.2):
        """The player's tone stands at its own level times the gain; a gain of 0 is silence."""
        try:
            if gain == 0:
                self.assertLess(monitor.wait_for_silence(player.hz, seconds=seconds), -60.0)
            else:
                expected = to_db(player.amplitude * gain)
                self.assertAlmostEqual(monitor.wait_for_level(player.hz, expected, seconds=seconds), expected,
                                       delta=delta)
        except AssertionError:
            graph.keep(self.id())
            raise

    def seeded_random(self):
        """Random moments that can be had again: QUILLMERE_SEED."""
        seed = int(os.environ.get("QUILLMERE_SEED") or random.SystemRandom().randrange(1 << 32))
        print(f"{self.id()}: QUILLMERE_SEED={seed}", flush=True)
        return random.Random(seed)
