"""The real program in a Wayland session: the popover on a tiling compositor, through its layer shell or its X server."""
# needs: display

import os
import re
import subprocess
import unittest

from quillmere_e2e import accessibility as a11y
from quillmere_e2e import compositor
from quillmere_e2e.case import AMPLITUDE, forget_settings
from quillmere_e2e.compositor import Sway
from quillmere_e2e.players import Player
from quillmere_e2e.program import Program
from quillmere_e2e.waiting import wait_for

WIDTH, HEIGHT, GAP = 340, 331, 6
GROUND = "#0d0f12"


def has_layer_shell():
    """Whether the program was built with it."""
    linked = subprocess.run(["ldd", f"{os.environ['QUILLMERE_BUILD']}/app/quillmere-windows"], check=True,
                            capture_output=True, text=True).stdout
    return "LayerShellQt" in linked


@unittest.skipIf(compositor.why_not(), f"no compositor here: {compositor.why_not()}")
class Session(unittest.TestCase):
    options = {}

    def setUp(self):
        self.addCleanup(forget_settings)
        self.sway = self.enterContext(Sway(**self.options))
        environment = self.sway.environment | {"QT_LOGGING_RULES": "app.quillmere.scene.debug=true"}
        self.program = self.enterContext(Program(arguments=["--background"], environment=environment))
        self.item = self.program.item()

    def click_icon(self, x=1180, y=12):
        """As a panel passes it on, with the pointer on the icon."""
        self.sway.point(x, y)
        self.item.click(x, y)

    def is_shown(self):
        return bool(a11y.find_all("quillmere", name="Open quillmere"))

    def wait_until_shown(self):
        wait_for(self.is_shown, "the popover shows", 10)
        # What can be seen can be pointed at.
        return wait_for(self.popover, "the popover has its place", 10)

    def wait_until_closed(self):
        wait_for(lambda: not self.is_shown(), "the popover is closed", 5)

    def wait_until_gone(self):
        """As before, where the main window has a button of that name too."""
        wait_for(lambda: not a11y.find_all("quillmere", name="Quit quillmere"), "the popover is closed", 5)

    def main_window(self):
        """Its node in sway's tree; None while it isn't there."""
        return next((window for window in self.sway.windows() if window["name"] == "quillmere"), None)

    def open_main_window(self):
        self.assertEqual(self.program.open_again(self.sway.environment), 0)
        return wait_for(self.main_window, "the main window is there", 10)

    def popover(self):
        """Where the popover is in the picture: left, top, width, height."""
        path = self.sway.picture(self.sway.folder / "now.png")
        # All that has the colour of its ground, and the edge of one pixel around it.
        told = subprocess.run(["convert", str(path), "-fill", "black", "+opaque", GROUND, "-fill", "white",
                               "-opaque", GROUND, "-trim", "-format", "%wx%h%O", "info:"], check=True, capture_output=True, text=True).stdout
        width, height, left, top = (int(number) for number in re.fullmatch(r"(\d+)x(\d+)\+(\d+)\+(\d+)", told).groups())
        return None if (width, height) == (compositor.WIDTH, compositor.HEIGHT) else (left - 1, top - 1, width + 2, height + 2)


