"""The mixer killed at a random moment under load: every application is back on its own device at its own level, nothing
of ours is left in the graph, and what was stored is there."""

import contextlib
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from quillmere_knocks.ear import Ear, Tone
from quillmere_knocks.knock import Fell, Knock, main
from quillmere_knocks.store import check_whole

from quillmere_e2e import graph, settings
from quillmere_e2e.agent import Agent
from quillmere_e2e.case import DESK, PHONES
from quillmere_e2e.players import Call, Player
from quillmere_e2e.tones import to_db
from quillmere_e2e.waiting import wait_for

AMPLITUDE = 0.15
LIMIT = 1.0
WHISPER = 0.1
GAINS = (0.1, 0.4, 0.8, 1)
# What is acknowledged is committed within a few milliseconds; a machine under load may take longer.
COMMITTED_SECONDS = 0.3
UNMOVABLE = ("--properties", '{ application.name = "Unmoved", node.dont-reconnect = true }')


class Killed(Knock):
    """The load is told by those below."""

    longest_load = 1.5

    def set_up(self):
        self.players = [self.enter(Player("pw-play", "Dragged", 500, AMPLITUDE)),
                        self.enter(Player("paplay", "Sent", 900, AMPLITUDE)),
                        self.enter(Player("gst-pipewire", "Whispered", 1300, AMPLITUDE))]
        # Asks not to be moved: whatever becomes of it is nobody's doing but the daemons' or the machine's.
        self.began = time.monotonic()
        self.unmoved = self.enter(Player("pw-play", "Unmoved", 1700, AMPLITUDE, extra=UNMOVABLE))
        self.ear = self.enter(Ear(DESK, PHONES))
        self.agent = Agent()
        self.later(self.agent.stop)
        own = to_db(AMPLITUDE)
        self.as_without_us = [Tone(DESK, player.hz, own) for player in [*self.players, self.unmoved]]
        self.as_without_us += [Tone(PHONES, player.hz, None) for player in self.players]
        self.agent.start()
        self.agent.ask("profile", "add", "Kept")
        self.agent.ask("rule", "qm-test-call", self.players[0].binary, 0.3, 1234)
        settings.wait_until_stored("quillmere.profiles", lambda value: value[-1]["name"] == "Kept", "Kept is there")
        settings.wait_until_stored("quillmere.duckRule", lambda value: value["restoreDelayMillis"] == 1234, "the rule")
        self.agent.kill()

    def prepare(self):
        # A tone's file is over after four minutes.
        if time.monotonic() - self.began < 120:
            return
        for player in [*self.players, self.unmoved]:
            player.stop()
            player.start()
        self.began = time.monotonic()

    def knock(self, number, random):
        self.agent.start()
        apps = [self.agent.wait_until_live(player) for player in self.players]
        unmoved = self.agent.wait_for_app(self.unmoved)
        before = self.stored_gain(unmoved)
        kept = round(random.uniform(0.2, 0.9), 4)
        self.agent.gain(unmoved, kept)
        acknowledged = time.monotonic()
        self.load(random, apps, acknowledged + random.uniform(0, self.longest_load))
        mark = self.ear.mark()
        killed = time.monotonic()
        self.agent.kill()
        try:
            seconds = self.ear.settled(self.as_without_us, mark, LIMIT)
        except Fell:
            self.keep(number)
            raise
        wait_for(lambda: not graph.Graph().ours(), "no node of ours is left", 2)
        check_whole()
        found = self.stored_gain(unmoved)
        allowed = [kept, WHISPER] + ([before] if killed - acknowledged < COMMITTED_SECONDS else [])
        if not any(value is not None and abs(found - value) < 1e-4 for value in allowed):
            raise Fell(f"a gain of {kept} was acknowledged {killed - acknowledged:.2f} s before, {found} is stored")
        if settings.stored("quillmere.profiles")[-1]["name"] != "Kept":
            raise Fell("a profile is lost")
        if settings.stored("quillmere.duckRule")["restoreDelayMillis"] != 1234:
            raise Fell("the rule is lost")
        return seconds

    def load(self, random, apps, until):
        raise NotImplementedError

    @staticmethod
    def keep(number):
        try:
            graph.keep(f"kill-{number}")
        except (AssertionError, OSError, graph.subprocess.SubprocessError):
            pass

    @staticmethod
    def stored_gain(app):
        listed = settings.stored("quillmere.appsState") or []
        return next((entry["gain"] for entry in listed if entry["bundleID"] == app), None)

    def step(self, random, apps):
        """One thing that somebody may do."""
        app = random.choice(apps)
        what = random.choice(("gain", "gain", "route", "whisper"))
        if what == "gain":
            self.agent.gain(app, random.choice(GAINS))
        elif what == "route":
            self.agent.route(app, random.choice((PHONES, None)))
        else:
            self.agent.ask("whisper")


class KilledAtHand(Killed):
    """As a person would: a slider is dragged in small steps, a menu takes a moment, and now and then there is a call."""

    def load(self, random, apps, until):
        with contextlib.ExitStack() as stack:
            if random.random() < 0.3:
                stack.enter_context(Call())
            self.work(random, apps, until)

    def work(self, random, apps, until):
        while time.monotonic() < until:
            if random.random() < 0.4:
                self.drag(random, random.choice(apps), until)
            else:
                self.step(random, apps)
            self.rest(random.uniform(0.05, 0.3), until)

    def drag(self, random, app, until):
        position = random.random()
        for _ in range(random.randrange(5, 15)):
            position = min(1.0, max(0.0, position + random.uniform(-0.15, 0.15)))
            self.agent.gain(app, round(position, 3))
            self.rest(0.03, until)

    def rest(self, seconds, until):
        """Looks at the list meanwhile, as a window does."""
        end = min(until, time.monotonic() + seconds)
        while time.monotonic() < end:
            self.agent.state()
            time.sleep(0.005)


class KilledInAFlood(Killed):
    """Gains, routes and Whisper Mode as fast as the program takes them."""

    longest_load = 1.0

    def load(self, random, apps, until):
        while time.monotonic() < until:
            self.step(random, apps)


if __name__ == "__main__":
    main({"kill-at-hand": KilledAtHand, "kill-in-a-flood": KilledInAFlood})
