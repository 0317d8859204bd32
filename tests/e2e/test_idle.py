"""While every application is at its own level, nothing of ours stands in the graph and nothing of ours wakes with it."""
# takes: a minute

import unittest

from quillmere_e2e import graph
from quillmere_e2e.case import MixerTest
from quillmere_e2e.players import Player
from quillmere_e2e.recording import RATE
from quillmere_e2e.tones import tone_file
from quillmere_e2e.waiting import wait_for
from quillmere_e2e.wakeups import wakeups


class Idle(MixerTest):
    def wakeups_in_sound(self, seconds):
        """By thread, over so many seconds of the daemon's own clock."""
        before, end = wakeups(self.agent.process.pid), self.desk.frames() + seconds * RATE
        wait_for(lambda: self.desk.frames() >= end, f"{seconds} seconds of sound", 5 * seconds)
        after = wakeups(self.agent.process.pid)
        return {thread: after[thread] - before.get(thread, 0) for thread in after}

    def wakeups_in_two_seconds_of_sound(self):
        return self.wakeups_in_sound(2)

    def wait_until_nearly_asleep(self):
        """Two wake-ups a second at most, of all threads together; something may still be settling."""
        seen = []

        def is_nearly_asleep():
            seen.append(self.wakeups_in_sound(10))
            return sum(seen[-1].values()) <= 20

        try:
            wait_for(is_nearly_asleep, "at most 20 wake-ups in ten seconds", 60)
        finally:
            print(f"wake-ups in ten seconds: { {thread[1]: count for thread, count in seen[-1].items() if count} }", flush=True)

    def wait_until_asleep(self, threads):
        """Something may still be settling; two seconds of sound without a wake-up must come."""
        self.assertEqual(graph.Graph().ours(), [])
        self.assertTrue(threads)
        wait_for(lambda: not any(self.wakeups_in_two_seconds_of_sound().get(thread, 0) for thread in threads),
                 f"{threads} wake up no more", 20)

    def talks_to_the_daemon(self):
        return [thread for thread in wakeups(self.agent.process.pid) if thread[1] == "quillmere-audio"]

    def listed(self, count):
        return len([app for app in self.agent.state()["apps"] if app["bundleID"].startswith("qm-test-silent")]) == count

    def test_twenty_listed_applications_that_play_nothing_keep_nobody_awake(self):
        silence = tone_file(0, 0)
        for number in range(20):
            self.enterContext(Player("mpv-pipewire", f"Silent {number}", 0, file=silence)).command_mpv(
                "set_property", "pause", True)
        wait_for(lambda: self.listed(20), "all are listed", 30)
        self.wait_until_nearly_asleep()
        # And what changes is still seen: one of them goes on.
        player = self.play("pw-play", "Waker", 500)
        self.agent.wait_until_live(player)

    def test_a_playing_application_that_nobody_touches_keeps_nobody_awake(self):
        player = self.play("pw-play", "Untouched", 500)
        app = self.agent.wait_until_live(player)
        self.wait_until_nearly_asleep()
        self.assertIn(app, self.agent.state()["live"])
        player.stop()
        wait_for(lambda: app not in self.agent.state()["live"], "it is live no more", 10)

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
