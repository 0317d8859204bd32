"""The real program with its face: the popover opened as a tray would, driven through the accessibility tree."""
# needs: display

import os
import signal
import subprocess
import unittest

from quillmere_e2e import accessibility as a11y
from quillmere_e2e import graph
from quillmere_e2e.case import AMPLITUDE, DESK, PHONES, forget_settings
from quillmere_e2e.players import Player
from quillmere_e2e.processes import is_alive
from quillmere_e2e.program import Program, shown_windows
from quillmere_e2e.recording import Monitor
from quillmere_e2e.tones import to_db
from quillmere_e2e.waiting import wait_for


class Window(unittest.TestCase):
    def setUp(self):
        self.addCleanup(forget_settings)
        self.desk = self.enterContext(Monitor(DESK))
        # The main window of an ordinary start takes the focus when it comes, and closes a popover that was quicker.
        self.program = self.enterContext(Program(arguments=["--background"]))
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

    def test_windows_that_end_unasked_take_nothing_with_them_and_come_again(self):
        slider = self.open_popover()
        a11y.set_fraction(slider, 0.5)
        half = to_db(AMPLITUDE * 0.5)
        self.desk.wait_for_level(500, half)
        drawn_by = self.program.windows()[0]
        os.kill(drawn_by, signal.SIGKILL)
        wait_for(lambda: not self.program.windows(), "the windows are gone", 5)
        self.assertTrue(self.program.alive())
        self.assertAlmostEqual(self.desk.wait_for_level(500, half), half, delta=0.2)
        self.assertAlmostEqual(a11y.fraction(self.open_popover()), 0.5, delta=0.01)
        self.assertNotEqual(self.program.windows(), [drawn_by])


class InTheBackground(unittest.TestCase):
    def setUp(self):
        self.addCleanup(forget_settings)
        self.program = self.enterContext(Program(arguments=["--background"]))
        self.item = self.program.item()

    def test_nothing_that_draws_stays_once_the_popover_has_been_closed_for_a_while(self):
        self.assertEqual(self.program.windows(), [])
        self.item.click()
        name = self.program.accessible_name()
        a11y.find(name, name="Open quillmere")
        self.item.click()
        # It is kept for a quick return first.
        wait_for(lambda: not self.program.windows(), "what drew the popover is gone", 40)
        self.item.click()
        a11y.find(self.program.accessible_name(), name="Open quillmere")

    def test_the_popover_is_in_no_task_bar_however_often_it_opens(self):
        for _ in range(2):
            self.item.click()
            popover = wait_for(shown_windows, "the popover shows", 5)[-1]
            states = subprocess.run(["xprop", "-id", popover, "_NET_WM_STATE"], check=True, capture_output=True,
                                    text=True).stdout
            self.assertIn("_NET_WM_STATE_SKIP_TASKBAR", states)
            self.assertIn("_NET_WM_STATE_SKIP_PAGER", states)
            self.item.click()
            wait_for(lambda: not shown_windows(), "the popover is closed", 5)

    def test_a_program_that_is_killed_leaves_no_window_behind(self):
        self.item.click()
        drawn_by = wait_for(self.program.windows, "the popover's process is there", 5)[0]
        a11y.find(self.program.accessible_name(), name="Open quillmere")
        self.program.process.kill()
        wait_for(lambda: not is_alive(drawn_by), "the popover's process is gone", 5)

    def test_the_program_ends_with_its_display(self):
        read_end, write_end = os.pipe()
        display = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "640x480x24"],
                                   pass_fds=[write_end], stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(display.wait)
        self.addCleanup(display.kill)
        os.close(write_end)
        with open(read_end, encoding="ascii") as numbers:
            number = numbers.readline().strip()
        self.program.stop()
        program = self.enterContext(Program(arguments=["--background"], environment={"DISPLAY": f":{number}"}))
        program.item()
        display.terminate()
        self.assertEqual(program.process.wait(5), 0)


if __name__ == "__main__":
    unittest.main()
