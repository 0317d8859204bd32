#!/usr/bin/python3
"""Many applications changed at once: how soon all taps are live, how long the main thread is away, and what taps cost by
their number."""

import time

from quillmere_e2e import graph
from quillmere_e2e.agent import Agent
from quillmere_e2e.players import Crowd
from quillmere_e2e.processes import processor_share, resident_mib
from quillmere_e2e.recording import Monitor
from quillmere_e2e.waiting import wait_for
from watched import figure

DESK = "quillmere_test_sink_a"
COUNTS = (1, 4, 16, 32, 64)
# What must hold is promised for so many.
PROMISED = (16, 32, 64)
SECONDS = 4


def measure(count):
    """Seconds until all are live, milliseconds away and late by themselves, percent of a core untouched and tapped, MiB
    untouched and tapped. Processor time is the mixer's and the daemon's."""
    with Crowd(count) as crowd, Agent() as agent:
        everybody = {member.binary for member in crowd.members}
        wait_for(lambda: everybody <= set(agent.state()["live"]), "all are live", 30)
        pids = [agent.process.pid, graph.daemon_pid("pipewire")]
        untouched = sum(processor_share(pids, SECONDS).values()), resident_mib(agent.process.pid)
        agent.away()
        since = time.monotonic()
        agent.ask("whisper")
        agent.wait_until_heard(everybody, pause=0.005)
        soon = time.monotonic() - since
        wait_for(lambda: crowd.tapped(graph.Graph()) == count, "all play through their taps alone", 60, pause=0.2)
        away, machine = agent.away()
        agent.end_watch()
        tapped = sum(processor_share(pids, SECONDS).values()), resident_mib(agent.process.pid)
    return soon, (away, machine), untouched, tapped


def growth(costs, few, many):
    """What one more costs between two numbers."""
    return (costs[many] - costs[few]) / (many - few)


def main():
    processor, memory = {}, {}
    # The device's cycles are of a usual length, and the same for all.
    with Monitor(DESK, latency=1024):
        for count in COUNTS:
            soon, (away, machine), untouched, tapped = measure(count)
            processor[count], memory[count] = tapped[0], tapped[1]
            taps = "1 tap" if count == 1 else f"{count} taps"
            is_promised = count in PROMISED
            figure(f"{taps} made at once, until all are live", soon, "s", target="value <= 2" if is_promised else None)
            figure(f"{taps} made at once, main thread away at most", away, "ms", "a thread with nothing to do", machine,
                   "value <= 50" if is_promised else None)
            figure(f"{taps}, daemon and mixer", tapped[0], "% of a core", "the same applications untouched", untouched[0])
            figure(f"{taps}, memory of the mixer", tapped[1], "MiB", "the same applications untouched", untouched[1])
    # Linear: the sixtieth costs what the tenth does.
    figure("processor for one more tap, from 16 to 64", growth(processor, 16, 64), "% of a core", "from 1 to 16",
           growth(processor, 1, 16), "ratio <= 1.5")
    figure("memory for one more tap, from 16 to 64", growth(memory, 16, 64), "MiB", "from 1 to 16", growth(memory, 1, 16),
           "ratio <= 1.5")


if __name__ == "__main__":
    main()
