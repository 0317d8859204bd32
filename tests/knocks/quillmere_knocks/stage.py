"""What most scenarios play on: one application that is tapped, one that is routed, one that nobody touches, a mixer."""

import time

from quillmere_e2e import graph, settings
from quillmere_e2e.agent import Agent
from quillmere_e2e.case import DESK, PHONES
from quillmere_e2e.players import Player
from quillmere_e2e.tones import to_db

from .cost import Ledger
from .ear import Ear, Tone
from .knock import Fell, Knock

AMPLITUDE = 0.15
HEARD_SECONDS = 1.0
# Devices are looked at every three seconds; one that changes right after a look is seen three seconds later, and a moment
# for the look itself.
LISTED_SECONDS = 3.5
QUIET, ROUTED = 0.5, 0.7
MOST_PLAYED_SECONDS = 120


class Staged(Knock):
    # The mixer's memory is compared from this try on: caches are filled, code is loaded.
    warm_after = 3

    def set_up(self):
        self.tapped = self.enter(Player("pw-play", "Tapped", 500, AMPLITUDE))
        self.routed = self.enter(Player("pw-play", "Routed", 900, AMPLITUDE))
        self.untouched = self.enter(Player("paplay", "Untouched", 1300, AMPLITUDE))
        self.players = [self.tapped, self.routed, self.untouched]
        self.agent = Agent()
        self.later(self.agent.stop)
        self.agent.start()
        self.apps = [self.agent.wait_until_live(player) for player in self.players]
        self.wish()
        self.ear = Ear(DESK, PHONES)
        self.later(self.ear.stop)
        self.ear.start()
        self.ear.settled(self.tones(), self.ear.mark(), 10, patience=15)
        settings.wait_until_stored("quillmere.appsState", lambda value: self.stored_as_it_should(value), "both applications")
        self.ledger = Ledger(self.agent.process.pid)
        self.began = time.monotonic()
        self.tries = 0

    def wish(self):
        self.agent.gain(self.apps[0], QUIET)
        self.agent.route(self.apps[1], PHONES)
        self.agent.gain(self.apps[1], ROUTED)

    def prepare(self):
        # A tone's file is over after four minutes.
        if time.monotonic() - self.began < MOST_PLAYED_SECONDS:
            return
        for player in self.players:
            player.stop()
            player.start()
        # One that was looked for while it was away has come back without what had been wished in this run.
        for player in self.players:
            self.agent.wait_until_live(player)
        self.wish()
        self.began = time.monotonic()
        self.ear.settled(self.tones(), self.ear.mark(), 10, patience=15)

    def tones(self, is_routed=True):
        own = to_db(AMPLITUDE)
        there, elsewhere = (PHONES, DESK) if is_routed else (DESK, PHONES)
        return [Tone(DESK, self.tapped.hz, own + to_db(QUIET)), Tone(PHONES, self.tapped.hz, None),
                Tone(there, self.routed.hz, own + to_db(ROUTED)), Tone(elsewhere, self.routed.hz, None),
                Tone(DESK, self.untouched.hz, own), Tone(PHONES, self.untouched.hz, None)]

    def stored_as_it_should(self, listed):
        stored = {entry["bundleID"]: entry for entry in listed or []}
        tapped, routed = stored.get(self.apps[0]), stored.get(self.apps[1])
        return (tapped is not None and routed is not None and abs(tapped["gain"] - QUIET) < 1e-4
                and abs(routed["gain"] - ROUTED) < 1e-4 and routed.get("routedDeviceUID") == PHONES)

    def check_stored(self):
        if not self.stored_as_it_should(settings.stored("quillmere.appsState")):
            raise Fell(f"stored is {settings.stored('quillmere.appsState')}")

    def list_faults(self, seen, devices):
        """What is wrong with the list at the moment, beside the graph as others see it."""
        state = self.agent.state()
        apps = [app["bundleID"] for app in state["apps"]]
        faults = [f"{app} is missing" for app in self.apps if app not in apps]
        faults += [f"{app} is there twice" for app in set(apps) if apps.count(app) > 1]
        faults += [f"{app} counts as silent" for app in self.apps if app not in state["live"]]
        listed = sorted(device["uid"] for device in state["devices"])
        chosen = [device["uid"] for device in state["devices"] if device["default"]]
        if listed != devices or chosen != [seen.default_sink()] or chosen != [DESK]:
            faults.append(f"devices are {listed}, default {chosen}, and others see {devices}, {seen.default_sink()}")
        return faults

    def check_list(self, since):
        before = None
        while True:
            seen = graph.Graph()
            devices = sorted(node["info"]["props"]["node.name"] for node in seen.nodes("Audio/Sink"))
            if before is not None and devices != before:
                since = time.monotonic()
            before = devices
            faults = self.list_faults(seen, devices)
            if not faults:
                return
            if time.monotonic() > since + LISTED_SECONDS:
                raise Fell(f"the list after {LISTED_SECONDS:g} s: {'; '.join(faults)}")
            time.sleep(0.05)

    def keep(self, name):
        try:
            graph.keep(name)
        except (AssertionError, OSError, graph.subprocess.SubprocessError):
            pass

    def heard(self, mark, limit=HEARD_SECONDS, **how):
        try:
            return self.ear.settled(self.tones(**how), mark, limit)
        except Fell as fall:
            self.keep(f"try-{self.tries}")
            if self.agent.process.poll() is not None:
                raise Fell(f"the mixer has ended by itself with code {self.agent.process.returncode}; {fall}") from fall
            raise

    def survived(self, since):
        """Whether all is as it should be after a knock that was over at that time; the seconds until it was heard."""
        seconds = self.heard(self.ear.mark())
        self.check_list(since)
        self.check_stored()
        self.count()
        return seconds

    def count(self):
        """After each try: the mixer's cost, once it is warm."""
        self.tries += 1
        if self.tries == self.warm_after:
            self.ledger.note()

    def tear_down(self):
        self.check_stored()
        if self.ledger.entries:
            self.figures = self.ledger.check()
