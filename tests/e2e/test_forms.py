"""The set-up pages and the first run, acted on through the accessibility tree; the effect is read back from the sound,
the settings and the session."""
# needs: display

import os
import subprocess
import unittest
from pathlib import Path

from quillmere_e2e import accessibility as a11y
from quillmere_e2e import settings
from quillmere_e2e.case import AMPLITUDE, DESK
from quillmere_e2e.players import Player
from quillmere_e2e.program import Program, shown_windows
from quillmere_e2e.recording import Monitor
from quillmere_e2e.settings import forget_settings
from quillmere_e2e.tones import to_db
from quillmere_e2e.waiting import wait_for

STARTED = 20


class Forms(unittest.TestCase):
    def setUp(self):
        self.addCleanup(forget_settings)
        self.desk = self.enterContext(Monitor(DESK))
        self.player = self.enterContext(Player("pw-play", "Violin", 500, AMPLITUDE))
        # An ordinary start shows the main window.
        self.program = self.enterContext(Program())
        self.program.item()
        self.name = self.program.accessible_name()

    def show(self, section):
        self.press(section)

    def press(self, name, visible=True):
        a11y.press(a11y.find_pressable(self.name, name, STARTED, visible))

    def level(self, gain):
        expected = to_db(AMPLITUDE * gain)
        self.assertAlmostEqual(self.desk.wait_for_level(500, expected), expected, delta=0.2)

    def test_a_focus_block_silences_and_its_end_gives_the_sound_back(self):
        self.level(1)
        self.show("Focus")
        self.press("Start 25-minute focus")
        self.assertLess(self.desk.wait_for_silence(500), -60)
        self.press("Cancel")
        self.level(1)

    def test_the_chosen_application_keeps_playing_during_focus(self):
        self.level(1)
        self.show("Focus")
        self.press("Violin")
        self.press("Start 25-minute focus")
        a11y.find(self.name, name="Deep work in progress", seconds=10)
        self.level(1)

    def test_the_rule_of_auto_duck_is_stored_as_it_is_set(self):
        self.show("Auto-Duck")
        a11y.set_fraction(a11y.find(self.name, a11y.SLIDER, "Duck music to", STARTED), 0.5)
        a11y.set_fraction(a11y.find(self.name, a11y.SLIDER, "Restore delay", STARTED), 1)
        settings.wait_until_stored("quillmere.duckRule", lambda rule: abs(rule["targetGain"] - 0.5) < 0.01
                                   and rule["restoreDelayMillis"] == 5000, "is as it was set")

    def test_an_application_is_added_to_a_list_by_its_picker(self):
        self.show("Auto-Duck")
        self.press("Add music app", visible=False)
        self.press("Violin")
        rule = settings.wait_until_stored("quillmere.duckRule",
                                          lambda rule: any("violin" in each.lower() for each in rule["duckedBundleIDs"]),
                                          "has the violin")
        self.assertFalse(any("violin" in each.lower() for each in rule["triggerBundleIDs"]))

    def test_a_profile_brings_back_what_it_was_saved_with(self):
        self.show("Mixer")
        slider = a11y.find(self.name, a11y.SLIDER, "Violin", STARTED)
        a11y.set_fraction(slider, 0.5)
        self.level(0.5)
        self.show("Profiles")
        self.press("New profile")
        settings.wait_until_stored("quillmere.profiles", lambda profiles: profiles[-1]["name"] == "Untitled 2",
                                   "has the new one")
        self.show("Mixer")
        a11y.set_fraction(a11y.find(self.name, a11y.SLIDER, "Violin", STARTED), 1)
        self.level(1)
        self.show("Profiles")
        self.press("Untitled 2")
        self.press("Apply now")
        self.level(0.5)

    def test_the_settings_are_written_and_the_session_is_told(self):
        self.show("Settings")
        self.press("Show duck banner during calls")
        settings.wait_until_stored("showDuckBanner", lambda shows: shows is False, "is off")
        folder = Path(os.environ["XDG_CONFIG_HOME"]) / "autostart"
        self.press("Launch at login")
        entry = wait_for(lambda: folder.is_dir() and list(folder.glob("*.desktop")), "the autostart entry is there", 10)
        self.assertIn("--background", entry[0].read_text(encoding="utf-8"))
        self.press("Launch at login")
        wait_for(lambda: not any("Hidden=true" not in each.read_text(encoding="utf-8")
                                 for each in folder.glob("*.desktop")), "nothing starts at login any more", 10)


class FirstRun(unittest.TestCase):
    def setUp(self):
        self.addCleanup(forget_settings)
        forget_settings()
        self.program = self.enterContext(Program(first_run=True))
        self.program.item()

    def test_it_greets_and_hands_over_to_the_main_window(self):
        name = self.program.accessible_name()
        wait_for(lambda: shown_windows("Welcome to quillmere"), "the first run's window shows", STARTED)
        a11y.find(name, name="The per-app volume mixer macOS forgot to ship.", seconds=10)
        a11y.press(a11y.find(name, a11y.BUTTON, "Continue", 10))
        a11y.find(name, name="A couple of optional permissions", seconds=10)
        self.assertIsNone(settings.stored(settings.COMPLETED))
        a11y.press(a11y.find(name, a11y.BUTTON, "Continue", 10))
        settings.wait_until_stored(settings.COMPLETED, lambda completed: completed is True, "the first run is over")
        wait_for(lambda: shown_windows("quillmere"), "the main window shows", STARTED)
        wait_for(lambda: not shown_windows("Welcome to quillmere"), "the first run's window is gone", 10)
        a11y.find(name, name="Mixer", seconds=10)

    def test_return_leads_through_it(self):
        window = wait_for(lambda: shown_windows("Welcome to quillmere"), "the first run's window shows", STARTED)[-1]
        name = self.program.accessible_name()
        a11y.find(name, a11y.BUTTON, "Continue", 10)
        subprocess.run(["xdotool", "windowactivate", "--sync", window], check=True)
        subprocess.run(["xdotool", "key", "Return"], check=True)
        a11y.find(name, name="A couple of optional permissions", seconds=10)
        subprocess.run(["xdotool", "key", "Return"], check=True)
        wait_for(lambda: shown_windows("quillmere"), "the main window shows", STARTED)


if __name__ == "__main__":
    unittest.main()
