"""The popover and the windows' keys on an X11 desktop, with a real mouse and a real keyboard."""
# needs: display

import subprocess
import unittest

from quillmere_e2e import accessibility as a11y
from quillmere_e2e import graph
from quillmere_e2e.case import forget_settings
from quillmere_e2e.program import Program
from quillmere_e2e.waiting import wait_for
from quillmere_e2e.xserver import Launches, XServer


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


def call_manager(window, name):
    """Has the window that stands for the window manager bear that name."""
    subprocess.run(["xprop", "-id", window, "-f", "_NET_WM_NAME", "8u", "-set", "_NET_WM_NAME", name], check=True)


class OfGnome(Desktop):
    """A desktop that calls itself GNOME's, and orders windows as others do."""

    def setUp(self):
        super().setUp()
        manager = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], check=True, capture_output=True,
                                 text=True).stdout.split()[-1]
        before = subprocess.run(["xprop", "-id", manager, "_NET_WM_NAME"], check=True, capture_output=True,
                                text=True).stdout.split('"')[1]
        self.addCleanup(call_manager, manager, before)
        call_manager(manager, "GNOME Shell")

    def test_clicks_within_it_are_the_popovers_and_other_windows_lie_over_the_desktop(self):
        main, (left, top, _, height) = self.open_main_window()
        _, (x, y, *_) = self.open_popover()
        slider = a11y.find("quillmere", a11y.SLIDER, "Output volume")
        before = a11y.fraction(slider)
        self.click(x + 240, y + 77)
        wait_for(lambda: a11y.fraction(slider) != before, "the slider has followed the click", 5)
        self.assertTrue(self.popover())
        self.click(left + 100, top + height - 20)
        self.wait_until_closed()
        wait_for(lambda: xdotool("getwindowfocus") == [main], "the main window has the keyboard", 5)


class WhereTheBackgroundTakesNoKeyboard(Desktop):
    """As with GNOME, a click beside all windows changes nothing: here nobody manages them."""

    def setUp(self):
        graph.session_control("stop", "openbox")
        self.addCleanup(graph.session_control, "start", "openbox")
        stand_in = self.enterContext(subprocess.Popen(["xev", "-geometry", "50x50+20+20"], stdin=subprocess.DEVNULL,
                                                      stdout=subprocess.DEVNULL))
        self.addCleanup(stand_in.kill)
        window = wait_for(lambda: xdotool("search", "--name", "Event Tester"), "a window is there", 10)[0]
        call_manager(window, "GNOME Shell")
        with XServer() as server:
            server.name_window(0, "_NET_SUPPORTING_WM_CHECK", int(window))
            server.name_window(int(window), "_NET_SUPPORTING_WM_CHECK", int(window))
        super().setUp()

    def test_a_click_on_it_closes_the_popover_and_leaves_nothing_there(self):
        self.open_popover()
        self.click(120, 600)
        self.wait_until_closed()
        drawn_by = self.program.windows()[0]
        wait_for(lambda: not xdotool("search", "--onlyvisible", "--pid", drawn_by), "no window of its is left", 5)


class OnAnotherDesktop(Desktop):
    environment = {"QT_LOGGING_RULES": "app.quillmere.scene.debug=true"}

    def setUp(self):
        super().setUp()
        self.window, _ = self.open_main_window()
        self.addCleanup(xdotool, "set_desktop", 0)

    def wait_until_here(self):
        def here():
            return xdotool("get_desktop_for_window", self.window) == xdotool("get_desktop")

        wait_for(here, "the window is on the desktop that shows", 5)
        wait_for(lambda: xdotool("getwindowfocus") == [self.window], "the main window has the keyboard", 5)

    def test_a_second_start_brings_the_main_window(self):
        xdotool("set_desktop", 1)
        wait_for(lambda: xdotool("get_desktop") == ["1"], "the other desktop shows", 5)
        self.assertEqual(self.program.open_again(), 0)
        self.wait_until_here()

    def test_the_menu_brings_the_main_window(self):
        xdotool("set_desktop", 1)
        wait_for(lambda: xdotool("get_desktop") == ["1"], "the other desktop shows", 5)
        self.item.choose(next(number for number, text, *_ in self.item.menu() if text == "Open quillmere Window"))
        self.wait_until_here()

    def test_a_window_in_front_is_left_in_its_place(self):
        before = self.program.log.read_text(encoding="utf-8")
        self.assertEqual(self.program.open_again(), 0)
        told = wait_for(lambda: self.program.log.read_text(encoding="utf-8")[len(before):], "the program has looked", 5)
        self.assertIn("window left in its place", told)
        self.assertNotIn("window fetched", told)


class Launched(Desktop):
    """A desktop shows that it waits for what it has launched until it hears that it is there."""

    def test_a_click_that_came_with_a_token_is_told_to_be_done(self):
        with Launches() as launches:
            self.item.click(token="shell/click-1_TIME42")
            wait_for(self.popover, "the popover shows", 10)
            wait_for(lambda: "remove: ID=shell/click-1_TIME42" in launches.messages(), "the launch is done", 5)
            # So is one that closes it.
            self.item.click(token="shell/click-2_TIME43")
            self.wait_until_closed()
            wait_for(lambda: "remove: ID=shell/click-2_TIME43" in launches.messages(), "this one too", 5)

    def test_so_is_a_start_of_the_program(self):
        with Launches() as launches:
            self.assertEqual(self.program.open_again({"DESKTOP_STARTUP_ID": "menu-7_TIME44"}), 0)
            wait_for(self.main_window, "the main window shows", 10)
            wait_for(lambda: "remove: ID=menu-7_TIME44" in launches.messages(), "the launch is done", 5)


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
