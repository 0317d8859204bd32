"""An application plays on the device it is routed to, and nowhere else."""

import json
import os
import signal
import subprocess
import unittest

from quillmere_e2e import graph
from quillmere_e2e.case import DESK, PHONES, MixerTest
from quillmere_e2e.recording import Monitor
from quillmere_e2e.waiting import wait_for


class Routing(MixerTest):
    def setUp(self):
        super().setUp()
        self.phones = self.monitor(PHONES)

    def test_a_routed_application_moves_to_its_device_and_back(self):
        for number, kind in enumerate(("pw-play", "paplay", "gst-pulse")):
            with self.subTest(kind):
                player = self.play(kind, f"Routed {kind}", 500 + 300 * number)
                app = self.agent.wait_until_live(player)
                self.agent.route(app, PHONES)
                self.assert_level(self.phones, player, 1)
                self.assert_level(self.desk, player, 0)
                self.agent.gain(app, 0.5)
                self.assert_level(self.phones, player, 0.5)
                self.agent.route(app, None)
                self.assert_level(self.desk, player, 0.5)
                self.assert_level(self.phones, player, 0)
                self.agent.gain(app, 1)
                self.assert_level(self.desk, player, 1)

    def test_others_stay_where_they_are(self):
        routed, other = self.play("pw-play", "Leaves", 500), self.play("paplay", "Stays", 900)
        self.agent.route(self.agent.wait_until_live(routed), PHONES)
        self.assert_level(self.phones, routed, 1)
        self.assert_level(self.desk, other, 1)
        self.assert_level(self.phones, other, 0)

    def test_an_unrouted_gain_follows_the_default_device(self):
        self.addCleanup(graph.set_default_sink, DESK)
        player = self.play("pw-play", "Follower", 500)
        self.agent.gain(self.agent.wait_until_live(player), 0.5)
        self.assert_level(self.desk, player, 0.5)
        graph.set_default_sink(PHONES)
        self.assert_level(self.phones, player, 0.5)
        self.assert_level(self.desk, player, 0)

    def test_our_choice_of_the_default_device_moves_everybody(self):
        self.addCleanup(graph.set_default_sink, DESK)
        tapped, free = self.play("pw-play", "Tapped", 500), self.play("paplay", "Free", 900)
        self.agent.gain(self.agent.wait_until_live(tapped), 0.5)
        self.assert_level(self.desk, tapped, 0.5)
        wait_for(lambda: PHONES in [d["uid"] for d in self.agent.state()["devices"]], "the mixer knows the headphones")
        self.agent.ask("output", PHONES)
        self.assert_level(self.phones, tapped, 0.5)
        self.assert_level(self.phones, free, 1)
        self.assertEqual(graph.Graph().default_sink(), PHONES)


class CutOff(MixerTest):
    def test_a_tap_whose_links_are_taken_away_is_heard_again(self):
        player = self.play("pw-play", "Patched", 500)
        self.agent.gain(self.agent.wait_until_live(player), 0.5)
        self.assert_level(self.desk, player, 0.5)
        standing = graph.Graph()
        cut = standing.taps()
        node = standing.node(cut[0])["id"]
        links = [link["id"] for link in standing.of_type("Link") if link["info"]["output-node-id"] == node]
        self.assertEqual(len(links), 2)
        for link in links:
            graph.tool("pw-cli", "destroy", str(link))
        wait_for(lambda: graph.Graph().taps() not in (cut, []), "another node has come")
        self.assert_level(self.desk, player, 0.5)


class DeafMetadata(MixerTest):
    """PipeWire 0.3.65 tells nobody of a change any more once a client has died while it was being told the metadata."""

    @staticmethod
    def deafen():
        manager = graph.daemon_pid("wireplumber")
        os.kill(manager, signal.SIGSTOP)
        try:
            # The session manager is to tell it the metadata, and doesn't.
            subprocess.run(["pw-dump"], stdout=subprocess.DEVNULL, timeout=0.5, check=False)
            raise AssertionError("pw-dump was answered by a session manager that stands still")
        except subprocess.TimeoutExpired:
            pass
        finally:
            os.kill(manager, signal.SIGCONT)

    def test_our_choice_of_the_default_device_moves_taps_though_nobody_confirms_it(self):
        self.addCleanup(graph.set_default_sink, DESK)
        tapped, free = self.play("pw-play", "Unheard", 500), self.play("paplay", "Witness", 900)
        self.agent.gain(self.agent.wait_until_live(tapped), 0.5)
        self.assert_level(self.desk, tapped, 0.5)
        phones = self.monitor(PHONES)
        wait_for(lambda: PHONES in [d["uid"] for d in self.agent.state()["devices"]], "the mixer knows the headphones")
        self.deafen()
        self.agent.ask("output", PHONES)
        self.assert_level(phones, free, 1)
        self.assert_level(phones, tapped, 0.5)


class RemovedDevice(MixerTest):
    def test_an_application_whose_device_goes_plays_on_the_default_and_returns_with_it(self):
        self.addCleanup(lambda: graph.Graph().node(PHONES) or graph.add_sink(PHONES, "Travel Headphones"))
        player = self.play("pw-play", "Unplugged", 500)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.5)
        self.agent.route(app, PHONES)
        with Monitor(PHONES) as phones:
            self.assert_level(phones, player, 0.5)
        graph.remove_sink(PHONES)
        self.assert_level(self.desk, player, 0.5)
        graph.add_sink(PHONES, "Travel Headphones")
        with Monitor(PHONES) as phones:
            self.assert_level(phones, player, 0.5, seconds=10)
        self.assert_level(self.desk, player, 0)

    def check_odd_device(self, name, description):
        devices = wait_for(lambda: {d["uid"]: d["name"] for d in self.agent.state()["devices"] if d["uid"] == name},
                           "the mixer lists the device", 10)
        # What is shown is cut.
        self.assertEqual(devices[name], description[:256])
        player = self.play("pw-play", "Odd", 500)
        self.agent.route(self.agent.wait_until_live(player), name)
        return player

    def test_a_device_with_quotes_in_its_name_can_be_listed_and_played_on(self):
        description = 'The "Quoted" \\ Device'
        graph.add_sink("quillmere_quoted", description)
        self.addCleanup(graph.remove_sink, "quillmere_quoted")
        player = self.check_odd_device("quillmere_quoted", description)
        with Monitor("quillmere_quoted") as monitor:
            self.assert_level(monitor, player, 1)

    def test_a_device_with_an_endless_name_can_be_listed_and_played_on(self):
        # The stock tool that makes devices overruns its own buffer on such a name; a client's device may have it.
        name, description = "quillmere_endless", "x" * 4096
        loopback = subprocess.Popen(
            ["pw-loopback", "--capture-props", json.dumps({"media.class": "Audio/Sink", "node.name": name,
                                                           "node.description": description,
                                                           "session.suspend-timeout-seconds": 0}),
             "--playback-props", json.dumps({"target.object": PHONES, "node.name": name + "_out"})],
            stdin=subprocess.DEVNULL)
        self.addCleanup(loopback.wait)
        self.addCleanup(loopback.terminate)
        player = self.check_odd_device(name, description)
        with Monitor(PHONES) as monitor:
            self.assert_level(monitor, player, 1)
        self.assert_level(self.desk, player, 0)


if __name__ == "__main__":
    unittest.main()
