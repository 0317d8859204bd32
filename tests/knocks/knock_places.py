"""A disk that is full, a home that can't be written, a runtime folder and a session bus that aren't there or go."""

import contextlib
import json
import os
import shlex
import shutil
import sqlite3
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from quillmere_knocks.ear import Ear, Tone
from quillmere_knocks.knock import Fell, Knock, main
from quillmere_knocks.stage import AMPLITUDE, HEARD_SECONDS, LISTED_SECONDS, Staged

from quillmere_e2e import graph, settings
from quillmere_e2e.agent import Agent
from quillmere_e2e.case import DESK
from quillmere_e2e.players import Player
from quillmere_e2e.tones import to_db
from quillmere_e2e.waiting import wait_for

# The store tries again after 0.1 s, and each time after twice as long.
STORED_SECONDS = 40


class PlacedAgent(Agent):
    """The mixer with something done to its surroundings before it starts: a shell command in a mount namespace of its own,
    and variables."""

    def __init__(self, before="true", **environment):
        super().__init__()
        agent = self.program
        folder = Path(os.environ["QUILLMERE_SESSION_DIR"])
        self.program = folder / "placed-agent"
        lines = [f"export {name}={shlex.quote(value)}" for name, value in environment.items()]
        inner = shlex.quote(f"{before} && exec {shlex.quote(str(agent))}")
        # Within a root that is no mount of its own (`--release`) nothing can be made private, and all is already.
        self.program.write_text("\n".join(["#!/bin/sh", *lines, "how=unchanged",
                                           "unshare --mount --propagation private true 2> /dev/null && how=private",
                                           f"exec unshare --mount --propagation $how sh -c {inner}", ""]), encoding="utf-8")
        self.program.chmod(0o700)


class Place(Knock):
    """One application, sounding; a mixer in an odd place for each try."""

    def set_up(self):
        self.player = self.enter(Player("pw-play", "Placed", 500, AMPLITUDE))
        self.ear = self.enter(Ear(DESK))

    def tones(self, gain):
        return [Tone(DESK, self.player.hz, to_db(AMPLITUDE * gain))]

    def heard(self, gain):
        return self.ear.settled(self.tones(gain), self.ear.mark(), HEARD_SECONDS)

    def agent(self, **place):
        settings.complete_first_run()
        return PlacedAgent(**place)

    def works(self, agent, gain):
        """It lists the application in time and does what it is told."""
        app = agent.wait_until_live(self.player, LISTED_SECONDS)
        agent.gain(app, gain)
        return self.heard(gain)

    def knock(self, number, random):
        settings.forget_settings()
        seconds = self.place(number, random, round(random.uniform(0.2, 0.6), 3))
        wait_for(lambda: not graph.Graph().ours(), "no node of ours is left", 3)
        self.heard(1)
        return seconds

    def place(self, number, random, gain):
        raise NotImplementedError


class FullDisk(Place):
    def place(self, number, random, gain):
        folder = settings.file().parent
        folder.mkdir(mode=0o700, parents=True, exist_ok=True)
        with self.agent(before=f"mount -t tmpfs -o size=256k,mode=700 tmpfs {shlex.quote(str(folder))}") as agent:
            # The same folder as the mixer sees it.
            seen = Path(f"/proc/{agent.process.pid}/root{folder}")
            seconds = self.works(agent, gain)
            app = agent.find(self.player)["bundleID"]
            wait_for(lambda: self.stored(seen, app) == gain, "the gain is stored", 5)
            filler = seen / "filler"
            with open(filler, "wb", buffering=0) as file:
                while self.grows(file):
                    pass
            # Long texts need more room than the file has left within itself.
            for name in range(40):
                agent.ask("profile", "add", f"{name} " + "x" * 2000)
            agent.gain(app, gain / 2)
            seconds = max(seconds, self.heard(gain / 2))
            if self.stored(seen, app) not in (gain, round(gain / 2, 5)):
                raise Fell("a stored gain is lost on a full disk")
            filler.unlink()
            wait_for(lambda: self.stored(seen, app) == round(gain / 2, 5), "what was owed is stored once there is room", STORED_SECONDS)
            if agent.stop() != 0:
                raise Fell("it did not end well")
        return seconds

    @staticmethod
    def grows(file):
        try:
            return file.write(b"x" * 1024) == 1024
        except OSError:
            return False

    @staticmethod
    def stored(folder, app):
        """Read from a copy: SQLite follows the link that leads into the mixer's own mounts and comes out elsewhere."""
        with tempfile.TemporaryDirectory() as copy:
            for name in ("defaults.sqlite", "defaults.sqlite-wal"):
                if (folder / name).exists():
                    shutil.copy(folder / name, copy)
            with contextlib.closing(sqlite3.connect(Path(copy) / "defaults.sqlite")) as database:
                try:
                    row = database.execute("SELECT value FROM defaults WHERE key = 'quillmere.appsState'").fetchone()
                except sqlite3.DatabaseError:
                    return None  # Caught in the middle of a checkpoint.
        listed = json.loads(row[0]) if row else []
        return next((round(entry["gain"], 5) for entry in listed if entry["bundleID"] == app), None)


class ReadOnlyHome(Place):
    def place(self, number, random, gain):
        home = shlex.quote(str(settings.file().parents[1]))
        with self.agent(before=f"mount --bind {home} {home} && mount -o remount,bind,ro {home}") as agent:
            seconds = self.works(agent, gain)
            if agent.stop() != 0:
                raise Fell("it did not end well")
        if settings.stored(settings.COMPLETED) is not True:
            raise Fell("what was stored before is lost")
        return seconds


class NoRuntimeFolder(Place):
    """The daemon's socket is named by a variable of its own, as in a container."""

    def place(self, number, random, gain):
        runtime = os.environ["XDG_RUNTIME_DIR"]
        missing = "" if number % 2 else f"{runtime}/missing"
        with self.agent(XDG_RUNTIME_DIR=missing, PIPEWIRE_RUNTIME_DIR=runtime) as agent:
            seconds = self.works(agent, gain)
            if agent.stop() != 0:
                raise Fell("it did not end well")
        return seconds


class NoBus(Place):
    def place(self, number, random, gain):
        address = f"unix:path={os.environ['XDG_RUNTIME_DIR']}/no-bus" if number % 2 else "nonsense"
        with self.agent(DBUS_SESSION_BUS_ADDRESS=address) as agent:
            seconds = self.works(agent, gain)
            if agent.stop() != 0:
                raise Fell("it did not end well")
        return seconds


class BusRestarted(Staged):
    def knock(self, number, random):
        graph.session_control(random.choice(("restart", "kill")), "dbus-daemon")
        return self.survived(time.monotonic())


if __name__ == "__main__":
    main({"full-disk": FullDisk, "read-only-home": ReadOnlyHome, "no-runtime-folder": NoRuntimeFolder, "no-bus": NoBus,
          "bus-restarted": BusRestarted})
