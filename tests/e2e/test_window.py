"""The real program with its face: the popover opened as a tray would, driven through the accessibility tree."""
# needs: display

import unittest

from quillmere_e2e import accessibility as a11y
from quillmere_e2e import graph
from quillmere_e2e.case import AMPLITUDE, DESK, PHONES, forget_settings
from quillmere_e2e.players import Player
from quillmere_e2e.program import Program
from quillmere_e2e.recording import Monitor
from quillmere_e2e.tones import to_db
from quillmere_e2e.waiting import wait_for


class Window(unittest.TestCase):
    def setUp(self):
        self.addCleanup(forget_settings)
        self.desk = self.enterContext(Monitor(DESK))
        self.program = self.enterContext(Program())
        self.player = self.enterContext(Player("pw-play", "Violin", 500, AMPLITUDE))

    def open_popover(self):
        self.program.item().click()
        return a11y.find(self.program.accessible_name(), a11y.SLIDER, self.player.name, 15)

    def test_a_slider_found_by_its_applications_name_sets_what_is_heard(self):
        slider = self.open_popover()
        for gain in (0.5, 0.25, 1):
            with self.subTest(gain=gain):
                a11y.set_fraction(slider, gain)
                expected = to_db(AMPLITUDE * gain)
                self.assertAlmostEqual(self.desk.wait_for_level(500, expected), expected, delta=0.2)
        a11y.set_fraction(slider, 0)
        self.assertLess(self.desk.wait_for_silence(500), -60)

    def test_the_rows_output_picker_moves_the_application(self):
        self.open_popover()
        name = self.program.accessible_name()
        with Monitor(PHONES) as phones:
            a11y.press(a11y.find(name, name="Output for Violin", visible=False))
            a11y.press(a11y.find(name, a11y.MENU_ITEM, "Travel Headphones"))
            self.assertAlmostEqual(phones.wait_for_level(500, to_db(AMPLITUDE)), to_db(AMPLITUDE), delta=0.2)
            self.assertLess(self.desk.wait_for_silence(500), -60)

    def test_the_program_is_in_the_tray_and_ends_when_told_leaving_everything_at_its_level(self):
        slider = self.open_popover()
        a11y.set_fraction(slider, 0.5)
        self.desk.wait_for_level(500, to_db(AMPLITUDE * 0.5))
        self.assertEqual(self.program.stop(), 0)
        self.desk.wait_for_level(500, to_db(AMPLITUDE), seconds=1.0)
        wait_for(lambda: not graph.Graph().ours(), "no node of ours is left", 1.0)


if __name__ == "__main__":
    unittest.main()
