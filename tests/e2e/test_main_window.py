"""The main window, driven through the accessibility tree and by keys; what it does is read back from the sound."""
# needs: display

import subprocess
import unittest

import pyatspi

from quillmere_e2e import accessibility as a11y
from quillmere_e2e import settings
from quillmere_e2e.case import AMPLITUDE, DESK
from quillmere_e2e.mpris import BusPlayer
from quillmere_e2e.players import Player
from quillmere_e2e.program import Program
from quillmere_e2e.recording import Monitor
from quillmere_e2e.settings import forget_settings
from quillmere_e2e.tones import to_db
from quillmere_e2e.waiting import wait_for

SECTIONS = ("Mixer", "Profiles", "Activity", "Auto-Duck", "Focus", "Settings")


def is_selected(element):
    return element.getState().contains(pyatspi.STATE_SELECTED)


class MainWindow(unittest.TestCase):
    def setUp(self):
        self.addCleanup(forget_settings)
        settings.complete_first_run()
        self.desk = self.enterContext(Monitor(DESK))
        self.program = self.enterContext(Program(arguments=["--background"]))
        self.player = self.enterContext(Player("pw-play", "Violin", 500, AMPLITUDE))
        item = self.program.item()
        item.choose(next(entry[0] for entry in item.menu() if entry[1].replace("_", "") == "Open quillmere Window"))
        self.name = self.program.accessible_name()

    def tab(self, section):
        return a11y.find_pressable(self.name, section, 15)

    def show(self, section):
        a11y.press(self.tab(section))
        wait_for(lambda: is_selected(self.tab(section)), f"{section} is selected")

    def key(self, *names):
        window = wait_for(lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^quillmere$"],
                                                 check=False, capture_output=True, text=True).stdout.split(),
                          "the window shows")[-1]
        subprocess.run(["xdotool", "windowactivate", "--sync", window], check=True, timeout=10)
        subprocess.run(["xdotool", "key", "--clearmodifiers", *names], check=True, timeout=10)

    def test_starts_at_the_mixer_and_opens_each_section_by_its_item(self):
        wait_for(lambda: is_selected(self.tab("Mixer")), "the mixer is selected")
        for section in SECTIONS[1:] + SECTIONS[:1]:
            with self.subTest(section=section):
                self.show(section)
                self.assertEqual([name for name in SECTIONS if is_selected(self.tab(name))], [section])

    def test_a_cards_slider_sets_what_is_heard(self):
        slider = a11y.find(self.name, a11y.SLIDER, "Violin", 15)
        for gain in (0.5, 1):
            a11y.set_fraction(slider, gain)
            expected = to_db(AMPLITUDE * gain)
            self.assertAlmostEqual(self.desk.wait_for_level(500, expected), expected, delta=0.2)

    def test_a_cards_mute_button_silences_and_gives_back(self):
        a11y.press(a11y.find(self.name, name="Mute Violin", seconds=15))
        self.assertLess(self.desk.wait_for_silence(500), -60)
        a11y.press(a11y.find(self.name, name="Unmute Violin"))
        self.assertAlmostEqual(self.desk.wait_for_level(500, to_db(AMPLITUDE)), to_db(AMPLITUDE), delta=0.2)

    def test_the_activity_tells_what_sounds(self):
        self.show("Activity")
        a11y.find(self.name, name="Live now: 1", seconds=15)
        rows = a11y.find_all(self.name, pyatspi.ROLE_LIST_ITEM, "Violin")
        self.assertEqual([row.description for row in rows], ["live"])

    def test_the_transport_reaches_the_player_that_is_shown(self):
        with BusPlayer(title="A Steady Song") as player:
            a11y.find(self.name, name="A Steady Song", seconds=15)
            a11y.press(a11y.find(self.name, name="Next track"))
            a11y.press(a11y.find(self.name, name="Pause"))
            a11y.find(self.name, name="Play")
            a11y.press(a11y.find(self.name, name="Previous track"))
            wait_for(lambda: len(player.calls) >= 3, "the player was told")
            self.assertEqual([player.calls[0], player.calls[-1]], ["Next", "Previous"])
            self.assertEqual(player.status, "Paused")

    def test_keys_alone_go_from_section_to_section(self):
        self.tab("Mixer")
        self.key("ctrl+Next")
        wait_for(lambda: is_selected(self.tab("Profiles")), "the next section is selected")
        self.key("ctrl+Prior", "ctrl+Prior")
        wait_for(lambda: is_selected(self.tab("Settings")), "from the first it goes to the last")


if __name__ == "__main__":
    unittest.main()
