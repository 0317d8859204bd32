"""mixer_agent: the program without its face, driven by lines and answering in JSON."""

import json
import os
import select
import signal
import subprocess
import time
from pathlib import Path

from .waiting import NotInTime, wait_for


class Agent:
    """Starts and drives mixer_agent. Its log lines are kept with the session's logs."""

    def __init__(self, program=None):
        build = Path(os.environ["QUILLMERE_BUILD"])
        found = [build / "tests/e2e/mixer_agent", build / "bench/mixer_agent"]
        self.program = program or next((path for path in found if path.exists()), found[0])
        self.log = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / "mixer-agent.log"
        self.process = None
        self._received = b""

    def launch(self):
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen([self.program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=log)
        self._received = b""

    def start(self):
        self.launch()
        wait_for(lambda: self.state()["devices"], "the mixer knows its devices")
        return self

    def ask(self, *words, seconds=10.0):
        """Sends one command and returns the answer; a refusal is an error of the test."""
        self.process.stdin.write(("\t".join(str(word) for word in words) + "\n").encode())
        self.process.stdin.flush()
        deadline = time.monotonic() + seconds
        while b"\n" not in self._received:
            ready, _, _ = select.select([self.process.stdout], [], [], max(0, deadline - time.monotonic()))
            chunk = os.read(self.process.stdout.fileno(), 65536) if ready else b""
            if not chunk:
                raise AssertionError(f"the mixer gave no answer to {words}: exit code {self.process.poll()}")
            self._received += chunk
        line, self._received = self._received.split(b"\n", 1)
        answer = json.loads(line)
        if not answer["ok"]:
            raise AssertionError(f"the mixer refused {words}: {answer.get('error')}")
        return answer

    def state(self):
        return self.ask("list")

    def find(self, player):
        """The application that a player is: by its binary's identifier, else by its name."""
        apps = self.state()["apps"]
        return (next((app for app in apps if app["bundleID"] in (player.binary, player.binary + ".desktop")), None)
                or next((app for app in apps if app["name"] == player.name), None))

    def wait_for_app(self, player, seconds=5.0):
        """The player's identifier once the list has it, and the engine with it."""
        return wait_for(lambda: self.find(player), f"{player.name} is in the list", seconds)["bundleID"]

    def wait_until_live(self, player, seconds=5.0):
        """Its identifier once it counts as sounding: then the engine knows its process objects."""
        app = self.wait_for_app(player, seconds)
        wait_for(lambda: app in self.state()["live"], f"{player.name} is live", seconds)
        return app

    def gain(self, app, value):
        return self.ask("gain", app, value)

    def route(self, app, uid):
        return self.ask("route", app, uid or "-")

    def away(self):
        """Milliseconds that the main thread was away at most since the last call, and those of a thread that has nothing to
        do but to come by: what the machine itself is late. The first call begins the watch."""
        answer = self.ask("away", seconds=60)
        return answer["away"], answer["machine"]

    def end_watch(self):
        self.ask("away", "end")

    def heard(self):
        """The applications whose taps hear them."""
        return set(self.ask("heard")["heard"])

    def wait_until_heard(self, apps, meanwhile=lambda: None, seconds=60.0, pause=0.02):
        """Each of them has been heard by its tap, since this was called; on a busy machine not all at the same moment."""
        missing = set(apps)

        def none_is_missing():
            meanwhile()
            missing.difference_update(self.heard())
            return not missing

        try:
            wait_for(none_is_missing, "", seconds, pause)
        except NotInTime:
            raise NotInTime(f"not heard by their taps within {seconds:g} s: {sorted(missing)}") from None

    def kill(self):
        self.process.kill()
        self.process.wait()
        self._close()

    def stop(self):
        """Ends it politely and tells its exit code."""
        if self.process is None:
            return None
        if self.process.poll() is None:
            try:
                self.process.stdin.write(b"quit\n")
                self.process.stdin.flush()
            except BrokenPipeError:
                pass
        try:
            code = self.process.wait(5)
        except subprocess.TimeoutExpired:
            self.process.send_signal(signal.SIGKILL)
            code = self.process.wait()
        self._close()
        return code

    def _close(self):
        for pipe in (self.process.stdin, self.process.stdout):
            try:
                pipe.close()
            except OSError:
                pass
        self.process = None

    def __enter__(self):
        return self if self.process else self.start()

    def __exit__(self, kind, *_):
        """A mixer that ends by itself is a fault, whatever the test looked at."""
        code = self.stop()
        if kind is None and code not in (None, 0):
            raise AssertionError(f"the mixer has ended with code {code}")
