"""A default output that is gone for a moment, that is asked for and comes late, or is refused: who plays goes on."""
# takes: a minute

import os
import signal
import time
import unittest
from pathlib import Path

from quillmere_e2e import graph
from quillmere_e2e.case import DESK, MixerTest
from quillmere_e2e.mpris import BusPlayer
from quillmere_e2e.waiting import wait_for

HEADSET = "quillmere_usb_headset"
EARBUDS = "quillmere_bluetooth_earbuds"
STUBBORN = "quillmere_stubborn_speakers"
# Both session managers weigh what was chosen before; the newer one less than what a device says of itself.
USB = {"device.bus": "usb", "device.api": "alsa", "device.form-factor": "headset", "priority.session": 1500}
BLUETOOTH = {"device.bus": "bluetooth", "device.api": "bluez5", "device.form-factor": "headset",
             "priority.session": 1500}


class DefaultOutputTest(MixerTest):
    def setUp(self):
        super().setUp()
        self.player = self.enterContext(BusPlayer())
        self.addCleanup(graph.set_default_sink, DESK)
        self.agent.ask("pause", "on")
        self.wait_until_it_is_known_to_play()

    def wait_until_it_is_known_to_play(self):
        wait_for(lambda: (self.agent.state()["nowPlaying"] or {}).get("isPlaying"), "the mixer knows what plays", 5)

    def plug(self, name, **properties):
        graph.add_sink(name, name, **properties)
        self.addCleanup(lambda: graph.Graph().node(name) and graph.remove_sink(name))

    def shown_default(self):
        return next((device["uid"] for device in self.agent.state()["devices"] if device["default"]), None)

    def make_default(self, name):
        graph.set_default_sink(name)
        wait_for(lambda: self.shown_default() == name, f"the mixer knows that {name} is the default", 5)

    def wait_until_nothing_has_come_for(self, seconds):
        """That nothing happens has no event."""
        end = time.monotonic() + seconds
        wait_for(lambda: self.player.calls or time.monotonic() >= end, "the time is over", seconds + 5)
        self.assertEqual(self.player.calls, [])

    def assert_a_real_loss_still_pauses(self, device):
        """And nothing has been pressed before."""
        self.assertEqual(self.player.calls, [])
        self.wait_until_it_is_known_to_play()
        gone = time.monotonic()
        graph.remove_sink(device)
        wait_for(lambda: self.player.calls, "the player is paused", 5)
        print(f"{self.id()}: paused {time.monotonic() - gone:.2f} s after the command", flush=True)
        # Once as the default, and once more where an application is routed to it.
        self.assertEqual(set(self.player.calls), {"Pause"})
        wait_for(lambda: graph.Graph().default_sink() == DESK, "the speakers have taken over")


class AnotherTakesOver(DefaultOutputTest):
    def test_another_headset_that_takes_over_pauses_nothing(self):
        self.plug(HEADSET, **USB)
        self.plug(EARBUDS, **BLUETOOTH)
        # What was wanted before is what takes over.
        self.make_default(EARBUDS)
        self.make_default(HEADSET)
        graph.remove_sink(HEADSET)
        wait_for(lambda: graph.Graph().default_sink() == EARBUDS, "the other takes over")
        wait_for(lambda: self.shown_default() == EARBUDS, "the mixer knows", 5)
        self.assert_a_real_loss_still_pauses(EARBUDS)

    def test_a_headset_that_returns_after_its_loss_resumes(self):
        self.plug(HEADSET, **USB)
        self.make_default(HEADSET)
        self.assert_a_real_loss_still_pauses(HEADSET)
        wait_for(lambda: not self.agent.state()["nowPlaying"]["isPlaying"], "the mixer knows that it is paused", 5)
        self.plug(HEADSET, **USB)
        wait_for(lambda: len(self.player.calls) > 1, "the player is resumed", 5)
        self.assertEqual(self.player.calls, ["Pause", "Play"])

    def test_a_headset_that_an_application_is_routed_to_and_that_goes_pauses_at_once(self):
        player = self.play("pw-play", "Routed", 500)
        app = self.agent.wait_until_live(player)
        self.plug(HEADSET, **USB)
        self.make_default(DESK)
        wait_for(lambda: HEADSET in [device["uid"] for device in self.agent.state()["devices"]], "it is listed", 5)
        self.agent.route(app, HEADSET)
        graph.remove_sink(HEADSET)
        wait_for(lambda: self.player.calls == ["Pause"], "the player is paused", 2)


