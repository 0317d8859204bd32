"""The automations on real sound: ducking, whisper, focus, the master, and a player paused by a device that goes."""

import contextlib
import math
import os
import sqlite3
import subprocess
import time
import unittest
from pathlib import Path

from gi.repository import Gio, GLib

from quillmere_e2e import graph
from quillmere_e2e.case import AMPLITUDE, DESK, PHONES, MixerTest
from quillmere_e2e.players import Call
from quillmere_e2e.recording import Monitor
from quillmere_e2e.tones import RATE, tone_file, tone_level
from quillmere_e2e.waiting import wait_for

HEADSET = "quillmere_usb_headset"


class AutomationTest(MixerTest):
    def set_rule(self, app, target=0.3, delay_millis=500):
        self.agent.ask("rule", "qm-test-call", app, target, delay_millis)


class AutoDuck(AutomationTest):
    def test_a_recording_of_a_device_is_no_call(self):
        player = self.play("pw-play", "Music", 500)
        app = self.agent.wait_until_live(player)
        self.agent.ask("rule", "pw-record,pw-cat,quillmere-test-monitor", app, 0.3, 0)
        with Monitor(PHONES):
            self.assert_level(self.desk, player, 1)
            self.assertEqual(self.agent.state()["mic"], [])


class WhisperAndFocus(AutomationTest):
    def test_whisper_takes_everything_down_and_back(self):
        low, high = self.play("pw-play", "Low", 200), self.play("paplay", "High", 900)
        app = self.agent.wait_until_live(low)
        self.agent.wait_until_live(high)
        self.agent.gain(app, 0.6)
        self.assert_level(self.desk, low, 0.6)
        self.agent.ask("whisper")
        self.assert_level(self.desk, low, 0.1)
        self.assert_level(self.desk, high, 0.1)
        self.agent.ask("whisper")
        self.assert_level(self.desk, low, 0.6)
        self.assert_level(self.desk, high, 1)

    def test_focus_silences_all_but_one(self):
        kept, others = self.play("pw-play", "Kept", 500), self.play("paplay", "Silenced", 900)
        self.agent.wait_until_live(others)
        self.agent.ask("focus", "app", self.agent.wait_until_live(kept))
        self.agent.ask("focus", "start")
        self.assertEqual(self.agent.state()["phase"], "focus")
        self.assert_level(self.desk, kept, 1)
        self.assert_level(self.desk, others, 0)
        self.agent.ask("focus", "cancel")
        self.assert_level(self.desk, others, 1)
        self.assertEqual(self.agent.state()["phase"], "idle")


