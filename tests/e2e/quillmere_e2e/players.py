"""Real, stock clients that play a steady tone, each with an identity of its own.

A player runs under a copied executable and, if wanted, with a desktop entry that names it, so that it is what an
installed application would be: a process with its own binary, name and icon."""

import json
import os
import shutil
import signal
import socket
import subprocess
from pathlib import Path

from . import graph
from .tones import tone_file
from .waiting import wait_for

KINDS = ("pw-play", "paplay", "gst-pulse", "gst-pipewire", "mpv-pulse", "mpv-pipewire", "jack")
SOURCES = {"pw-play": "/usr/bin/pw-cat", "paplay": "/usr/bin/pacat", "mpv-pulse": "/usr/bin/mpv",
           "mpv-pipewire": "/usr/bin/mpv", "jack": "/usr/bin/mpv"}


def copied_executable(source, binary):
    """A stock program under a name of its own."""
    folder = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "bin"
    folder.mkdir(exist_ok=True)
    path = folder / binary
    if not path.exists():
        partial = folder / f".{binary}.{os.getpid()}"
        shutil.copy2(source, partial)
        partial.replace(path)
    return path


def binary_of(name):
    return "qm-test-" + name.lower().replace(" ", "-")


class Player:
    """One client with one output stream. `binary` and `name` identify it; two players may share them.

    A "jack" one links itself to a device and stays there; its target is the device's description."""

    def __init__(self, kind, name, hz, amplitude=0.25, binary=None, desktop_entry=True, target=None, file=None,
                 extra=()):
        if kind not in KINDS:
            raise ValueError(kind)
        self.kind, self.name, self.hz, self.amplitude, self.target = kind, name, hz, amplitude, target
        self.binary = binary or binary_of(name)
        self.file = file
        self.extra = list(extra)
        self.process = None
        self.executable = copied_executable(SOURCES.get(kind, "/usr/bin/gst-launch-1.0"), self.binary)
        if desktop_entry:
            self._write_desktop_entry()

    def _write_desktop_entry(self):
        folder = Path(os.environ["XDG_DATA_HOME"]) / "applications"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"{self.binary}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName={self.name}\nExec={self.executable} %U\n"
            "Icon=audio-x-generic\nCategories=AudioVideo;\n", encoding="utf-8")

    def command(self):
        if self.kind == "pw-play":
            command = [self.executable, "--playback", "--properties", f'{{ application.name = "{self.name}" }}']
            if self.target:
                command += ["--target", self.target]
            return command + self.extra + [self.file or tone_file(self.hz, self.amplitude)]
        if self.kind == "paplay":
            command = [self.executable, "--playback", "--file-format", f"--client-name={self.name}",
                       f"--property=application.process.binary={self.binary}"]
            if self.target:
                command += [f"--device={self.target}"]
            return command + self.extra + [self.file or tone_file(self.hz, self.amplitude)]
        if self.kind.startswith("mpv-"):
            return [self.executable, "--no-config", "--no-video", "--no-terminal", "--idle=yes", "--loop-file=inf",
                    f"--ao={self.kind.removeprefix('mpv-')}", f"--audio-client-name={self.binary}",
                    f"--input-ipc-server={self._socket()}"] + self.extra + [self.file or tone_file(self.hz, self.amplitude)]
        if self.kind == "jack":
            return ["pw-jack", self.executable, "--no-config", "--load-scripts=no", "--no-video", "--no-terminal",
                    "--loop-file=inf", "--ao=jack", f"--jack-name={self.name}",
                    f"--jack-port={self.target or 'Desk Speakers'}:playback", *self.extra,
                    self.file or tone_file(self.hz, self.amplitude)]
        source = ["audiotestsrc", "wave=sine", f"freq={self.hz}", f"volume={self.amplitude}", "!",
                  "audio/x-raw,format=F32LE,rate=48000,channels=2", "!"]
        if self.kind == "gst-pulse":
            sink = ["pulsesink", f"client-name={self.name}"] + ([f"device={self.target}"] if self.target else [])
        else:
            sink = ["pipewiresink", f"client-name={self.name}"] + ([f"path={self.target}"] if self.target else [])
        return [self.executable, "-q"] + source + sink + self.extra

    def launch(self):
        """Starts the client."""
        with open(self._log(), "ab") as log:
            self.process = subprocess.Popen(self.command(), stdin=subprocess.DEVNULL, stdout=log, stderr=log)

    def start(self):
        """Starts the client and waits until its stream runs."""
        self.launch()
        wait_for(lambda: any(stream["state"] == "running" for stream in self.streams()),
                 f"{self.name} ({self.kind}) plays")
        return self

    def last_words(self):
        """The last line that it has written."""
        return (self._log().read_text(encoding="utf-8", errors="replace").splitlines() or ["nothing"])[-1]

    def _log(self):
        return Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / f"{self.binary}.log"

    def _socket(self):
        return Path(os.environ["QUILLMERE_SESSION_DIR"]) / f"{self.binary}.socket"

    def command_mpv(self, *words):
        """What mpv is told while it plays: ("set_property", "pause", True), ("stop",) and so on."""
        with socket.socket(socket.AF_UNIX) as connection:
            connection.settimeout(5)
            connection.connect(str(self._socket()))
            connection.sendall(json.dumps({"command": words}).encode() + b"\n")
            connection.recv(65536)

    def streams(self, seen=None):
        """Its output streams in the graph as it is, or as it was seen."""
        standing = seen or graph.Graph()
        if self.kind == "jack":
            # What starts it may be its parent and not itself.
            return [client for client in standing.jack_clients() if client["name"] == self.name]
        return [stream for stream in standing.output_streams() if stream["pid"] == self.process.pid]

    @property
    def pid(self):
        return self.process.pid

    def alive(self):
        return self.process is not None and self.process.poll() is None

    def stop(self, how=signal.SIGTERM):
        if self.process is None:
            return
        if self.process.poll() is None:
            self.process.send_signal(how)
        try:
            self.process.wait(5)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process = None

    def __enter__(self):
        return self if self.alive() else self.start()

    def __exit__(self, *_):
        self.stop()


