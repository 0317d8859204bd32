"""The installed program in a session, as somebody uses it: started by the desktop, upgraded and removed while it runs.

Runs within a private session in a clean root (test_package.py), in the order of the tests' names."""
# needs: display

import os
import signal
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "e2e"))

import gi  # noqa: E402

gi.require_version("Gtk", "3.0")
from gi.repository import Gio, GLib, Gtk  # noqa: E402
from quillmere_e2e import accessibility as a11y  # noqa: E402
from quillmere_e2e import settings, tray  # noqa: E402
from quillmere_e2e.players import Player  # noqa: E402
from quillmere_e2e.processes import family, is_alive  # noqa: E402
from quillmere_e2e.program import shown_windows  # noqa: E402
from quillmere_e2e.recording import Monitor  # noqa: E402
from quillmere_e2e.tones import to_db  # noqa: E402
from quillmere_e2e.waiting import wait_for  # noqa: E402

NAME = "app.quillmere.host"
ENTRY = f"/usr/share/applications/{NAME}.desktop"
BUS = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
AMPLITUDE, TOLERANCE_DB = 0.25, 0.2
FOLDERS = ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME")
# What the session's own programs, and the libraries of ours, keep for everybody.
OTHERS = ("wireplumber/", "pipewire/", "pulse/", "fontconfig/", "mesa_shader_cache", "dconf/", "openbox/", ".cache/", "at-spi")


def is_owned():
    return tray.call(*BUS, "NameHasOwner", GLib.Variant("(s)", (NAME,)), "(b)")[0]


def process():
    """The program's, by its name on the bus."""
    return tray.process_of(NAME)


def stored_files():
    """What lies in the user's folders, by folder and path."""
    found = set()
    for folder in FOLDERS:
        for path in Path(os.environ[folder]).rglob("*"):
            relative = str(path.relative_to(os.environ[folder]))
            if path.is_file() and not any(other in relative for other in OTHERS):
                found.add(f"{folder}/{relative}")
    return found


