#!/usr/bin/python3
"""What a tap costs: processor time and latency beside pw-loopback doing the same job, and the time to the first sample."""

import json
import os
import random
import statistics
import subprocess
import threading
import time
from pathlib import Path

from quillmere_e2e import graph
from quillmere_e2e.agent import Agent
from quillmere_e2e.players import Player
from quillmere_e2e.processes import processor_share
from quillmere_e2e.recording import Monitor
from quillmere_e2e.tones import click_file
from quillmere_e2e.waiting import wait_for
from watched import figure

DESK = "quillmere_test_sink_a"
ROUNDS = 4
SECONDS = 4
# The configuration that gives a client's audio thread real-time priority, as the mixer and the stock players ask for it,
# and the one that gives none, where the library has one.
REAL_TIME, PATIENT = ("client-rt.conf", "client.conf") if graph.library_version() < (1, 4) else ("client.conf", None)
PERIOD = 12000


class Loopback:
    """pw-loopback as a virtual device in front of the real one: an application's sound passes through a client."""

    NAME = "quillmere_bench_loopback"

    def __init__(self, configuration=REAL_TIME):
        self.configuration = configuration

    def __enter__(self):
        self.process = subprocess.Popen(
            ["pw-loopback", "--capture-props", json.dumps({"media.class": "Audio/Sink", "node.name": self.NAME,
                                                           "session.suspend-timeout-seconds": 0}),
             "--playback-props", json.dumps({"target.object": DESK, "node.name": self.NAME + "_out"})],
            stdin=subprocess.DEVNULL, env=os.environ | {"PIPEWIRE_CONFIG_NAME": self.configuration})
        wait_for(lambda: graph.Graph().node(self.NAME), "the loopback is there")
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()


def cost(pids):
    """Percent of a core of the named processes together, over the same wall time."""
    return sum(processor_share(pids, SECONDS).values())


def cost_of_tap(daemon, monitor):
    """An untouched application, and what a tap adds to the polls of the program."""
    with Player("pw-play", "Cost", 500) as player:
        monitor.wait_for_level(500, -12.04)
        untouched = cost([daemon])
        with Agent() as agent:
            app = agent.wait_until_live(player)
            idle = cost([agent.process.pid])
            agent.gain(app, 0.5)
            monitor.wait_for_level(500, -18.06)
            tapped = cost([daemon, agent.process.pid]) - idle
            # The gain is remembered: the next round begins untouched.
            agent.gain(app, 1)
            wait_for(lambda: not graph.Graph().ours(), "the tap is gone")
    return untouched, tapped


def cost_of_loopback(daemon, monitor, configuration):
    with Loopback(configuration) as loopback, Player("pw-play", "Cost", 500, target=Loopback.NAME):
        monitor.wait_for_level(500, -12.04)
        return cost([daemon, loopback.process.pid])


def measure_processor():
    """In turns, since whatever else the machine does comes and goes. A thread of real-time priority costs more to wake than
    one that waits its turn: like is compared with like, and the loopback as it comes is told beside."""
    daemon = graph.daemon_pid("pipewire")
    untouched, ours, peer, patient = [], [], [], []
    # A monitor keeps the device awake and costs the same in all of them.
    with Monitor(DESK) as monitor:
        for _ in range(ROUNDS):
            before, tapped = cost_of_tap(daemon, monitor)
            untouched.append(before)
            ours.append(tapped)
            peer.append(cost_of_loopback(daemon, monitor, REAL_TIME))
            if PATIENT:
                patient.append(cost_of_loopback(daemon, monitor, PATIENT))
    untouched, ours, peer = map(statistics.median, (untouched, ours, peer))
    figure("one tapped application, daemon and client", ours, "% of a core", "pw-loopback, real-time", peer,
           "ratio <= 1")
    figure("the same, above an untouched application", ours - untouched, "% of a core", "pw-loopback, real-time",
           peer - untouched, "ratio <= 1")
    if patient:
        figure("the same tap beside one without priority", ours, "% of a core", "pw-loopback", statistics.median(patient))


def link(source, target):
    graph.tool("pw-link", source, target)


