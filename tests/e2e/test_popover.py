"""The popover and the windows' keys on an X11 desktop, with a real mouse and a real keyboard."""
# needs: display

import subprocess
import unittest

from quillmere_e2e import accessibility as a11y
from quillmere_e2e.case import forget_settings
from quillmere_e2e.program import Program
from quillmere_e2e.waiting import wait_for


def xdotool(*words):
    return subprocess.run(["xdotool", *(str(word) for word in words)], check=False, capture_output=True, text=True,
                          timeout=10).stdout.split()


def geometry(window):
    told = dict(line.split("=") for line in xdotool("getwindowgeometry", "--shell", window))
    return tuple(int(told[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))


def shown_windows():
    """The program's windows that show, with their places, the widest first."""
    found = [(window, geometry(window)) for window in xdotool("search", "--onlyvisible", "--name", "^quillmere$")]
    return sorted(found, key=lambda each: -each[1][2])


class Desktop(unittest.TestCase):
    arguments = ["--background"]
    environment = {}

    def setUp(self):
        self.addCleanup(forget_settings)
        self.program = self.enterContext(Program(arguments=self.arguments, environment=self.environment))
        self.item = self.program.item()

    def open_popover(self):
        self.item.click()
        window = wait_for(self.popover, "the popover shows", 10)
        wait_for(lambda: xdotool("getwindowfocus") == [window[0]], "the popover has the keyboard", 5)
        return window

    def popover(self):
        return next((each for each in shown_windows() if each[1][2] == 340), None)

    def main_window(self):
        return next((each for each in shown_windows() if each[1][2] > 340), None)

    def open_main_window(self):
        self.assertEqual(self.program.open_again(), 0)
        window = wait_for(self.main_window, "the main window shows", 10)
        wait_for(lambda: xdotool("getwindowfocus") == [window[0]], "the main window has the keyboard", 5)
        return window

    def wait_until_closed(self):
        wait_for(lambda: not self.popover(), "the popover is closed", 5)

    def click(self, x, y):
        xdotool("mousemove", x, y, "click", 1)


class Closing(Desktop):
    def test_a_click_into_the_programs_own_window_closes_it(self):
        _, (left, top, _, height) = self.open_main_window()
        self.open_popover()
        self.click(left + 100, top + height - 20)
        self.wait_until_closed()

    def test_a_click_into_nothing_closes_it(self):
        # Something else takes the keyboard.
        other = self.enterContext(subprocess.Popen(["xev", "-geometry", "200x200+20+500"], stdin=subprocess.DEVNULL,
                                                   stdout=subprocess.DEVNULL))
        self.addCleanup(other.kill)
        wait_for(lambda: xdotool("search", "--onlyvisible", "--name", "Event Tester"), "another window is there", 10)
        self.open_popover()
        self.click(120, 600)
        self.wait_until_closed()

    def test_escape_closes_an_open_menu_first_and_then_the_popover(self):
        self.open_popover()
        a11y.press(a11y.find("quillmere", name="Sleep timer"))
        a11y.find("quillmere", a11y.MENU_ITEM, "45 minutes")
        xdotool("key", "Escape")
        wait_for(lambda: not a11y.find_all("quillmere", a11y.MENU_ITEM, "45 minutes"), "the menu is closed", 5)
        self.assertTrue(self.popover())
        xdotool("key", "Escape")
        self.wait_until_closed()


class Keys(Desktop):
    def test_control_nought_opens_the_window_and_control_w_closes_it(self):
        self.open_popover()
        xdotool("key", "ctrl+0")
        window = wait_for(self.main_window, "the main window shows", 10)
        wait_for(lambda: xdotool("getwindowfocus") == [window[0]], "the main window has the keyboard", 5)
        self.wait_until_closed()
        xdotool("key", "ctrl+w")
        wait_for(lambda: not self.main_window(), "the main window is closed", 5)
        self.assertTrue(self.program.alive())

    def test_control_q_ends_the_program(self):
        self.open_main_window()
        xdotool("key", "ctrl+q")
        self.assertEqual(self.program.process.wait(10), 0)


class OnALowScreen(Desktop):
    # The session's screen is 1280 by 900: 427 by 300 for what is drawn at this scale.
    environment = {"QT_SCALE_FACTOR": "3"}

    def assert_on_screen(self, window):
        # How thick its frame is, the window manager tells once the window is shown.
        def fits():
            left, top, width, height = geometry(window)
            return left >= 0 and top >= 0 and left + width <= 1280 and top + height <= 900

        wait_for(fits, f"{geometry(window)} is on the screen", 3)

    def test_neither_window_is_larger_than_the_screen(self):
        self.item.click()
        popover, _ = wait_for(lambda: next(iter(shown_windows()), None), "the popover shows", 10)
        self.assert_on_screen(popover)
        wait_for(lambda: xdotool("getwindowfocus") == [popover], "the popover has the keyboard", 5)
        xdotool("key", "ctrl+0")
        main = wait_for(lambda: [each for each in shown_windows() if each[0] != popover], "the main window shows", 10)
        wait_for(lambda: xdotool("getwindowfocus") == [main[0][0]], "the main window has the keyboard", 5)
        self.assert_on_screen(main[0][0])


if __name__ == "__main__":
    unittest.main()
