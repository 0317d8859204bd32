"""Real, stock clients that play a steady tone, each with an identity of its own.

A player runs under a copied executable and, if wanted, with a desktop entry that names it, so that it is what an
installed application would be: a process with its own binary, name and icon."""

import os
import shutil
import signal
import subprocess
from pathlib import Path

from . import graph
from .tones import tone_file
from .waiting import wait_for

KINDS = ("pw-play", "paplay", "gst-pulse", "gst-pipewire", "jack")
SOURCES = {"pw-play": "/usr/bin/pw-cat", "paplay": "/usr/bin/pacat", "jack": "/usr/bin/mpv"}


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


class Player:
    """One client with one output stream. `binary` and `name` identify it; two players may share them.

    A "jack" one links itself to a device and stays there; its target is the device's description."""

    def __init__(self, kind, name, hz, amplitude=0.25, binary=None, desktop_entry=True, target=None, file=None,
                 extra=()):
        if kind not in KINDS:
            raise ValueError(kind)
        self.kind, self.name, self.hz, self.amplitude, self.target = kind, name, hz, amplitude, target
        self.binary = binary or "qm-test-" + name.lower().replace(" ", "-")
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

    def start(self):
        """Starts the client and waits until its stream runs."""
        log = open(Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / f"{self.binary}.log", "ab")
        with log:
            self.process = subprocess.Popen(self.command(), stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        wait_for(lambda: any(stream["state"] == "running" for stream in self.streams()),
                 f"{self.name} ({self.kind}) plays")
        return self

    def streams(self):
        """Its output streams in the graph, found by process id."""
        standing = graph.Graph()
        streams = standing.jack_clients() if self.kind == "jack" else standing.output_streams()
        return [stream for stream in streams if stream["pid"] == self.process.pid]

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