class Clocks(AutomationTest):
    """What ends by the wall clock. A minute is the shortest that can be asked for; the clock is put ahead, as it is when
    the machine wakes from a sleep, and the next tick, within a second, has to find that out."""

    GLASS_HZ = 1567.98
    HERO_HZ = 698.46

    def wait_until_heard(self, monitor, first, hz):
        """That a tone is heard for a tenth of a second, anywhere in the recording from a frame on."""
        step, length = RATE // 20, RATE // 10
        looked = first

        def is_heard():
            nonlocal looked
            while looked + length <= monitor.frames():
                if tone_level(monitor.read(looked, length), hz) > -30:
                    return True
                looked += step
            return False

        wait_for(is_heard, f"{hz} Hz is heard", 5)

    def stored_master(self):
        file = Path(os.environ["XDG_CONFIG_HOME"]) / "quillmere" / "defaults.sqlite"
        with contextlib.closing(sqlite3.connect(f"file:{file}?mode=ro", uri=True)) as settings:
            row = settings.execute("SELECT value FROM defaults WHERE key = 'quillmere.masterGain'").fetchone()
        return row[0] if row else None

    def test_a_sleep_timer_walks_the_master_down_and_ends_at_nothing(self):
        set_volume = lambda volume: graph.tool("wpctl", "set-volume", str(graph.Graph().node(DESK)["id"]), str(volume))
        self.addCleanup(set_volume, 1.0)
        player = self.play("pw-play", "Lullaby", 500)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.5)
        self.agent.ask("master", 0.8)
        # Sliders are cubic.
        heard = 0.5 * 0.8 ** 3
        self.assert_level(self.desk, player, heard)
        began = time.monotonic()
        self.agent.ask("sleep", 1)
        self.assertTrue(self.agent.state()["sleeping"])
        wait_for(lambda: self.agent.state()["master"] < 0.8 - 0.8 * 2 / 60, "two steps by itself", 10)

        self.agent.ask("clock", 30)
        wait_for(lambda: self.agent.state()["master"] <= 0.8 * 30 / 60, "half of the way at half of the time", 5)
        self.assertGreaterEqual(self.agent.state()["master"], 0.8 * (30 - (time.monotonic() - began) - 1) / 60)
        self.assertTrue(self.agent.state()["sleeping"])
        self.assertNotEqual(self.stored_master(), 0)

        self.agent.ask("clock", 30)
        wait_for(lambda: not self.agent.state()["sleeping"], "the timer has ended", 5)
        self.assertEqual(self.agent.state()["master"], 0)
        wait_for(lambda: self.stored_master() == 0, "the end is stored", 5)
        # The timer moves the fader. The device's own volume, and the gains, are not its own to move.
        self.assert_level(self.desk, player, heard)
        self.agent.ask("master", 0.5)
        self.assert_level(self.desk, player, 0.5 * 0.5 ** 3)
        self.assertEqual(self.agent.state()["master"], 0.5)

    def test_a_sleep_timer_that_is_cancelled_leaves_the_master_on_its_way(self):
        self.agent.ask("master", 1)
        self.agent.ask("sleep", 1)
        self.agent.ask("clock", 24)
        wait_for(lambda: self.agent.state()["master"] <= 0.6, "the way so far", 5)
        self.agent.ask("sleep", "-")
        left = self.agent.state()
        self.assertFalse(left["sleeping"])
        self.assertGreater(left["master"], 0.4)
        # Another clockwork with the same tick ends after the timer would have.
        self.agent.ask("focus", "minutes", 1, 1)
        self.agent.ask("focus", "start")
        self.agent.ask("clock", 60)
        wait_for(lambda: self.agent.state()["phase"] == "break", "the next tick", 5)
        self.assertEqual(self.agent.state()["master"], left["master"])

    def test_a_focus_block_goes_through_its_break_to_its_end_and_both_are_rung(self):
        kept, others = self.play("pw-play", "Kept", 200), self.play("paplay", "Silenced", 3000)
        app = self.agent.wait_until_live(others)
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, others, 0.5)
        self.agent.ask("focus", "app", self.agent.wait_until_live(kept))
        self.agent.ask("focus", "minutes", 1, 1)
        self.agent.ask("focus", "start")
        self.assertEqual(self.agent.state()["phase"], "focus")
        self.assert_level(self.desk, kept, 1)
        self.assert_level(self.desk, others, 0)

        first = self.desk.frames()
        self.agent.ask("clock", 50)
        self.assert_level(self.desk, others, 0)
        self.assertEqual(self.agent.state()["phase"], "focus")
        self.agent.ask("clock", 10)
        wait_for(lambda: self.agent.state()["phase"] == "break", "the break", 5)
        self.wait_until_heard(self.desk, first, self.GLASS_HZ)
        self.assert_level(self.desk, kept, 1)
        self.assert_level(self.desk, others, 0.5)

        first = self.desk.frames()
        self.agent.ask("clock", 60)
        wait_for(lambda: self.agent.state()["phase"] == "idle", "the end", 5)
        self.wait_until_heard(self.desk, first, self.HERO_HZ)
        self.assert_level(self.desk, kept, 1)
        self.assert_level(self.desk, others, 0.5)
        apps = {each["bundleID"] for each in self.agent.state()["apps"]}
        self.assertFalse([each for each in apps if "quillmere" in each], "our own sounds are no application")


class Master(AutomationTest):
    def set_volume(self, volume):
        node = graph.Graph().node(DESK)["id"]
        graph.tool("wpctl", "set-volume", str(node), str(volume))

    def test_the_desktops_own_volume_moves_the_master(self):
        self.addCleanup(self.set_volume, 1.0)
        for volume in (0.5, 0.8, 0.3, 0.9, 0.6):
            self.set_volume(volume)
            wait_for(lambda: abs(self.agent.state()["master"] - volume) < 0.005, f"the master shows {volume}", 2, 0.002)

    def test_the_master_moves_the_desktops_volume_and_what_is_heard(self):
        self.addCleanup(self.set_volume, 1.0)
        player = self.play("pw-play", "Loud", 500)
        self.agent.wait_until_live(player)
        self.agent.ask("master", 0.5)
        # Sliders are cubic: half-way is an eighth of the amplitude.
        self.assert_level(self.desk, player, 0.125)
        node = graph.Graph().node(DESK)["id"]
        self.assertIn("0.50", graph.tool("wpctl", "get-volume", str(node)))
        self.agent.ask("master", 1)
        self.assert_level(self.desk, player, 1)


