"""Clients of JACK's interface, which link themselves, are applications like any other."""

import unittest

from quillmere_e2e import graph
from quillmere_e2e.case import DESK, PHONES, MixerTest
from quillmere_e2e.tones import to_db
from quillmere_e2e.waiting import wait_for


def links_of(player):
    """Ids of the links that a client has made itself, to devices."""
    standing = graph.Graph()
    return sorted(link["id"] for link in standing.of_type("Link")
                  if link["info"]["output-node-id"] == player.streams()[0]["id"]
                  and standing.by_id[link["info"]["input-node-id"]]["info"]["props"].get("media.class") == "Audio/Sink")


class Rows(MixerTest):
    def test_a_jack_client_is_listed_and_live_until_it_quits(self):
        player = self.play("jack", "Studio", 500)
        app = self.agent.wait_until_live(player)
        wait_for(lambda: self.rows() == [app] and (self.agent.find(player) or {}).get("name") == "Studio",
                 "it is the only row, under its entry's name")
        self.assertEqual(self.agent.state()["mic"], [])
        self.assert_level(self.desk, player, 1)
        player.stop()
        wait_for(lambda: app not in self.agent.state()["live"], "it is not live any more", 5)

    def test_a_jack_client_that_is_linked_to_nothing_is_not_live(self):
        player = self.play("jack", "Unplugged Studio", 500)
        app = self.agent.wait_until_live(player)
        for link in links_of(player):
            graph.tool("pw-cli", "destroy", str(link))
        wait_for(lambda: app not in self.agent.state()["live"], "it is not live any more", 5)


