"""The real program: its windows killed and hung, its files replaced while it runs."""

import os
import shutil
import signal
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from quillmere_knocks.cost import Ledger
from quillmere_knocks.ear import Ear, Tone
from quillmere_knocks.knock import Fell, Knock, main
from quillmere_knocks.stage import AMPLITUDE, HEARD_SECONDS

from quillmere_e2e import accessibility, settings
from quillmere_e2e.agent import Agent
from quillmere_e2e.case import DESK
from quillmere_e2e.players import Player
from quillmere_e2e.processes import is_alive
from quillmere_e2e.program import Program, shown_windows
from quillmere_e2e.tones import to_db
from quillmere_e2e.waiting import wait_for

GAIN = 0.4
# A wish that is not answered is noticed within five seconds; the rest is the time that a process takes to start.
NOTICED_SECONDS, SHOWN_SECONDS = 6, 20


class Real(Knock):
    warm_after = 2

    def set_up(self):
        self.player = self.enter(Player("pw-play", "Steady", 500, AMPLITUDE))
        settings.complete_first_run()
        # The gain is stored by the program without a face; the real one takes it up.
        with Agent() as agent:
            app = agent.wait_until_live(self.player)
            agent.gain(app, GAIN)
            settings.wait_until_stored("quillmere.appsState", lambda apps: self.is_stored(apps), "the gain")
        self.app = app
        self.tries = 0
        self.ledger = None
        self.program = self.enter(Program(self.executable(), arguments=["--background"]))
        self.ear = self.enter(Ear(DESK))
        self.item = self.program.item()
        self.ear.settled(self.tones, self.ear.mark(), 10, patience=15)

    def executable(self):
        return None

    @property
    def tones(self):
        return [Tone(DESK, self.player.hz, to_db(AMPLITUDE * GAIN))]

    @staticmethod
    def is_stored(apps):
        return any(abs(entry["gain"] - GAIN) < 1e-4 for entry in apps or [])

    def check(self, mark):
        """Meanwhile nothing has changed for the ear; and nothing is lost."""
        seconds = self.ear.settled(self.tones, mark, HEARD_SECONDS)
        if not self.program.alive():
            raise Fell("the mixer has ended")
        if not self.is_stored(settings.stored("quillmere.appsState")):
            raise Fell("the gain is lost")
        self.tries += 1
        if self.tries == self.warm_after:
            self.ledger = Ledger(self.program.process.pid)
            self.ledger.note()
        return seconds

    def open_window(self):
        self.item.choose(next(number for number, text, *_ in self.item.menu() if text == "Open quillmere Window"))
        wait_for(shown_windows, "the main window shows", SHOWN_SECONDS)
        # Whoever answers this is done with the wish too.
        accessibility.find(self.program.accessible_name(), name="Settings", seconds=SHOWN_SECONDS)
        return wait_for(self.program.windows, "a process draws the windows", 5)[0]

    def tear_down(self):
        if self.ledger:
            self.figures = self.ledger.check()


class WindowsKilled(Real):
    def knock(self, number, random):
        drawn_by = self.open_window()
        mark = self.ear.mark()
        os.kill(drawn_by, signal.SIGKILL)
        seconds = self.check(mark)
        wait_for(lambda: not is_alive(drawn_by), "it is gone", 5)
        if self.open_window() == drawn_by:
            raise Fell("nothing else draws")
        return seconds


class WindowsHung(Real):
    def knock(self, number, random):
        hung = self.open_window()
        os.kill(hung, signal.SIGSTOP)
        try:
            mark = self.ear.mark()
            self.item.click()
            seconds = self.check(mark)
            wait_for(lambda: not is_alive(hung), "the process that hangs is ended", NOTICED_SECONDS)
        finally:
            if is_alive(hung):
                os.kill(hung, signal.SIGKILL)
        wait_for(lambda: len(shown_windows()) == 2, "main window and popover show", SHOWN_SECONDS)
        self.item.click()
        wait_for(lambda: len(shown_windows()) == 1, "the popover is closed", 5)
        return seconds


class Upgraded(Real):
    """What is installed is replaced, as a package does it, by a build that can't be mistaken for the one that runs."""

    def executable(self):
        built = Path(os.environ["QUILLMERE_BUILD"])
        self.installed = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "installed"
        self.installed.mkdir()
        self.originals = [built / "app/quillmere", built / "app/quillmere-windows", built / "app/quillmere-tabs"]
        for file in self.originals:
            if file.exists():
                shutil.copy2(file, self.installed)
        return self.installed / "quillmere"

    def replace(self, name, content):
        fresh = self.installed / f"{name}.dpkg-new"
        fresh.write_bytes(content)
        fresh.chmod(0o755)
        fresh.replace(self.installed / name)

    def knock(self, number, random):
        is_open = bool(shown_windows())
        if not is_open and random.random() < 0.5:
            self.open_window()
        ran = self.installed / "newer-ran"
        mark = self.ear.mark()
        for name in ("quillmere", "quillmere-windows", "quillmere-tabs"):
            self.replace(name, f"#!/bin/sh\necho $0 >> {ran}\nexit 3\n".encode())
        seconds = self.check(mark)
        # Windows that come now are those of the build that runs.
        for drawn_by in self.program.windows():
            os.kill(drawn_by, signal.SIGKILL)
            wait_for(lambda: not is_alive(drawn_by), "it is gone", 5)
        self.open_window()
        if ran.exists():
            raise Fell(f"half of the newer build was started: {ran.read_text(encoding='utf-8')}")
        # And the next start is the newer one's; here it is the same again.
        for file in self.originals:
            if file.exists():
                self.replace(file.name, file.read_bytes())
        if self.program.stop() != 0:
            raise Fell("it did not end well")
        mark = self.ear.mark()
        self.program.start()
        self.item = self.program.item()
        self.ear.settled(self.tones, mark, 10, patience=15)
        return seconds

    def check(self, mark):
        self.warm_after = None
        return super().check(mark)


if __name__ == "__main__":
    main({"windows-killed": WindowsKilled, "windows-hung": WindowsHung, "upgraded": Upgraded})