class DeviceLoss(AutomationTest):
    """A stock player with its own MPRIS, on a device that looks like a USB headset."""

    def start_mpv(self):
        log = open(Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / "mpv.log", "ab")
        with log:
            process = subprocess.Popen(
                ["mpv", "--no-video", "--loop", "--no-terminal", "--ao=pipewire,pulse", "--title=A Steady Tone",
                 str(tone_file(500, AMPLITUDE))], stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        wait_for(lambda: self.status() == "Playing", "mpv plays", 10)
        return process

    @staticmethod
    def status():
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        try:
            return bus.call_sync("org.mpris.MediaPlayer2.mpv", "/org/mpris/MediaPlayer2",
                                 "org.freedesktop.DBus.Properties", "Get",
                                 GLib.Variant("(ss)", ("org.mpris.MediaPlayer2.Player", "PlaybackStatus")),
                                 GLib.VariantType("(v)"), Gio.DBusCallFlags.NONE, 2000, None).unpack()[0]
        except GLib.Error:
            return None

    def test_a_headset_that_goes_pauses_the_player_and_its_return_resumes_it(self):
        graph.add_sink(HEADSET, "USB Headset", **{"device.bus": "usb", "device.api": "alsa",
                                                  "device.form-factor": "headset"})
        self.addCleanup(lambda: graph.Graph().node(HEADSET) and graph.remove_sink(HEADSET))
        self.addCleanup(graph.set_default_sink, DESK)
        graph.set_default_sink(HEADSET)
        self.agent.ask("pause", "on")
        self.start_mpv()
        with Monitor(HEADSET) as headset:
            headset.wait_for_level(500, 20 * math.log10(AMPLITUDE))
        wait_for(lambda: (self.agent.state()["nowPlaying"] or {}).get("isPlaying"), "the mixer knows what plays", 5)
        graph.remove_sink(HEADSET)
        wait_for(lambda: self.status() == "Paused", "the player is paused", 5)
        self.desk.wait_for_silence(500)
        graph.add_sink(HEADSET, "USB Headset", **{"device.bus": "usb", "device.api": "alsa",
                                                  "device.form-factor": "headset"})
        wait_for(lambda: self.status() == "Playing", "the player plays again", 10)
        with Monitor(HEADSET) as headset:
            headset.wait_for_level(500, 20 * math.log10(AMPLITUDE))


class KilledInTheMiddle(AutomationTest):
    starts_mixer = False

    def stored_gains(self):
        return {app["bundleID"]: app["gain"] for app in self.agent.state()["apps"]}

    def test_a_duck_a_whisper_or_a_block_that_is_killed_ten_times_compounds_nothing(self):
        random = self.seeded_random()
        player = self.play("pw-play", "Interrupted", 500)
        call = Call()
        self.addCleanup(call.stop)
        self.agent.start()
        app = self.agent.wait_until_live(player)
        self.set_rule(app)
        self.agent.gain(app, 0.7)
        self.assert_level(self.desk, player, 0.7)
        self.agent.kill()
        for number in range(10):
            what = random.choice(("duck", "whisper", "focus"))
            moment = random.uniform(0, 0.4)
            with self.subTest(number=number, what=what, moment=round(moment, 4)):
                self.agent.start()
                self.agent.wait_until_live(player)
                self.assert_level(self.desk, player, 0.7)
                self.assertAlmostEqual(self.stored_gains()[app], 0.7, places=5)
                if what == "duck":
                    call.start()
                else:
                    self.agent.ask(*(("whisper",) if what == "whisper" else ("focus", "start")))
                deadline = time.monotonic() + moment
                wait_for(lambda: time.monotonic() >= deadline, "the moment", 5, 0.001)
                self.agent.kill()
                call.stop()
                self.assert_level(self.desk, player, 1, seconds=1.0)
                self.assertEqual(graph.Graph().ours(), [])


if __name__ == "__main__":
    unittest.main()
