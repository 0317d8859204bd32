"""Clients of JACK's interface, which link themselves, are applications like any other."""

import unittest

from quillmere_e2e import graph
from quillmere_e2e.case import MixerTest
from quillmere_e2e.waiting import wait_for


class Rows(MixerTest):
    def test_a_jack_client_is_listed_and_live_until_it_quits(self):
        player = self.play("jack", "Studio", 500)
        app = self.agent.wait_until_live(player)
        wait_for(lambda: [(entry["bundleID"], entry["name"]) for entry in self.agent.state()["apps"]] == [(app, "Studio")],
                 "it is the only row, under its entry's name")
        self.assertEqual(self.agent.state()["mic"], [])
        self.assert_level(self.desk, player, 1)
        player.stop()
        wait_for(lambda: app not in self.agent.state()["live"], "it is not live any more", 5)

    def test_a_jack_client_that_is_linked_to_nothing_is_not_live(self):
        player = self.play("jack", "Unplugged Studio", 500)
        app = self.agent.wait_until_live(player)
        standing = graph.Graph()
        node = player.streams()[0]["id"]
        for link in standing.of_type("Link"):
            if link["info"]["output-node-id"] == node:
                graph.tool("pw-cli", "destroy", str(link["id"]))
        wait_for(lambda: app not in self.agent.state()["live"], "it is not live any more", 5)


if __name__ == "__main__":
    unittest.main()
