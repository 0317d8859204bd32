"""What the daemons do by themselves, with nothing of ours running: players on a device that goes, as their taps go with a
mixer that is killed."""

import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from quillmere_knocks.ear import Ear, Tone
from quillmere_knocks.knock import Knock, main

from quillmere_e2e import graph
from quillmere_e2e.case import DESK
from quillmere_e2e.players import Player
from quillmere_e2e.tones import to_db
from quillmere_e2e.visitors import Visitors
from quillmere_e2e.waiting import wait_for

AMPLITUDE = 0.15
GOING = "knock_going"


class Control(Knock):
    def set_up(self):
        self.players = [self.enter(Player("pw-play", "Dragged", 500, AMPLITUDE)),
                        self.enter(Player("paplay", "Sent", 900, AMPLITUDE)),
                        self.enter(Player("gst-pipewire", "Whispered", 1300, AMPLITUDE))]
        self.visitors = self.enter(Visitors())
        self.ear = self.enter(Ear(DESK))

    def knock(self, number, random):
        tones = [Tone(DESK, player.hz, to_db(AMPLITUDE)) for player in self.players]
        self.ear.settled(tones, self.ear.mark(), 5)
        self.visitors.ask("device", GOING)
        node = wait_for(lambda: graph.Graph().node(GOING), "the device is there", 5)
        streams = [player.streams()[0]["id"] for player in self.players]
        for stream in streams:
            graph.tool("pw-metadata", str(stream), "target.object", str(node["info"]["props"]["object.serial"]), "Spa:Id")
        wait_for(lambda: all(graph.Graph().targets_of(stream) == [GOING] for stream in streams), "all play there", 5)
        time.sleep(random.uniform(0, 0.3))
        mark = self.ear.mark()
        self.visitors.ask("undevice", GOING)
        seconds = self.ear.settled(tones, mark, 1.0)
        for stream in streams:
            graph.tool("pw-metadata", "-d", str(stream), "target.object")
        return seconds


if __name__ == "__main__":
    main({"control": Control})
