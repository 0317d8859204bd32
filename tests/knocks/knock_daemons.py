"""The daemon, the session manager and the pulse server restarted and killed, singly and together."""

import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from quillmere_knocks.knock import main
from quillmere_knocks.stage import Staged

from quillmere_e2e import graph
from quillmere_e2e.waiting import wait_for

# The session manager and the pulse server go and come with the daemon, as under a service manager: whatever is knocked
# at together with it, all three are.
TOGETHER = (("wireplumber",), ("pipewire-pulse",), ("wireplumber", "pipewire-pulse"), ("pipewire",))


class Daemons(Staged):
    warm_after = len(TOGETHER) * 2
    verb = None

    def knock(self, number, random):
        names = TOGETHER[number % len(TOGETHER)]
        time.sleep(random.uniform(0, 0.3))
        self.ear.stop()
        # A session manager of 0.4 links nothing for anybody any more if it finds its devices in use when it starts, with us
        # or without (docs/reliability.md). So nobody plays meanwhile, only the mixer
        # goes on. A newer one finds everybody where they were.
        if "wireplumber" in names and graph.session_manager_version() < (0, 5):
            for player in self.players:
                player.stop()
        graph.session_control(self.verb, *names)
        back = time.monotonic()
        # Some clients end with the daemon, some with the last device. People start them anew.
        for player in self.players:
            if not player.alive() or not player.streams():
                player.stop()
                player.launch()
        wait_for(lambda: all(any(stream["state"] == "running" for stream in player.streams()) for player in self.players),
                 "all play again", 10)
        self.ear.start()
        return self.survived(back)


class Restarted(Daemons):
    verb = "restart"


class KilledDaemons(Daemons):
    verb = "kill"


if __name__ == "__main__":
    main({"daemons-restarted": Restarted, "daemons-killed": KilledDaemons})
