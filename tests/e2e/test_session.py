"""The ground that the other tests stand on: stock players without Quillmere arrive at the device as they were sent."""

import subprocess
import unittest
from pathlib import Path

from quillmere_e2e import graph
from quillmere_e2e.players import KINDS, Player
from quillmere_e2e.recording import Monitor
from quillmere_e2e.tones import to_db

PRIVATE_SESSION = Path(__file__).resolve().parent.parent.parent / "scripts" / "private-session"


class StockPlayers(unittest.TestCase):
    def test_each_kind_of_player_is_measured_at_the_level_it_was_started_with(self):
        with Monitor("quillmere_test_sink_a") as monitor:
            for number, kind in enumerate(KINDS):
                hz = 400 + 300 * number
                with self.subTest(kind), Player(kind, f"Player {number}", hz, amplitude=0.2):
                    self.assertAlmostEqual(monitor.wait_for_level(hz, to_db(0.2), 0.1), to_db(0.2), delta=0.1)

    def test_several_tones_at_one_device_are_told_apart(self):
        with Monitor("quillmere_test_sink_a") as monitor, Player("pw-play", "Low", 500, amplitude=0.3), \
                Player("paplay", "High", 900, amplitude=0.03):
            self.assertAlmostEqual(monitor.wait_for_level(500, to_db(0.3), 0.1), to_db(0.3), delta=0.1)
            self.assertAlmostEqual(monitor.wait_for_level(900, to_db(0.03), 0.1), to_db(0.03), delta=0.1)
            monitor.wait_for_silence(700)

    def test_a_device_can_be_chosen_removed_and_added(self):
        with Player("pw-play", "Wanderer", 600, target="quillmere_test_sink_b"):
            with Monitor("quillmere_test_sink_b") as monitor:
                monitor.wait_for_level(600, to_db(0.25), 0.1)
            graph.remove_sink("quillmere_test_sink_b")
            with Monitor("quillmere_test_sink_a") as monitor:
                monitor.wait_for_level(600, to_db(0.25), 0.1)
            graph.add_sink("quillmere_test_sink_b", "Travel Headphones")

    def test_the_daemons_restart_on_demand(self):
        before = graph.daemon_pid("wireplumber")
        for words in (("restart", "wireplumber"), ("kill", "pipewire")):
            graph.session_control(*words)
            self.assertEqual(graph.Graph().default_sink(), "quillmere_test_sink_a")
        self.assertNotEqual(graph.daemon_pid("wireplumber"), before)

    def test_a_session_sees_no_process_but_its_own(self):
        apart = ["unshare", "--pid", "--fork", "--mount", "--propagation", "unchanged", "true"]
        if subprocess.run(apart, stderr=subprocess.DEVNULL, check=False).returncode != 0:
            self.skipTest("the kernel lets nobody but root hide processes, or not here")
        lines = "from pathlib import Path; print(*[each.read_bytes() for each in Path('/proc').glob('[0-9]*/cmdline')])"
        with subprocess.Popen(["sleep", "600"]) as outside:
            try:
                told = subprocess.run([PRIVATE_SESSION, "--no-display", "--", "/usr/bin/python3", "-c", lines],
                                      stdout=subprocess.PIPE, text=True, timeout=60, check=True).stdout
            finally:
                outside.kill()
        self.assertIn("wireplumber", told)
        self.assertNotIn("sleep\\x00600", told)


if __name__ == "__main__":
    unittest.main()