class Taps(MixerTest):
    def setUp(self):
        super().setUp()
        self.addCleanup(wait_for, lambda: not graph.Graph().detours(), "nothing of ours is left beside a JACK client")

    def tapped(self, name="Studio", hz=500, gain=0.5, **options):
        player = self.play("jack", name, hz, **options)
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, gain)
        return player, app

    def test_a_jack_client_is_heard_at_its_gain(self):
        player, app = self.tapped(gain=1)
        for gain in (0.5, 0, 1, 0.25, 1):
            with self.subTest(gain=gain):
                self.agent.gain(app, gain)
                self.assert_level(self.desk, player, gain)
        wait_for(lambda: not graph.Graph().detours(), "nothing of ours is left")

    def test_its_own_links_are_never_touched(self):
        player = self.play("jack", "Studio", 500)
        app = self.agent.wait_until_live(player)
        own = links_of(player)
        self.assertEqual(len(own), 2)
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, player, 0.5)
        self.assertEqual(links_of(player), own)
        self.agent.gain(app, 1)
        wait_for(lambda: not graph.Graph().detours(), "the detour is gone")
        self.assertEqual(links_of(player), own)
        self.assert_level(self.desk, player, 1)

    def test_a_jack_client_is_routed_and_comes_back(self):
        phones = self.monitor(PHONES)
        beside = self.play("pw-play", "Beside", 900, target=PHONES)
        player, app = self.tapped(gain=1)
        for _ in range(3):
            self.agent.route(app, PHONES)
            self.assert_level(phones, player, 1)
            self.assert_level(self.desk, player, 0)
            self.agent.gain(app, 0.5)
            self.assert_level(phones, player, 0.5)
            self.agent.route(app, None)
            self.assert_level(self.desk, player, 0.5)
            self.assert_level(phones, player, 0)
            self.agent.gain(app, 1)
            self.assert_level(self.desk, player, 1)
        self.assert_level(phones, beside, 1)

    def test_one_on_a_device_of_its_own_choice_stays_there(self):
        phones = self.monitor(PHONES)
        player, app = self.tapped(target="Travel Headphones")
        self.assert_level(phones, player, 0.5)
        self.assert_level(self.desk, player, 0)
        self.agent.gain(app, 0)
        self.assert_level(phones, player, 0)

    def test_another_default_device_leaves_it_where_it_has_linked_itself(self):
        self.addCleanup(graph.set_default_sink, DESK)
        phones = self.monitor(PHONES)
        player, _ = self.tapped()
        self.assert_level(self.desk, player, 0.5)
        graph.set_default_sink(PHONES)
        self.assert_level(self.desk, player, 0.5)
        self.assert_level(phones, player, 0)
        graph.set_default_sink(DESK)
        self.assert_level(self.desk, player, 0.5)

    def test_whisper_takes_it_down_with_the_others(self):
        player, app = self.tapped(gain=1)
        other = self.play("paplay", "Other", 900)
        self.agent.wait_until_live(other)
        self.agent.ask("whisper")
        self.assert_level(self.desk, player, 0.1)
        self.assert_level(self.desk, other, 0.1)
        self.agent.ask("whisper")
        self.assert_level(self.desk, player, 1)

    def test_a_stream_and_a_jack_client_of_one_application_have_one_gain(self):
        player, app = self.tapped(name="Both")
        self.assert_level(self.desk, player, 0.5)
        stream = self.play("mpv-pipewire", "Both", 900, binary=player.binary)
        self.assert_level(self.desk, stream, 0.5)
        self.assert_level(self.desk, player, 0.5)
        self.agent.gain(app, 0.25)
        self.assert_level(self.desk, stream, 0.25)
        self.assert_level(self.desk, player, 0.25)

    def test_one_that_starts_again_has_its_gain(self):
        player, _ = self.tapped()
        self.assert_level(self.desk, player, 0.5)
        player.stop()
        self.desk.wait_for_silence(500)
        player.start()
        self.assert_level(self.desk, player, 0.5)

    def test_one_that_is_unplugged_is_silent_and_plays_on_where_it_is_plugged_in_again(self):
        player, _ = self.tapped(gain=0.25)
        self.assert_level(self.desk, player, 0.25)
        for link in links_of(player):
            graph.tool("pw-cli", "destroy", str(link))
        self.assert_level(self.desk, player, 0)
        wait_for(lambda: not graph.Graph().detours(), "nothing is to be cancelled any more")
        for channel, port in (("FL", "out_0"), ("FR", "out_1")):
            graph.tool("pw-link", f"Studio:{port}", f"{PHONES}:playback_{channel}")
        with self.monitor(PHONES) as phones:
            self.assert_level(phones, player, 0.25)
        self.assert_level(self.desk, player, 0)

    def check_odd_device(self, name, description, position):
        graph.add_sink(name, description, **{"audio.position": position, "audio.channels": position.count(",") + 1})
        self.addCleanup(graph.remove_sink, name)
        player = self.play("jack", "Studio", 500, target=description)
        app = self.agent.wait_until_live(player)
        with self.monitor(name) as monitor:
            wait_for(lambda: monitor.level(player.hz) > -40, "it is heard")
            whole = monitor.fresh_level(player.hz)
            for gain in (0.5, 1, 0.25):
                self.agent.gain(app, gain)
                monitor.wait_for_level(player.hz, whole + to_db(gain))
            self.agent.gain(app, 0)
            monitor.wait_for_silence(player.hz)
            player.stop()

    def test_on_a_device_of_one_channel(self):
        self.check_odd_device("quillmere_mono", "One Ear", "MONO")

    def test_on_a_device_of_six_channels(self):
        self.check_odd_device("quillmere_surround", "Six Ears", "FL,FR,FC,LFE,RL,RR")


class Killed(MixerTest):
    def test_a_jack_client_is_back_at_its_own_level_at_once(self):
        phones = self.monitor(PHONES)
        player = self.play("jack", "Survivor", 500)
        app = self.agent.wait_until_live(player)
        for route, gain in ((None, 0), (None, 0.5), (PHONES, 0.5)):
            with self.subTest(route=route, gain=gain):
                self.agent.route(app, route)
                self.agent.gain(app, gain)
                self.assert_level(phones if route else self.desk, player, gain)
                own = links_of(player)
                self.agent.kill()
                self.assert_level(self.desk, player, 1, seconds=1.0)
                self.assert_level(phones, player, 0)
                self.assertEqual(links_of(player), own)
                self.assertEqual(graph.Graph().detours(), [])
                self.agent.start()
                self.assert_level(phones if route else self.desk, player, gain)


if __name__ == "__main__":
    unittest.main()