def measured_delay(player, recorder):
    """Frames by which the device's monitor is behind the player's own output, from marks in both of one recording."""
    first = recorder.frames()
    wanted = 4 * PERIOD
    wait_for(lambda: recorder.frames() >= first + wanted, "the recording has grown")
    direct, heard = recorder.read(first, wanted, 0), recorder.read(first, wanted, 1)

    def marks(samples):
        peak = max(samples)
        return [index for index, sample in enumerate(samples) if sample > peak / 2] if peak > 0.01 else []

    delays = []
    for mark in marks(direct):
        after = [other - mark for other in marks(heard) if -PERIOD // 2 < other - mark < PERIOD // 2]
        delays += after
    if not delays:
        raise AssertionError(f"no mark of {player.name} in the recording")
    return statistics.median(delays)


def delay_through(player, prepare=None):
    with Monitor(None, "quillmere-bench-delay") as recorder:
        wait_for(lambda: graph.Graph().node("quillmere-bench-delay"), "the recorder is there")
        node = wait_for(player.streams, "the player has a stream")[0]["id"]
        name = graph.Graph().by_id[node]["info"]["props"]["node.name"]
        link(f"{name}:output_FL", "quillmere-bench-delay:input_FL")
        link(f"{DESK}:monitor_FL", "quillmere-bench-delay:input_FR")
        wait_for(lambda: recorder.frames() > PERIOD, "the recorder records")
        before = measured_delay(player, recorder)
        if prepare is None:
            return before
        prepare()
        return measured_delay(player, recorder) - before


def measure_latency():
    marks = click_file(PERIOD)
    with Player("pw-play", "Marks", 0, file=marks, binary="qm-bench-marks") as player, Agent() as agent:
        app = agent.wait_until_live(player)

        def tap():
            agent.gain(app, 0.5)
            wait_for(lambda: player.streams() and graph.Graph().ours()
                     and not any(DESK in graph.Graph().targets_of(stream["id"]) for stream in player.streams()),
                     "the application is tapped")

        ours = delay_through(player, tap)
    with Loopback(), Player("pw-play", "Marks", 0, file=marks, binary="qm-bench-marks",
                            target=Loopback.NAME) as player:
        peer = delay_through(player)
    with Player("pw-play", "Marks", 0, file=marks, binary="qm-bench-marks") as player:
        peer -= delay_through(player)
    figure("latency that a tap adds", ours, "samples", "pw-loopback", peer, "value <= 0")


class Probe:
    """When a tone changes at the device's monitor, and at what is linked to the probe."""

    LINK = "quillmere-bench-link"

    def __init__(self, hz):
        build = Path(os.environ["QUILLMERE_BUILD"])
        self.process = subprocess.Popen([build / "bench/monitor_probe", DESK, str(hz)], stdin=subprocess.DEVNULL,
                                        stdout=subprocess.PIPE, text=True)
        self.told = {"monitor": [], "link": []}
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        for line in self.process.stdout:
            place, *what = line.split()
            self.told[place].append(what)

    def settled(self, *places):
        """How much each has told, once the last of it is that the tone is steady: what is told next is new."""
        wait_for(lambda: all(self.told[place] and self.told[place][-1] == ["steady"] for place in places),
                 f"the tone is steady at {places}", 20)
        return {place: len(self.told[place]) for place in places}

    def changed(self, place, already):
        """The moment of the first change, in nanoseconds, after what had been told already."""
        wait_for(lambda: len(self.told[place]) > already[place], f"the tone changes at {place}", 10)
        return int(self.told[place][already[place]][1])

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.reader.join()
        self.process.stdout.close()


def cycle_ms():
    """The length of the device's cycles."""
    settings = graph.Graph().metadata("settings")
    return 1000 * float(settings[(0, "clock.quantum")]) / float(settings[(0, "clock.rate")])


def taps():
    """The names of their nodes; none where the graph could not be asked."""
    seen = graph.Graph()
    return [name for name in seen.ours() if ".tap-" in name] if seen.objects else None


def measure_response():
    """From setGain to the first changed sample, when that is handed over by the tap. Asked at any moment of a cycle: a gain is
    taken over when the next one begins, so a whole cycle is the longest there can be. A monitor shows everything a cycle
    later than the device is given it; by how much is seen where a tap's own output is recorded beside it."""
    random.seed(int(os.environ.get("QUILLMERE_SEED", "1")))
    live, first, behind = [], [], []
    # As long as those of a program that asks for nothing.
    with Player("gst-pipewire", "Response", 500) as player, Agent() as agent, Probe(500) as probe:
        app = agent.wait_until_live(player)
        for _ in range(5):
            already = probe.settled("monitor")
            asked = agent.gain(app, 0.8)["t"]
            first.append((probe.changed("monitor", already) - asked) / 1e6)
            tap = wait_for(taps, "there is a tap")[0]
            link(f"{tap}:output_FL", f"{probe.LINK}:input_FL")
            for gain in (0.4, 0.8, 0.3, 0.6):
                probe.settled("monitor", "link")
                # Not when the probe tells: that is always the same moment of a cycle.
                time.sleep(random.uniform(0, 0.05))
                already = probe.settled("monitor", "link")
                asked = agent.gain(app, gain)["t"]
                given = probe.changed("link", already)
                if given < asked:
                    print("the machine dropped a cycle just before: not counted")
                    continue
                live.append((given - asked) / 1e6)
                behind.append((probe.changed("monitor", already) - given) / 1e6)
            probe.settled("monitor")
            agent.gain(app, 1)
            wait_for(lambda: taps() == [], "the tap is gone")
    cycle = cycle_ms()
    late = statistics.median(behind)
    figure("setGain to the first changed sample, tap live", statistics.median(live), "ms")
    figure("the same, the slowest one", max(live), "ms", "a cycle", cycle, target=f"value <= {cycle + 2:.2f}")
    figure("setGain to the first changed sample, tap made for it", statistics.median(first) - late, "ms")
    figure("what a monitor is behind the device, not counted above", late, "ms", "a cycle", cycle)


if __name__ == "__main__":
    measure_processor()
    measure_latency()
    measure_response()
