"""The threads that the program keeps while there is nothing to do."""
# needs: display

import unittest
from pathlib import Path

from quillmere_e2e import graph
from quillmere_e2e.bus_names import has_owner
from quillmere_e2e.program import Program
from quillmere_e2e.waiting import NotInTime, wait_for


def threads(pid):
    """The names of a process's threads, sorted."""
    names = []
    for task in Path(f"/proc/{pid}/task").iterdir():
        try:
            names.append((task / "comm").read_text(encoding="utf-8").strip())
        except FileNotFoundError:
            continue  # It has just ended.
    return sorted(names)


class Threads(unittest.TestCase):
    # The main thread, the pool's, the host's loop, GLib's two, and the audio daemon's. GLib 2.84 has a third one as soon as
    # anybody asks for its bus, which waits for ever to start threads for others.
    MOST = 6
    OF_RECENT_GLIB = {"pool-spawner"}

    def few(self, pid):
        return len([name for name in threads(pid) if name not in self.OF_RECENT_GLIB]) <= self.MOST

    def wait_for_few(self, pid, seconds):
        """Those that have just written the settings, or greeted the bus, go within seconds."""
        try:
            wait_for(lambda: self.few(pid), "few threads", seconds)
        except NotInTime:
            self.fail(f"there are {threads(pid)}")

    def wait_for_names(self, pid):
        """A bus that has gone is looked for again after some seconds, and then less and less often."""
        for name in ("app.quillmere.host", f"org.kde.StatusNotifierItem-{pid}-1"):
            wait_for(lambda name=name: has_owner(name), f"{name} is on the bus", 40)

    def test_the_program_with_its_windows_closed_keeps_six_at_most(self):
        with Program(arguments=["--background"]) as program:
            self.wait_for_names(program.process.pid)
            self.wait_for_few(program.process.pid, 30)

    def test_a_bus_that_has_come_back_leaves_none_behind(self):
        with Program(arguments=["--background"]) as program:
            self.wait_for_names(program.process.pid)
            graph.session_control("restart", "dbus-daemon")
            self.wait_for_names(program.process.pid)
            self.wait_for_few(program.process.pid, 30)


if __name__ == "__main__":
    unittest.main()
