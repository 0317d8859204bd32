"""Filters as people have them: programs and modules that take sound in at a device of theirs and hand it on."""

import json
import os
import signal
import subprocess
from pathlib import Path

from . import graph
from .waiting import wait_for

MODULES = """context.properties = {{ log.level = 2 }}
context.spa-libs = {{
  audio.convert.* = audioconvert/libspa-audioconvert
  support.* = support/libspa-support
}}
context.modules = [
  {{ name = libpipewire-module-rt flags = [ ifexists nofail ] }}
  {{ name = libpipewire-module-protocol-native }}
  {{ name = libpipewire-module-client-node }}
  {{ name = libpipewire-module-adapter }}
  {{ name = {module} args = {args} }}
]
"""


def wait_for_node(name):
    """A device of a filter, ready to be linked."""
    wait_for(lambda: (graph.Graph().node(name) or {}).get("info", {}).get("state") not in (None, "creating", "error"),
             f"{name} is there")


class Program:
    """A filter that is a process; `nodes` are the devices that it gives to others."""

    def __init__(self, command, nodes):
        self.command, self.nodes, self.process = command, nodes, None

    def __enter__(self):
        log = open(Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / "filters.log", "ab")
        with log:
            self.process = subprocess.Popen(self.command, stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        for name in self.nodes:
            wait_for_node(name)
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait(5)
        wait_for(lambda: all(graph.Graph().node(name) is None for name in self.nodes), "the filter is gone")


def loopback(capture, playback, nodes):
    return Program(["pw-loopback", "--capture-props", json.dumps(capture), "--playback-props", json.dumps(playback)],
                   nodes)


def module(name, args, nodes):
    """A module of the daemon's in a process of its own, as a user's configuration starts it."""
    path = Path(os.environ["TMPDIR"]) / f"{nodes[0]}.conf"
    path.write_text(MODULES.format(module="libpipewire-module-" + name, args=json.dumps(args)), encoding="utf-8")
    return Program(["pipewire", "-c", str(path)], nodes)


class PulseModules:
    """Modules of the PulseAudio server, loaded in their order."""

    def __init__(self, *modules, nodes):
        self.modules, self.nodes, self.loaded = modules, nodes, []

    def __enter__(self):
        try:
            for words in self.modules:
                self.loaded.append(graph.tool("pactl", "load-module", *words).strip())
            for name in self.nodes:
                wait_for_node(name)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        while self.loaded:
            graph.tool("pactl", "unload-module", self.loaded.pop())
        wait_for(lambda: all(graph.Graph().node(name) is None for name in self.nodes), "the modules' devices are gone")


class HandLinked:
    """The shape of an equaliser program that links by hand: a virtual sink whose monitor it links to the device."""

    def __init__(self, name, device):
        self.name, self.device = name, device

    def __enter__(self):
        graph.add_sink(self.name, "Equaliser")
        for channel in ("FL", "FR"):
            wait_for(lambda side=channel: self._link(side), f"{self.name} is linked to {self.device}")
        return self

    def _link(self, channel):
        nothing = subprocess.DEVNULL
        return subprocess.run(["pw-link", f"{self.name}:monitor_{channel}", f"{self.device}:playback_{channel}"],
                              stdin=nothing, stdout=nothing, stderr=nothing, check=False).returncode == 0

    def __exit__(self, *_):
        graph.remove_sink(self.name)


def biquad(name, playback):
    """A filter-chain that changes nothing."""
    return module("filter-chain", {
        "node.description": "Equaliser", "media.name": "Equaliser", "audio.channels": 2, "audio.position": ["FL", "FR"],
        "filter.graph": {"nodes": [{"type": "builtin", "name": "band", "label": "bq_highshelf",
                                    "control": {"Freq": 3000.0, "Q": 1.0, "Gain": 0.0}}]},
        "capture.props": {"node.name": name, "media.class": "Audio/Sink"},
        "playback.props": {"node.name": name + "_out", "node.passive": True, **playback}}, [name])


def echo_canceller(name, capture=None):
    """One without an algorithm: `name`_sink plays, `name`_source is its microphone."""
    return module("echo-cancel", {
        "library.name": "aec/libspa-aec-null",
        "capture.props": {"node.name": name + "_capture", **(capture or {})},
        "source.props": {"node.name": name + "_source"}, "sink.props": {"node.name": name + "_sink"},
        "playback.props": {"node.name": name + "_out"}}, [name + "_sink", name + "_source"])


def combination(name, *devices):
    rules = [{"matches": [{"media.class": "Audio/Sink", "node.name": device}], "actions": {"create-stream": {}}}
             for device in devices]
    return module("combine-stream", {"combine.mode": "sink", "node.name": name, "node.description": "Both",
                                     "combine.props": {"audio.position": ["FL", "FR"]}, "stream.rules": rules}, [name])
