#!/usr/bin/python3
"""Cycles that are missed on a busy machine: by an application's tap, and by pw-loopback in front of another application,
side by side in one graph, so that whatever the machine does is done to both."""

import contextlib
import json
import os
import subprocess
import time
from pathlib import Path

from quillmere_e2e import graph
from quillmere_e2e.agent import Agent
from quillmere_e2e.players import Player
from quillmere_e2e.recording import Monitor
from quillmere_e2e.waiting import wait_for
from watched import figure

DESK = "quillmere_test_sink_a"
# A fourth of the usual length, as games and calls ask for it: 375 cycles a second.
QUANTUM = 128
SECONDS = float(os.environ.get("QUILLMERE_BENCH_MISSED_SECONDS", "60"))
LOOPBACK = "quillmere_bench_loopback"
# The configuration that gives a client's audio thread real-time priority, as the mixer asks for it.
REAL_TIME = "client-rt.conf" if graph.library_version() < (1, 4) else "client.conf"


@contextlib.contextmanager
def loopback():
    process = subprocess.Popen(
        ["pw-loopback", "--capture-props", json.dumps({"media.class": "Audio/Sink", "node.name": LOOPBACK,
                                                       "session.suspend-timeout-seconds": 0}),
         "--playback-props", json.dumps({"target.object": DESK, "node.name": LOOPBACK + "_out"})],
        stdin=subprocess.DEVNULL, env=os.environ | {"PIPEWIRE_CONFIG_NAME": REAL_TIME})
    wait_for(lambda: graph.Graph().node(LOOPBACK), "the loopback is there")
    yield
    process.terminate()
    process.wait()


@contextlib.contextmanager
def busy_machine():
    """Two programs for every core that never rest."""
    programs = [subprocess.Popen(["sh", "-c", "while :; do :; done"], stdin=subprocess.DEVNULL)
                for _ in range(2 * (os.cpu_count() or 1))]
    yield
    for program in programs:
        program.kill()
        program.wait()


@contextlib.contextmanager
def cycle_counts():
    """A function that gives {node's name: (cycles, missed ones)} since it was called last."""
    probe = subprocess.Popen([Path(os.environ["QUILLMERE_BUILD"]) / "bench/cycle_probe"], stdin=subprocess.PIPE,
                             stdout=subprocess.PIPE, text=True)

    def ask():
        probe.stdin.write("\n")
        probe.stdin.flush()
        return json.loads(probe.stdout.readline())

    yield ask
    probe.stdin.close()
    probe.wait()


def rate(counts, names):
    """Missed ones of 100,000 cycles: of a chain of nodes that each have to be in time."""
    cycles = max(counts[name][0] for name in names)
    return 1e5 * sum(counts[name][1] for name in names) / cycles


def main():
    with (loopback(), Agent() as agent, Monitor(DESK, latency=QUANTUM) as monitor,
          Player("pw-play", "Tapped", 500) as tapped, Player("pw-play", "Looped", 700, target=LOOPBACK)):
        agent.gain(agent.wait_until_live(tapped), 0.5)
        monitor.wait_for_level(500, -18.06)
        monitor.wait_for_level(700, -12.04)
        graph.tool("pw-metadata", "-n", "settings", "0", "clock.force-quantum", str(QUANTUM))
        # The scout beside them plays nothing.
        ours = [name for name in graph.Graph().ours() if ".tap-" in name]
        with cycle_counts() as counts, busy_machine():
            wait_for(lambda: {*ours, LOOPBACK, LOOPBACK + "_out"} <= counts().keys(), "the profiler tells of both", 20)
            time.sleep(SECONDS)
            told = counts()
    print("cycles and missed ones:", told)
    tap, peer = rate(told, ours), rate(told, [LOOPBACK, LOOPBACK + "_out"])
    figure(f"missed cycles of a tap, {QUANTUM} frames, busy machine", tap, "of 100,000", "pw-loopback", peer)
    figure("missed cycles of a tap above those of pw-loopback", tap - peer, "of 100,000", target="value <= 10")


if __name__ == "__main__":
    main()
