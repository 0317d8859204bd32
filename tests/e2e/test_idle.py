"""While every application is at its own level, nothing of ours stands in the graph and nothing of ours wakes with it."""

import unittest
from pathlib import Path

from quillmere_e2e import graph
from quillmere_e2e.case import MixerTest
from quillmere_e2e.recording import RATE
from quillmere_e2e.waiting import wait_for


def wakeups(pid):
    """Times that each thread has gone to sleep, by thread id and name."""
    counts = {}
    for task in Path(f"/proc/{pid}/task").iterdir():
        lines = (task / "status").read_text(encoding="utf-8").splitlines()
        counts[int(task.name), (task / "comm").read_text(encoding="utf-8").strip()] = sum(
            int(line.split()[1]) for line in lines if line.startswith("voluntary_ctxt_switches"))
    return counts


class Idle(MixerTest):
    def wakeups_in_two_seconds_of_sound(self):
        before, end = wakeups(self.agent.process.pid), self.desk.frames() + 2 * RATE
        wait_for(lambda: self.desk.frames() >= end, "two seconds of sound", 10)
        after = wakeups(self.agent.process.pid)
        return {thread: after[thread] - before.get(thread, 0) for thread in after}

    def wait_until_asleep(self, threads):
        """Something may still be settling; two seconds of sound without a wake-up must come."""
        self.assertEqual(graph.Graph().ours(), [])
        self.assertTrue(threads)
        wait_for(lambda: not any(self.wakeups_in_two_seconds_of_sound().get(thread, 0) for thread in threads),
                 f"{threads} wake up no more", 20)

    def talks_to_the_daemon(self):
        return [thread for thread in wakeups(self.agent.process.pid) if thread[1] == "quillmere-audio"]

    def test_a_playing_application_that_nobody_touches_wakes_nothing(self):
        self.agent.wait_until_live(self.play("pw-play", "Untouched", 500))
        self.wait_until_asleep(self.talks_to_the_daemon())

    def test_an_application_that_is_given_back_leaves_everything_asleep(self):
        player = self.play("pw-play", "Given back", 500)
        app = self.agent.wait_until_live(player)
        self.wait_until_asleep(self.talks_to_the_daemon())
        untouched = self.wakeups_in_two_seconds_of_sound()
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, player, 0.5)
        # The thread of the tap's cycles has no name of its own: it is the one that wakes now and didn't before.
        tapped = self.wakeups_in_two_seconds_of_sound()
        cycling = [thread for thread, count in tapped.items() if count > 50 and untouched.get(thread, 0) == 0]
        self.agent.gain(app, 1)
        wait_for(lambda: not graph.Graph().ours(), "no node of ours is left")
        self.assert_level(self.desk, player, 1)
        self.wait_until_asleep(cycling + self.talks_to_the_daemon())


if __name__ == "__main__":
    unittest.main()