class Call:
    """A real capture client that holds the microphone."""

    def __init__(self, binary="qm-test-call"):
        self.binary = binary
        self.executable = copied_executable("/usr/bin/pw-cat", binary)
        self.process = None

    def start(self):
        self.process = subprocess.Popen(
            [self.executable, "--record", "--target", "quillmere_test_microphone", "--format", "s16",
             os.path.join(os.environ["TMPDIR"], "call.wav")], stdin=subprocess.DEVNULL)
        return self

    def stop(self):
        if self.process is not None:
            self.process.terminate()
            self.process.wait()
            self.process = None

    def __enter__(self):
        return self.start()

    def __exit__(self, *_):
        self.stop()


class Crowd:
    """Many applications that play at once, each with an identity of its own. Three of them, the first, one in the middle and
    the last, can be told from the others in a recording."""

    SOLOS = (1000, 2000, 3000)
    # The daemon's socket holds 128 clients that it has not come to yet. The library of one more takes the refusal for a
    # connection that is on its way, and finds it broken.
    AT_ONCE = 100

    def __init__(self, count):
        quiet = tone_file(500, 0.001)
        self.members = [Player("pw-play", f"Crowd {number:02}", 500, file=quiet) for number in range(count)]
        places = sorted({0, count // 2, count - 1})
        self.soloists = [Player("pw-play", f"Crowd {place:02}", hz, 0.05) for place, hz in zip(places, self.SOLOS)]
        for place, soloist in zip(places, self.soloists):
            self.members[place] = soloist

    def start(self):
        for first in range(0, len(self.members), self.AT_ONCE):
            for member in self.members[first:first + self.AT_ONCE]:
                member.launch()
            # Looking asks the daemon about every object, and it has two hundred to make.
            wait_for(self._all_run, "all applications play", 60, pause=1)
        return self

    def _all_run(self):
        begun = [member for member in self.members if member.process]
        ended = [member for member in begun if not member.alive()]
        if ended:
            raise AssertionError(f"{len(ended)} of {len(begun)} have ended, {ended[0].name} with: {ended[0].last_words()}")
        return len(self.running(graph.Graph())) == len(begun)

    def running(self, seen):
        """Its streams that run."""
        pids = {member.pid for member in self.members if member.process}
        return [stream for stream in seen.output_streams() if stream["pid"] in pids and stream["state"] == "running"]

    def tapped(self, seen):
        """How many of them play into a node of ours and nowhere else."""
        ours = set(seen.ours())
        targets = [set(seen.targets_of(stream["id"])) for stream in self.running(seen)]
        return sum(bool(links) and links <= ours for links in targets)

    def stop(self):
        for member in self.members:
            if member.alive():
                member.process.terminate()
        for member in self.members:
            member.stop()

    def __enter__(self):
        return self.start()

    def __exit__(self, *_):
        self.stop()
