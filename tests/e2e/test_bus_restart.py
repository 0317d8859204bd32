"""A session bus that goes and comes back under the running program."""
# needs: display

import subprocess
import unittest

from quillmere_e2e import graph
from quillmere_e2e.bus_names import has_owner
from quillmere_e2e.program import Program, shown_windows
from quillmere_e2e.settings import forget_settings
from quillmere_e2e.waiting import wait_for


class BusRestart(unittest.TestCase):
    def test_the_place_of_the_only_instance_is_kept_and_taken_again(self):
        self.addCleanup(forget_settings)
        program = self.enterContext(Program(arguments=["--background"]))
        wait_for(lambda: has_owner("app.quillmere.host"), "the program has its name on the bus", 10)
        graph.session_control("restart", "dbus-daemon")
        # Whether it has come back to the bus by now or not, there is no room for two.
        again = subprocess.run([program.path], stdin=subprocess.DEVNULL, timeout=10, check=False)
        self.assertEqual(again.returncode, 0)
        self.assertTrue(program.alive())
        wait_for(shown_windows, "the first one shows its window", 15)
        wait_for(lambda: has_owner("app.quillmere.host"), "the name on the bus is taken again", 40)


if __name__ == "__main__":
    unittest.main()
