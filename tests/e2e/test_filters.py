"""A filter before the device is no application: what plays into it is heard through it, at its own gain."""
# takes: a minute

import unittest

from quillmere_e2e import filters, graph
from quillmere_e2e.case import DESK, PHONES, MixerTest
from quillmere_e2e.waiting import wait_for

SINK = "quillmere_filter"
MICROPHONE = "quillmere_test_microphone"


class FilterAsDefault(MixerTest):
    """Each filter in its turn is the default output, as a user has it who put an equaliser before his speakers."""

    def use(self, a_filter, sink=SINK):
        self.enterContext(a_filter)
        self.addCleanup(graph.set_default_sink, DESK)
        graph.set_default_sink(sink)
        wait_for(lambda: [device["uid"] for device in self.agent.state()["devices"] if device["default"]] == [sink],
                 "the mixer knows the filter as the output")

    def check(self, *monitors, kinds=("pw-play", "paplay")):
        players = [self.play(kind, f"Filtered {kind}", 500 + 300 * number) for number, kind in enumerate(kinds)]
        apps = [self.agent.wait_until_live(player) for player in players]
        for monitor in monitors:
            for player in players:
                self.assert_level(monitor, player, 1)
        self.assertEqual(sorted(self.rows()), sorted(apps))
        self.assertEqual(sorted(self.agent.state()["live"]), sorted(apps))
        self.agent.gain(apps[0], 0.5)
        for monitor in monitors:
            self.assert_level(monitor, players[0], 0.5)
            self.assert_level(monitor, players[1], 1)
        self.agent.ask("whisper")
        for monitor in monitors:
            for player in players:
                self.assert_level(monitor, player, 0.1)
        self.agent.ask("whisper")
        for monitor in monitors:
            self.assert_level(monitor, players[0], 0.5)
            self.assert_level(monitor, players[1], 1)
        self.agent.ask("focus", "app", apps[0])
        self.agent.ask("focus", "start")
        for monitor in monitors:
            self.assert_level(monitor, players[0], 0.5)
            self.assert_level(monitor, players[1], 0)
        self.agent.ask("focus", "cancel")
        for monitor in monitors:
            self.assert_level(monitor, players[1], 1)
        self.assertEqual(sorted(self.rows()), sorted(apps))

    def test_a_loopback_program(self):
        self.use(filters.loopback({"media.class": "Audio/Sink", "node.name": SINK},
                                  {"node.name": SINK + "_out", "target.object": DESK}, [SINK]))
        self.check(self.desk)

    def test_a_filter_chain(self):
        self.use(filters.biquad(SINK, {"target.object": DESK}))
        self.check(self.desk)

    def test_a_filter_chain_that_goes_wherever_the_session_manager_sends_it(self):
        self.use(filters.biquad(SINK, {}))
        self.check(self.desk)

    def test_an_echo_canceller(self):
        self.use(filters.echo_canceller(SINK), SINK + "_sink")
        self.check(self.desk)

    def test_two_devices_combined(self):
        self.use(filters.combination(SINK, DESK, PHONES))
        self.check(self.desk, self.monitor(PHONES))

    def test_a_sink_that_the_pulseaudio_server_remaps(self):
        self.use(filters.PulseModules(["module-remap-sink", f"sink_name={SINK}", f"master={DESK}"], nodes=[SINK]))
        self.check(self.desk)

    def test_two_devices_that_the_pulseaudio_server_combines(self):
        self.use(filters.PulseModules(["module-combine-sink", f"sink_name={SINK}", f"slaves={DESK},{PHONES}"],
                                      nodes=[SINK]))
        self.check(self.desk, self.monitor(PHONES))

    def test_a_virtual_sink_whose_monitor_the_pulseaudio_server_loops_to_the_device(self):
        self.use(filters.PulseModules(["module-null-sink", f"sink_name={SINK}"],
                                      ["module-loopback", f"source={SINK}.monitor", f"sink={DESK}"], nodes=[SINK]))
        self.check(self.desk)

    def test_an_equaliser_that_links_its_sink_by_hand(self):
        self.use(filters.HandLinked(SINK, DESK))
        self.check(self.desk)


class FilterAside(MixerTest):
    def test_a_loopback_of_the_microphone_is_no_application_and_nobodys_call(self):
        with filters.loopback({"node.name": "quillmere_ear_in", "target.object": MICROPHONE},
                              {"node.name": "quillmere_ear_out", "target.object": PHONES}, []):
            wait_for(lambda: (graph.Graph().node("quillmere_ear_out") or {}).get("info", {}).get("state") == "running",
                     "the loopback runs")
            player = self.play("pw-play", "Beside", 500)
            app = self.agent.wait_until_live(player)
            state = self.agent.state()
            self.assertEqual(self.rows(), [app])
            self.assertEqual((state["live"], state["mic"]), ([app], []))
            self.agent.ask("whisper")
            self.assert_level(self.desk, player, 0.1)

    def test_a_player_that_sets_a_filters_properties_stays_an_application(self):
        properties = '{ node.group = "studio", node.link-group = "mine", node.virtual = true }'
        player = self.play("pw-play", "Odd One", 500, extra=["--properties", properties])
        stream = graph.Graph().by_id[player.streams()[0]["id"]]["info"]["props"]
        self.assertEqual(stream["node.link-group"], "mine")
        app = self.agent.wait_until_live(player)
        self.agent.gain(app, 0.5)
        self.assert_level(self.desk, player, 0.5)


if __name__ == "__main__":
    unittest.main()
