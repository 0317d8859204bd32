"""A real browser with the companion, and with a witness that tells what the browser itself says of its tabs."""

import base64
import hashlib
import json
import os
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
from pathlib import Path

from .processes import family, is_alive
from .waiting import wait_for

ROOT = Path(__file__).parents[3]
COMPANION = ROOT / "extension"
WITNESS = Path(__file__).parents[1] / "browser_witness"
PROGRAM = shutil.which("chromium")
HOST = "app.quillmere.tabs"


def extension_id(key):
    """The id that a browser gives to an extension with this key, or with this folder's path."""
    digits = hashlib.sha256(key).hexdigest()[:32]
    return "".join(chr(ord("a") + int(digit, 16)) for digit in digits)


COMPANION_ID = extension_id(base64.b64decode(json.loads((COMPANION / "manifest.json").read_text())["key"]))


class Line:
    """The test's end of the line to an extension whose host hands on what it gets."""

    def __init__(self, path):
        self.path = str(path)
        self.listening = socket.socket(socket.AF_UNIX)
        self.listening.bind(self.path)
        self.listening.listen()
        self.line = None

    def write_program(self, file):
        """The program for the browser to start."""
        file.write_text(f'#!/bin/sh\nexec /usr/bin/python3 "{WITNESS}/host.py" "{self.path}"\n')
        file.chmod(0o755)
        return file

    def say(self, message):
        text = json.dumps(message).encode()
        self._connected().sendall(struct.pack("=I", len(text)) + text)

    def hear(self):
        return json.loads(self._take(struct.unpack("=I", self._take(4))[0]))

    def ask(self, command, **words):
        self.say({"command": command} | words)
        answer = self.hear()
        if "error" in answer:
            raise AssertionError(f"the browser refused {command} {words}: {answer['error']}")
        return answer["answer"]

    def _connected(self):
        if self.line is None:
            self.listening.settimeout(30)
            self.line, _ = self.listening.accept()
            self.line.settimeout(30)
        return self.line

    def _take(self, count):
        taken = b""
        while len(taken) < count:
            piece = self._connected().recv(count - len(taken))
            if not piece:
                raise AssertionError("the browser's extension has gone")
            taken += piece
        return taken

    def close(self):
        for each in (self.line, self.listening):
            if each is not None:
                each.close()


class Browser:
    """Debian's Chromium with a profile of its own, or the user's, where the program itself installs the host.
    `installs_host`: whether its folder has the host's manifest from the start; `plays_host`: the test is the companion's
    host, by `companion`."""

    def __init__(self, urls=("about:blank",), headless=False, installs_host=True, users_profile=False, arguments=(),
                 plays_host=False):
        self.urls, self.headless, self.arguments = list(urls), headless, list(arguments)
        self.folder = Path(tempfile.mkdtemp(prefix="browser-", dir=os.environ["QUILLMERE_SESSION_DIR"]))
        self.profile = Path(os.environ["XDG_CONFIG_HOME"]) / "chromium" if users_profile else self.folder / "profile"
        self.log = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / "browser.log"
        self.witness = None
        self.companion = None
        self.process = None
        if plays_host:
            self.companion = Line(self.folder / "companion")
            self._write_manifest(HOST, self.companion.write_program(self.folder / "companion-host"), COMPANION_ID)
        elif installs_host and not users_profile:
            self.install_host()

    def _write_manifest(self, name, program, extension):
        folder = self.profile / "NativeMessagingHosts"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"{name}.json").write_text(json.dumps({
            "name": name, "description": name, "path": str(program), "type": "stdio",
            "allowed_origins": [f"chrome-extension://{extension}/"]}))

    def install_host(self):
        self._write_manifest(HOST, Path(os.environ["QUILLMERE_BUILD"]) / "app/quillmere-tabs", COMPANION_ID)

    def start(self):
        # An extension without a key is known by its folder, and each browser's witness has a script of its own.
        self.witness = Line(self.folder / "witness")
        script = self.witness.write_program(self.folder / "witness-host")
        self._write_manifest("app.quillmere.witness", script, extension_id(str(WITNESS).encode()))
        own = [] if self.profile.is_relative_to(os.environ["XDG_CONFIG_HOME"]) else [f"--user-data-dir={self.profile}"]
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen(
                [PROGRAM, "--no-sandbox", *own, f"--load-extension={COMPANION},{WITNESS}", "--no-first-run",
                 "--no-default-browser-check", "--disable-background-networking", "--disable-sync",
                 "--disable-component-update", "--disable-gpu", "--password-store=basic", "--disable-dev-shm-usage",
                 "--autoplay-policy=no-user-gesture-required", "--hide-crash-restore-bubble",
                 *(["--headless=new"] if self.headless else []), *self.arguments, *self.urls],
                stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        return self

    def ask(self, command, **words):
        return self.witness.ask(command, **words)

    def report(self):
        """What the browser says of its windows: for each, its tabs."""
        return [window["tabs"] for window in self.ask("report")]

    def hosts(self):
        """The host programs that it has started."""
        return [pid for pid in family(self.process.pid)
                if Path(f"/proc/{pid}/exe").exists() and os.readlink(f"/proc/{pid}/exe").endswith("/quillmere-tabs")]

    def kill(self):
        """At once; what it has started ends by itself."""
        self._end(signal.SIGKILL)

    def stop(self):
        self._end(signal.SIGTERM)

    def _end(self, number):
        if self.process is None:
            return
        started = family(self.process.pid)[1:]
        self.process.send_signal(number)
        try:
            self.process.wait(20)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process = None
        for each in filter(None, (self.witness, self.companion)):
            each.close()
        wait_for(lambda: not any(is_alive(pid) for pid in started), "what the browser has started has ended", 20)

    def __enter__(self):
        return self if self.process else self.start()

    def __exit__(self, *_):
        self.stop()
        shutil.rmtree(self.folder, ignore_errors=True)
