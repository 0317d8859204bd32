"""The transport of the now-playing strip: it reaches the player that is shown, and no other."""
# needs: display

import unittest

from quillmere_e2e import accessibility as a11y
from quillmere_e2e.mpris import BusPlayer
from quillmere_e2e.program import Program
from quillmere_e2e.settings import forget_settings
from quillmere_e2e.waiting import wait_for


class Transport(unittest.TestCase):
    def test_each_button_reaches_the_player_that_is_shown(self):
        self.addCleanup(forget_settings)
        idle = self.enterContext(BusPlayer("quillmereIdle", "Another Song"))
        idle.set_status("Paused")
        shown = self.enterContext(BusPlayer("quillmereShown", "A Steady Song"))
        program = self.enterContext(Program(arguments=["--background"]))
        item = program.item()
        item.choose(next(number for number, text, *_ in item.menu() if text == "Open quillmere Window"))
        wait_for(lambda: program.windows(), "a process draws the windows", 10)
        name = program.accessible_name()
        a11y.find(name, a11y.LABEL, "A Steady Song", 20)
        presses = (("Next track", "Next"), ("Previous track", "Previous"), ("Pause", "PlayPause"), ("Play", "PlayPause"))
        for number, (button, method) in enumerate(presses, 1):
            with self.subTest(button):
                a11y.press(a11y.find(name, a11y.BUTTON, button, 10))
                wait_for(lambda: len(shown.calls) == number, f"{method} reaches the player", 5)
                self.assertEqual(shown.calls[-1], method)
        self.assertEqual(shown.status, "Playing")
        self.assertEqual(idle.calls, [])


if __name__ == "__main__":
    unittest.main()
