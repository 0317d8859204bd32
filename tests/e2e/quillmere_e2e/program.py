"""The real program: started, opened by its status item, seen in pictures."""

import os
import signal
import subprocess
from pathlib import Path

from . import accessibility, settings, tray
from .processes import family
from .waiting import wait_for

ACCESSIBLE_NAME = "quillmere"


class Program:
    def __init__(self, path=None, arguments=(), environment=None, first_run=False):
        """Without settings it starts as it does for somebody who has been welcomed already, unless `first_run`."""
        self.path = str(path or Path(os.environ["QUILLMERE_BUILD"]) / "app/quillmere")
        self.arguments = list(arguments)
        self.environment = environment or {}
        self.first_run = first_run
        self.process = None
        self.log = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / "quillmere.log"

    def start(self):
        if not self.first_run:
            settings.complete_first_run()
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen([self.path, *self.arguments], stdin=subprocess.DEVNULL, stdout=log,
                                            stderr=log, env=os.environ | self.environment)
        return self

    def item(self, seconds=10.0):
        return tray.wait_for_item(self.process.pid, seconds)

    def accessible_name(self):
        """The name under which the program stands in the accessibility tree."""

        def own():
            pids = family(self.process.pid)
            return [application.name for application in accessibility.applications()
                    if application.get_process_id() in pids]

        return wait_for(own, "the program is in the accessibility tree", 10)[0]

    def windows(self):
        """The processes that draw the windows: one while there are any, and none otherwise."""
        return family(self.process.pid)[1:]

    def open_again(self, environment=None, arguments=()):
        """Starts the program a second time, as a launcher does; its exit code."""
        return subprocess.run([self.path, *arguments], check=False, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=20,
                              env=os.environ | (environment or {})).returncode

    def alive(self):
        return self.process is not None and self.process.poll() is None

    def stop(self):
        if self.process is None:
            return None
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        try:
            code = self.process.wait(5)
        except subprocess.TimeoutExpired:
            self.process.kill()
            code = self.process.wait()
        self.process = None
        return code

    def __enter__(self):
        return self if self.alive() else self.start()

    def __exit__(self, *_):
        self.stop()


def shown_windows():
    """The program's windows that show, by their title."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^quillmere$"], check=False,
                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    return found.stdout.split()


def picture(path):
    """The whole screen as a PNG file."""
    Path(path).parent.mkdir(parents=True, exist_ok=True)
    subprocess.run(["import", "-silent", "-window", "root", str(path)], check=True, timeout=30)
