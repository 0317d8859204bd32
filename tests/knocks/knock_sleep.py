"""The machine sleeps: every process of the session stands still at once, and goes on later as if nothing had been."""

import os
import signal
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from quillmere_knocks.knock import main
from quillmere_knocks.stage import Staged

from quillmere_e2e import graph

# Seconds. One in six sleeps is long enough for whatever counts in minutes.
SHORT, LONG = (2, 12), (61, 75)


class Sleep(Staged):
    warm_after = 2

    def knock(self, number, random):
        pids = [graph.daemon_pid(name) for name in ("dbus-daemon", "pipewire", "wireplumber", "pipewire-pulse")]
        pids += [player.pid for player in self.players] + [self.agent.process.pid]
        pids += [monitor.process.pid for monitor in self.ear.monitors.values()]
        random.shuffle(pids)
        slept = random.uniform(*(LONG if number % 6 == 5 else SHORT))
        for pid in pids:
            os.kill(pid, signal.SIGSTOP)
        try:
            time.sleep(slept)
        finally:
            for pid in pids:
                os.kill(pid, signal.SIGCONT)
        return self.survived(time.monotonic())


class Clock(Staged):
    """Somebody sets the clock, far ahead and back."""

    def set_up(self):
        super().set_up()
        self.ahead = 0

    def knock(self, number, random):
        seconds = random.choice((-1, 1)) * random.choice((1, 59, 3600, 86400, 400 * 86400))
        self.agent.ask("clock", seconds)
        self.ahead += seconds
        since = time.monotonic()
        heard = self.heard(self.ear.mark())
        self.check_list(since)
        # It still does what it is told.
        self.agent.gain(self.apps[0], 0.9)
        self.agent.gain(self.apps[0], 0.5)
        return max(heard, self.survived(time.monotonic()))


if __name__ == "__main__":
    main({"sleep": Sleep, "clock": Clock})