class Used(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # A bus of the desktop knows the services of packages and where the screen is; this session's knows its own.
        services = Path(os.environ["XDG_DATA_HOME"]) / "dbus-1/services"
        (services / f"{NAME}.service").symlink_to(f"/usr/share/dbus-1/services/{NAME}.service")
        tray.call(*BUS, "ReloadConfig")
        screen = {name: os.environ[name] for name in ("DISPLAY", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                                                      "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "HOME")}
        tray.call(*BUS, "UpdateActivationEnvironment", GLib.Variant("(a{ss})", (screen,)))
        settings.complete_first_run()
        cls.violin = cls.enterClassContext(Player("pw-play", "Violin", 500, AMPLITUDE))
        cls.before = stored_files()
        cls.desk = cls.enterClassContext(Monitor("quillmere_test_sink_a"))
        cls.pid = None

    def hears(self, gain):
        # A machine that has just built the package is a busy one, and drops cycles.
        self.desk.wait_for_level(500, to_db(AMPLITUDE * gain), TOLERANCE_DB, 30)

    def slider(self):
        return a11y.find("quillmere", a11y.SLIDER, "Violin", 20)

    def set_gain(self, gain):
        a11y.set_fraction(self.slider(), gain)
        self.hears(gain)

    def windows_process(self):
        return wait_for(lambda: family(self.pid)[1:], "a process draws the windows", 10)[0]

    def open_anew(self):
        """The windows by a process that is started now."""
        drawn_by = self.windows_process()
        os.kill(drawn_by, signal.SIGKILL)
        wait_for(lambda: not is_alive(drawn_by), "the windows' process has ended")
        self.activate()
        self.assertNotEqual(self.windows_process(), drawn_by)
        self.slider()

    def activate(self):
        tray.call(NAME, "/app/quillmere/host", "org.freedesktop.Application", "Activate",
                  GLib.Variant("(a{sv})", ({},)))
        wait_for(shown_windows, "the window shows", 20)

    def dpkg(self, *words):
        done = subprocess.run(["sudo", "dpkg", *words], stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_1_the_desktop_entry_is_found_with_its_icon(self):
        entry = Gio.DesktopAppInfo.new(f"{NAME}.desktop")
        self.assertIsNotNone(entry)
        self.assertEqual(entry.get_name(), "Quillmere")
        self.assertTrue(entry.get_boolean("DBusActivatable"))
        self.assertEqual(entry.list_actions(), ["show-settings"])
        theme = Gtk.IconTheme.get_default()
        for size in (16, 48, 256):
            found = theme.lookup_icon(entry.get_icon().to_string(), size, 0)
            self.assertIn(f"/{size}x{size}/", found.get_filename())

    def test_2_the_desktop_starts_it_over_the_bus_and_its_window_shows(self):
        self.assertFalse(is_owned())
        subprocess.run(["gio", "launch", ENTRY], check=True, timeout=30)
        wait_for(is_owned, "the program has its name on the bus")
        type(self).pid = process()
        self.assertEqual(os.readlink(f"/proc/{self.pid}/exe"), "/usr/bin/quillmere")
        window = wait_for(shown_windows, "the window shows", 30)[0]
        self.assertEqual(os.readlink(f"/proc/{self.windows_process()}/exe"), "/usr/libexec/quillmere/quillmere-windows")
        told = subprocess.run(["xprop", "-id", window, "WM_CLASS"], check=True, capture_output=True, text=True).stdout
        self.assertIn(f'"{Gio.DesktopAppInfo.new(f"{NAME}.desktop").get_startup_wm_class()}"', told)
        tray.wait_for_item(self.pid)

    def test_3_it_lists_what_plays_and_changes_what_is_heard(self):
        self.hears(1)
        self.set_gain(0.5)

    def test_4_the_entrys_action_shows_the_settings(self):
        entry = Gio.DesktopAppInfo.new(f"{NAME}.desktop")
        entry.launch_action("show-settings", None)
        a11y.find("quillmere", name="Launch at login", seconds=20, visible=False)
        a11y.press(a11y.find_pressable("quillmere", "Mixer", 20))
        self.slider()

    def test_5_an_upgrade_leaves_the_one_that_runs_alone(self):
        self.dpkg("--install", os.environ["QUILLMERE_UPGRADE"])
        told = subprocess.run(["quillmere", "--version"], check=True, capture_output=True, text=True).stdout
        self.assertEqual(told.strip(), f"quillmere {os.environ['QUILLMERE_UPGRADED_VERSION']}")
        self.assertEqual(process(), self.pid)
        self.hears(0.5)
        self.set_gain(0.25)
        # Its other half is the one that it was installed with, though the file has another by now.
        self.open_anew()
        self.assertIn("(deleted)", os.readlink(f"/proc/{self.windows_process()}/exe"))
        self.set_gain(0.5)
        # The new one, started beside it, brings it to the front.
        self.assertEqual(subprocess.run(["quillmere"], check=False, timeout=20).returncode, 0)
        self.assertEqual(process(), self.pid)

    def test_6_after_its_end_the_new_one_starts_with_what_was_set(self):
        os.kill(self.pid, signal.SIGTERM)
        wait_for(lambda: not is_alive(self.pid), "the program has ended")
        self.hears(1)
        wait_for(lambda: not is_owned(), "the name is free")
        subprocess.run(["gio", "launch", ENTRY], check=True, timeout=30)
        wait_for(is_owned, "the program has its name on the bus")
        type(self).pid = process()
        self.assertEqual(os.readlink(f"/proc/{self.pid}/exe"), "/usr/bin/quillmere")
        self.hears(0.5)
        wait_for(shown_windows, "the window shows", 30)

    def test_7_it_goes_on_when_it_is_removed_and_leaves_the_sound_as_it_was(self):
        self.slider()
        self.dpkg("--remove", "quillmere")
        self.assertFalse(Path("/usr/bin/quillmere").exists())
        self.hears(0.5)
        self.set_gain(0.25)
        self.open_anew()
        self.set_gain(0.75)
        os.kill(self.pid, signal.SIGTERM)
        wait_for(lambda: not is_alive(self.pid), "the program has ended")
        self.hears(1)

    def test_8_nothing_is_left_of_the_package_and_of_the_user_what_is_documented(self):
        self.dpkg("--purge", "quillmere")
        self.assertFalse(Path("/etc/chromium").exists())
        self.assertEqual(stored_files() - self.before - {"XDG_CONFIG_HOME/quillmere/defaults.sqlite-wal",
                                                         "XDG_CONFIG_HOME/quillmere/defaults.sqlite-shm"}, set())
        self.assertTrue((Path(os.environ["XDG_CONFIG_HOME"]) / "quillmere/defaults.sqlite").exists())


if __name__ == "__main__":
    unittest.main(failfast=True)
