"""The program's two halves: windows that hang, starts while it runs, and halves that were not made for each other."""
# needs: display

import os
import shutil
import signal
import socket
import subprocess
import tempfile
import unittest
from pathlib import Path

from quillmere_e2e import accessibility as a11y
from quillmere_e2e.case import forget_settings
from quillmere_e2e.processes import is_alive
from quillmere_e2e.program import Program, shown_windows
from quillmere_e2e.waiting import wait_for

# A wish that is not answered is noticed within five seconds; the rest is the time that a process takes to start.
NOTICED, STARTED = 5.5, 15


class Running(unittest.TestCase):
    def setUp(self):
        self.addCleanup(forget_settings)
        self.program = self.enterContext(Program(arguments=["--background"]))
        self.item = self.program.item()

    def drawn_by(self, seconds=5):
        return wait_for(self.program.windows, "a process draws the windows", seconds)[0]

    def choose(self, label):
        self.item.choose(next(number for number, text, *_ in self.item.menu() if text == label))

    def open_main_window(self):
        self.choose("Open quillmere Window")
        return wait_for(shown_windows, "the main window shows", STARTED)[0]

    def start_again(self, *arguments, **environment):
        return subprocess.run([self.program.path, *arguments], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              timeout=10, check=False, env=os.environ | environment)


class WindowsThatHang(Running):
    def hang(self):
        """Stops the process that draws, and has it let go at the end whatever became of it."""
        drawn_by = self.drawn_by()
        os.kill(drawn_by, signal.SIGSTOP)
        self.addCleanup(lambda: is_alive(drawn_by) and os.kill(drawn_by, signal.SIGKILL))
        return drawn_by

    def expect_replaced(self, hung):
        wait_for(lambda: not is_alive(hung), "the process that hangs is ended", NOTICED)
        return wait_for(self.program.windows, "another process draws", STARTED)[0]

    def test_a_click_is_done_by_the_process_that_replaces_them(self):
        self.item.click()
        a11y.find(self.program.accessible_name(), name="Open quillmere")
        self.item.click()
        wait_for(lambda: not shown_windows(), "the popover is closed", 5)
        hung = self.hang()
        self.item.click()
        self.expect_replaced(hung)
        wait_for(shown_windows, "the popover shows", STARTED)
        a11y.find(self.program.accessible_name(), name="Open quillmere")

    def test_an_open_main_window_comes_back_and_impatient_clicks_open_one_popover(self):
        self.open_main_window()
        hung = self.hang()
        for _ in range(4):
            self.item.click()
        self.expect_replaced(hung)
        wait_for(lambda: len(shown_windows()) == 2, "main window and popover show", STARTED)

    def test_a_second_start_gets_its_window(self):
        self.item.click()
        self.drawn_by()
        wait_for(shown_windows, "the popover shows", STARTED)
        self.item.click()
        wait_for(lambda: not shown_windows(), "the popover is closed", 5)
        hung = self.hang()
        self.assertEqual(self.start_again().returncode, 0)
        self.expect_replaced(hung)
        wait_for(shown_windows, "the main window shows", STARTED)

    def test_windows_that_hang_and_are_wished_for_by_nobody_are_left_alone(self):
        self.open_main_window()
        hung = self.hang()
        # Ended by nobody, it is there when it goes on.
        self.assertEqual(self.start_again("--background").returncode, 0)
        os.kill(hung, signal.SIGCONT)
        self.item.click()
        wait_for(lambda: len(shown_windows()) == 2, "main window and popover show", STARTED)
        self.assertEqual(self.program.windows(), [hung])

    def test_the_mixer_goes_on_while_nobody_reads_and_windows_that_wake_catch_up(self):
        self.open_main_window()
        hung = self.hang()
        # Far more than a socket holds, were each of them sent.
        for step in range(3000):
            self.item.scroll(-120 if step % 2 else 120)
        self.assertTrue(is_alive(hung))
        self.assertTrue(self.program.alive())
        os.kill(hung, signal.SIGCONT)
        self.item.click()
        wait_for(lambda: len(shown_windows()) == 2, "main window and popover show", STARTED)


class AnotherStart(Running):
    def test_it_shows_the_window_of_the_first_and_ends(self):
        again = self.start_again()
        self.assertEqual(again.returncode, 0)
        wait_for(shown_windows, "the main window shows", STARTED)

    def test_it_asks_for_its_place_before_it_goes_near_the_sound(self):
        with tempfile.TemporaryDirectory() as folder, socket.socket(socket.AF_UNIX) as sound:
            sound.bind(f"{folder}/daemon")
            sound.listen()
            sound.setblocking(False)
            again = self.start_again(PIPEWIRE_REMOTE=f"{folder}/daemon")
            self.assertEqual(again.returncode, 0)
            with self.assertRaises(BlockingIOError):
                sound.accept()

    def test_it_raises_nothing_in_the_background(self):
        self.assertEqual(self.start_again("--background").returncode, 0)
        # Whatever it had asked for would have been taken up before this answer.
        self.item.property("Title")
        self.assertEqual(self.program.windows(), [])


class UnlikeHalves(unittest.TestCase):
    def test_they_say_so_and_end(self):
        build = Path(os.environ["QUILLMERE_BUILD"]) / "app"
        version = subprocess.run([build / "quillmere", "--version"], check=True, capture_output=True,
                                 text=True).stdout.split()[1].encode()
        other = version[:-1] + (b"8" if version[-1:] != b"8" else b"9")
        with tempfile.TemporaryDirectory() as folder:
            shutil.copy(build / "quillmere", folder)
            windows = (build / "quillmere-windows").read_bytes()
            self.assertIn(version + b"\0", windows)
            (Path(folder) / "quillmere-windows").write_bytes(windows.replace(version + b"\0", other + b"\0"))
            (Path(folder) / "quillmere-windows").chmod(0o755)
            started = subprocess.Popen([f"{folder}/quillmere"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                       stderr=subprocess.PIPE, text=True)
            self.addCleanup(forget_settings)
            self.addCleanup(lambda: started.poll() is None and started.kill())
            said = started.communicate(timeout=30)[1]
        self.assertEqual(started.returncode, 1)
        self.assertIn(f"this is version {version.decode()} (", said)
        self.assertIn(f"says to be of {other.decode()} (", said)


if __name__ == "__main__":
    unittest.main()