class Popover(Session):
    def test_it_is_a_popover_at_the_panels_corner_and_no_tile(self):
        self.click_icon()
        left, top, width, height = self.wait_until_shown()
        self.assertEqual((width, height), (WIDTH, HEIGHT))
        self.assertEqual(left, compositor.WIDTH - GAP - WIDTH)
        self.assertGreaterEqual(top, GAP)
        self.assertLess(top, 40)
        self.assertEqual(self.sway.windows(), [])

    def test_it_hangs_from_the_icon(self):
        self.click_icon(x=600)
        left, *_ = self.wait_until_shown()
        self.assertEqual(left, 600 - WIDTH // 2)

    def test_escape_closes_it_though_nobody_has_clicked_into_it(self):
        self.click_icon()
        self.wait_until_shown()
        self.sway.key("Escape")
        self.wait_until_closed()

    def test_a_click_beside_it_closes_it(self):
        self.click_icon()
        self.wait_until_shown()
        self.sway.click(300, 600)
        self.wait_until_closed()

    def test_a_click_into_the_programs_own_window_closes_it(self):
        self.open_main_window()
        self.click_icon()
        wait_for(self.is_shown, "the popover shows", 10)
        self.sway.click(200, 700)
        self.wait_until_gone()

    def test_it_makes_way_for_the_window_that_a_second_start_asks_for(self):
        self.open_main_window()
        self.click_icon()
        wait_for(self.is_shown, "the popover shows", 10)
        self.assertEqual(self.program.open_again(self.sway.environment), 0)
        self.wait_until_gone()
        wait_for(lambda: self.main_window()["focused"], "the window has the keyboard", 5)

    def test_a_click_within_it_is_the_popovers(self):
        self.click_icon()
        left, top, *_ = self.wait_until_shown()
        slider = a11y.find("quillmere", a11y.SLIDER, "Output volume")
        self.sway.click(left + 240, top + 77)
        wait_for(lambda: a11y.fraction(slider) < 0.95, "the slider has followed the click", 5)
        self.assertTrue(self.is_shown())

    def test_the_icon_closes_it_and_opens_it_again(self):
        for _ in range(2):
            self.click_icon()
            self.wait_until_shown()
            self.item.click(1180, 12)
            self.wait_until_closed()


class WhereWindowsMayAskForTheKeyboard(Session):
    options = {"extra": "focus_on_window_activation focus"}

    def test_its_button_brings_the_main_window_from_another_workspace(self):
        self.open_main_window()
        self.sway.command("workspace 2")
        wait_for(lambda: not self.main_window()["focused"], "the other workspace is shown", 5)
        self.click_icon()
        left, top, *_ = self.wait_until_shown()
        # The second of the two buttons in its head; only a real click is a reason for the compositor.
        self.sway.click(left + 312, top + 20)
        wait_for(lambda: self.main_window()["focused"], "the window has the keyboard", 5)
        self.wait_until_gone()


class OnAnotherWorkspace(Session):
    """sway only marks a window that asks for the keyboard without a reason that it knows."""

    def setUp(self):
        super().setUp()
        self.open_main_window()
        wait_for(lambda: self.main_window()["focused"], "the window has the keyboard", 5)

    def leave(self):
        self.sway.command("workspace 2")
        wait_for(lambda: not self.main_window()["focused"], "the other workspace is shown", 5)

    def wait_until_here(self):
        wait_for(lambda: (self.main_window() or {}).get("focused"), "the window has the keyboard", 10)
        shown = next(space["name"] for space in self.sway.message("-t", "get_workspaces") if space["focused"])
        self.assertEqual(shown, "2")

    def test_a_second_start_brings_the_main_window(self):
        self.leave()
        self.assertEqual(self.program.open_again(self.sway.environment), 0)
        self.wait_until_here()

    def test_the_menu_brings_it_with_the_section_that_it_names(self):
        self.leave()
        self.item.choose(next(number for number, text, *_ in self.item.menu() if text == "Settings…"))
        self.wait_until_here()
        wait_for(lambda: any(a11y.selected(each) for each in a11y.find_all("quillmere", name="Settings")),
                 "its section shows", 5)

    def test_a_window_in_front_is_left_in_its_place(self):
        before = self.main_window()["id"]
        log = self.program.log.read_text(encoding="utf-8")
        self.assertEqual(self.program.open_again(self.sway.environment), 0)
        told = wait_for(lambda: self.program.log.read_text(encoding="utf-8")[len(log):], "the program has looked", 5)
        self.assertIn("window left in its place", told)
        self.assertEqual(self.main_window()["id"], before)


class WithoutAnXServer(Session):
    options = {"xwayland": False}

    def test_it_is_no_tile_either(self):
        self.click_icon()
        left, top, width, height = self.wait_until_shown()
        self.assertEqual((width, height), (WIDTH, HEIGHT))
        if has_layer_shell():
            self.assertEqual((left, top), (compositor.WIDTH - GAP - WIDTH, GAP))


class AtScaleTwo(Session):
    options = {"scale": 2, "size": (1366, 768)}

    def test_the_main_window_is_no_larger_than_the_screen(self):
        rect = self.open_main_window()["rect"]
        self.assertGreaterEqual(rect["x"], 0)
        self.assertGreaterEqual(rect["y"], 0)
        self.assertLessEqual(rect["x"] + rect["width"], 683)
        self.assertLessEqual(rect["y"] + rect["height"], 384)


if __name__ == "__main__":
    unittest.main()
