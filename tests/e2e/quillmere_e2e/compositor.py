"""A Wayland session without a screen: sway on its headless backend, with an X server of its own unless told otherwise."""

import json
import os
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

from .waiting import wait_for
from .wayland_input import LEFT, WaylandInput

WIDTH, HEIGHT = 1280, 800
#: A panel at the top, as thick as the usual ones.
PANEL_HEIGHT = 30
#: sway refuses to be root. It is somebody else in a user namespace of its own; where there is none, in a changed root for
#: one, it is nobody, with a folder of its own, and then an X server of nobody's would let no root in.
IN_A_NAMESPACE = ["unshare", "--user", "--map-user=1000", "--map-group=1000"]
NOBODY = 65534
AS_NOBODY = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]


def works(prefix):
    try:
        return subprocess.run([*prefix, "true"], check=False, stderr=subprocess.DEVNULL).returncode == 0
    except FileNotFoundError:
        return False


def not_root():
    """What to put before a command so that it isn't root; None where there is nothing."""
    if os.getuid() != 0:
        return []
    return next((prefix for prefix in (IN_A_NAMESPACE, AS_NOBODY) if works(prefix)), None)


def why_not():
    """What is missing for a compositor here; None where nothing is."""
    for tool in ("sway", "swaymsg", "grim"):
        if shutil.which(tool) is None:
            return f"there is no {tool}"
    return "root can't start sway as somebody else" if not_root() is None else None


class Sway:
    def __init__(self, scale=1, xwayland=True, size=(WIDTH, HEIGHT), extra=""):
        self.prefix = not_root()
        self.folder = Path(tempfile.mkdtemp(prefix="sway-", dir="/tmp"))
        self.log = Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / "sway.log"
        (self.folder / "config").write_text(
            f"xwayland {'force' if xwayland else 'disable'}\n"
            f"output HEADLESS-1 resolution {size[0]}x{size[1]} position 0,0 scale {scale}\n"
            # Something lies under the windows, so that pictures show where they end.
            "output * bg #30485c solid_color\ndefault_border none\nseat seat0 hide_cursor 0\n"
            f"{extra}\n"
            # Told once the compositor serves: where it and its X server are.
            f"exec sh -c 'echo \"$WAYLAND_DISPLAY $SWAYSOCK ${{DISPLAY-}}\" > {self.folder}/started.part && "
            f"mv {self.folder}/started.part {self.folder}/started'\n")
        if self.prefix == AS_NOBODY:
            os.chown(self.folder, NOBODY, NOBODY)
        # Places are in logical pixels, as windows have them.
        self.logical = (round(size[0] / scale), round(size[1] / scale))
        self.process = None
        self.input = None
        self.environment = {}

    def __enter__(self):
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("DISPLAY", "WAYLAND_DISPLAY", "SWAYSOCK")}
        environment |= {"WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman",
                        "XDG_CURRENT_DESKTOP": "sway", "XDG_RUNTIME_DIR": str(self.folder)}
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen([*self.prefix, "sway", "-d", "-c", str(self.folder / "config")], env=environment,
                                            stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True)
        started = self.folder / "started"
        try:
            wait_for(lambda: started.exists() or self.process.poll() is not None, "sway serves", 20)
            assert started.exists(), f"sway ended with code {self.process.returncode}: {self.log}"
            wayland, self.socket, *display = started.read_text(encoding="ascii").split()
            # Its clients have another runtime folder.
            wayland = str(self.folder / wayland)
            self.input = WaylandInput(wayland, *self.logical)
        except BaseException:
            self.__exit__()
            raise
        self.environment = {"WAYLAND_DISPLAY": wayland, "SWAYSOCK": self.socket, "XDG_SESSION_TYPE": "wayland",
                            "XDG_CURRENT_DESKTOP": "sway", "DISPLAY": display[0] if display else ""}
        return self

    def __exit__(self, *_):
        if self.input is not None:
            self.input.close()
        if self.process is not None and self.process.poll() is None:
            # The X server and what the configuration has started go with it.
            os.killpg(self.process.pid, signal.SIGTERM)
            try:
                self.process.wait(5)
            except subprocess.TimeoutExpired:
                os.killpg(self.process.pid, signal.SIGKILL)
                self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    # --- what it is told and asked

    def message(self, *words):
        answer = subprocess.run(["swaymsg", "-s", self.socket, "-r", *words], check=False, capture_output=True,
                                text=True, timeout=10)
        return json.loads(answer.stdout or "null")

    def command(self, text):
        # After "--", or a minus within it would be an option.
        answer = self.message("--", text)
        assert answer and all(each["success"] for each in answer), f"sway refuses '{text}': {answer}"

    def windows(self):
        """Every window that the compositor arranges, by its node in sway's tree."""
        found = []

        def walk(node):
            if node.get("pid") and node["type"] in ("con", "floating_con"):
                found.append(node)
            for child in node["nodes"] + node["floating_nodes"]:
                walk(child)

        walk(self.message("-t", "get_tree"))
        return found

    def point(self, x, y):
        self.input.move(x, y)

    def click(self, x, y, button=LEFT):
        self.point(x, y)
        self.input.button(button, True)
        self.input.button(button, False)

    def key(self, name, control=False):
        self.input.key(name, control)

    def picture(self, path):
        """The output as a PNG file."""
        Path(path).parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["grim", str(path)], check=True, env=os.environ | self.environment, timeout=20)
        return path