class Restart(DefaultOutputTest):
    """The headset belongs to the session manager, as sound cards do: it goes and comes back with it."""

    def setUp(self):
        # Where they are depends on the release.
        files = [Path(os.environ[home]) / "wireplumber" / "scripts" / "private-devices.lua"
                 for home in ("XDG_CONFIG_HOME", "XDG_DATA_HOME")]
        for file in filter(Path.exists, files):
            whole = file.read_text(encoding="utf-8")
            self.addCleanup(file.write_text, whole, encoding="utf-8")
            properties = {"factory.name": "support.null-audio-sink", "node.name": HEADSET, "media.class": "Audio/Sink",
                          "node.description": "USB Headset", "audio.position": "FL,FR",
                          "session.suspend-timeout-seconds": "0", **USB}
            entry = ", ".join(f'["{key}"] = "{value}"' for key, value in properties.items())
            # Last, so that the others are there before it.
            file.write_text(whole.replace("\n}", f"\n  {{ {entry} }},\n}}", 1), encoding="utf-8")
        self.addCleanup(graph.session_control, "restart", "wireplumber")
        graph.session_control("restart", "wireplumber")
        wait_for(lambda: graph.Graph().node(HEADSET), "the headset is there")
        super().setUp()
        self.desk.stop()

    def check(self, *words):
        if graph.session_manager_version() >= (0, 5):
            # The PulseAudio server's dummy, which goes when the first device comes, makes 0.5.8 hang for twenty seconds
            # now and then: an event over a device that goes while it is taken in never ends.
            graph.session_control("stop", "pipewire-pulse")
            self.addCleanup(graph.session_control, "start", "pipewire-pulse")
        app = self.agent.wait_for_app(self.play("pw-play", "Routed", 500))
        self.agent.route(app, HEADSET)
        self.make_default(HEADSET)
        for _ in range(3):
            graph.session_control(*words)
            wait_for(lambda: graph.Graph().default_sink() == HEADSET, "the headset is the default again")
        wait_for(lambda: self.shown_default() == HEADSET, "the mixer knows", 5)
        # As long as a device that hasn't come back is still waited for, and a little more.
        self.wait_until_nothing_has_come_for(2.5)
        self.assert_a_real_loss_still_pauses(HEADSET)

    def test_a_restart_of_the_session_manager_pauses_nothing(self):
        self.check("restart", "wireplumber")

    def test_a_crash_of_the_session_manager_pauses_nothing(self):
        self.check("kill", "wireplumber")

    def test_a_restart_of_the_daemon_pauses_nothing(self):
        self.check("restart", "pipewire")

    def test_a_crash_of_the_daemon_pauses_nothing(self):
        self.check("kill", "pipewire")


class Choice(DefaultOutputTest):
    def set_volume(self, name, volume):
        # A device that has never run knows no volume, on some releases.
        if name != DESK:
            self.monitor(name)
        graph.tool("wpctl", "set-volume", str(graph.Graph().node(name)["id"]), str(volume))

    def wait_for_master(self, volume):
        wait_for(lambda: abs(self.agent.state()["master"] - volume) < 0.005, f"the master shows {volume}", 5)

    def mixer_log(self):
        return self.agent.log.read_text(encoding="utf-8", errors="replace")

    def hold_session_manager(self):
        os.kill(graph.daemon_pid("wireplumber"), signal.SIGSTOP)
        self.addCleanup(self.let_session_manager_go)

    @staticmethod
    def let_session_manager_go():
        os.kill(graph.daemon_pid("wireplumber"), signal.SIGCONT)

    def check_late(self, before, chosen):
        self.make_default(before)
        self.set_volume(chosen, 0.3)
        self.addCleanup(self.set_volume, DESK, 1.0)
        refusals = self.mixer_log().count("did not take")
        self.hold_session_manager()
        self.agent.ask("output", chosen)
        self.wait_for_master(0.3)
        self.wait_until_nothing_has_come_for(4)
        self.assertEqual(self.shown_default(), chosen)
        self.let_session_manager_go()
        wait_for(lambda: graph.Graph().default_sink() == chosen, "the session manager does what was asked")
        # Longer than it had for its decision.
        self.wait_until_nothing_has_come_for(3)
        self.assertEqual(self.shown_default(), chosen)
        self.wait_for_master(0.3)
        self.assertEqual(self.mixer_log().count("did not take"), refusals)

    def test_a_headset_that_is_chosen_and_comes_late_pauses_nothing(self):
        self.plug(HEADSET, **USB)
        self.check_late(DESK, HEADSET)
        self.assert_a_real_loss_still_pauses(HEADSET)

    def test_speakers_that_are_chosen_and_come_late_pause_nothing(self):
        self.plug(HEADSET, **USB)
        self.check_late(HEADSET, DESK)

    def test_a_choice_that_is_refused_falls_back(self):
        self.plug(HEADSET, **USB)
        # No choice outweighs such a priority.
        self.plug(STUBBORN, **{"priority.session": 1000000})
        wait_for(lambda: graph.Graph().default_sink() == STUBBORN, "it is the default, whoever wants what")
        wait_for(lambda: self.shown_default() == STUBBORN, "the mixer knows", 5)
        self.set_volume(STUBBORN, 0.4)
        self.set_volume(HEADSET, 0.9)
        self.wait_for_master(0.4)
        refusals = self.mixer_log().count("did not take")
        self.agent.ask("output", HEADSET)
        self.wait_for_master(0.9)
        self.wait_for_master(0.4)
        self.assertEqual(self.agent.state()["output"], HEADSET, "the choice is remembered")
        wait_for(lambda: self.shown_default() == STUBBORN, "the mixer shows what is", 5)
        self.assertIn(f"did not take {HEADSET} as the default output; it is {STUBBORN}", self.mixer_log())
        self.assertEqual(self.mixer_log().count("did not take"), refusals + 1)
        self.wait_until_nothing_has_come_for(1)
        # The choice is on the session manager's record.
        graph.remove_sink(STUBBORN)
        wait_for(lambda: self.shown_default() == HEADSET, "what was wanted takes over", 5)
        self.assert_a_real_loss_still_pauses(HEADSET)


if __name__ == "__main__":
    unittest.main()
