"""What PipeWire's graph looks like from outside, through the stock tools."""

import json
import os
import subprocess
from pathlib import Path

from .waiting import wait_for


def tool(*command, check=True, seconds=10):
    """Runs a stock tool and returns what it printed."""
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          timeout=seconds, check=False, text=True)
    if check and done.returncode != 0:
        raise AssertionError(f"{' '.join(command)} ended with {done.returncode}: "
                             f"{done.stderr.strip() or done.stdout.strip()}")
    return done.stdout


class Graph:
    """A snapshot of the graph."""

    def __init__(self):
        self.objects = []
        # What goes while it is asked for leaves nothing that can be read. It is not gone the next time; the daemon may be.
        for _ in range(3):
            try:
                self.objects = json.loads(tool("pw-dump", check=False))
                break
            except ValueError:
                continue
        self.by_id = {thing["id"]: thing for thing in self.objects}

    def of_type(self, kind):
        return [thing for thing in self.objects if thing.get("type", "").endswith(":" + kind)]

    def nodes(self, media_class=None):
        nodes = [thing for thing in self.of_type("Node") if thing.get("info")]
        return [node for node in nodes
                if media_class is None or node["info"]["props"].get("media.class") == media_class]

    def node(self, name):
        return next((node for node in self.nodes() if node["info"]["props"].get("node.name") == name), None)

    def output_streams(self):
        """Applications' output streams: id, serial, pid, state, name."""
        streams = []
        for node in self.nodes("Stream/Output/Audio"):
            props = node["info"]["props"]
            client = self.by_id.get(props.get("client.id"), {}).get("info", {}).get("props", {})
            pid = props.get("application.process.id") or client.get("application.process.id")
            if pid is None and client.get("client.api") != "pipewire-pulse":
                pid = client.get("pipewire.sec.pid")
            streams.append({"id": node["id"], "serial": props.get("object.serial"), "state": node["info"]["state"],
                            "pid": int(pid) if pid else None, "name": props.get("node.name"),
                            "media": props.get("media.name")})
        return streams

    def jack_clients(self):
        """The same of clients of JACK's interface that are linked to something."""
        clients = []
        for node in self.nodes():
            props = node["info"]["props"]
            owner = self.by_id.get(props.get("client.id"), {}).get("info", {}).get("props", {})
            if props.get("client.api") != "jack" or not self.targets_of(node["id"]):
                continue
            clients.append({"id": node["id"], "serial": props.get("object.serial"), "state": node["info"]["state"],
                            "pid": int(owner.get("pipewire.sec.pid", 0)), "name": props.get("node.name")})
        return clients

    def detours(self):
        """Names of our nodes between a client of JACK's interface and its device."""
        names = (node["info"]["props"].get("node.name", "") for node in self.nodes())
        return [name for name in names if name.startswith("app.quillmere.detour-")]

    def targets_of(self, node_id):
        """Names of the nodes that a node's output is linked to."""
        return sorted({self.by_id[link["info"]["input-node-id"]]["info"]["props"].get("node.name")
                       for link in self.of_type("Link") if link.get("info")
                       and link["info"]["output-node-id"] == node_id and link["info"]["input-node-id"] in self.by_id})

    def metadata(self, name="default"):
        """{(subject, key): value} of one metadata object."""
        return {(entry["subject"], entry["key"]): entry["value"]
                for thing in self.of_type("Metadata") if thing.get("props", {}).get("metadata.name") == name
                for entry in thing.get("metadata", [])}

    def default_sink(self):
        value = self.metadata().get((0, "default.audio.sink"))
        return value.get("name") if isinstance(value, dict) else None

    def taps(self):
        """Those of Quillmere's nodes that applications are moved to."""
        return [name for name in self.ours() if ".tap-" in name]

    def ours(self):
        """Nodes that belong to Quillmere's taps."""
        return [node["info"]["props"].get("node.name") for node in self.nodes()
                if node["info"]["props"].get("media.class", "").endswith("/Internal")]


def keep(name):
    """The whole graph as it stands goes to the session's logs: what was heard wrong is seen there."""
    Path(os.environ["QUILLMERE_SESSION_DIR"], "logs", f"{name}.graph.json").write_text(tool("pw-dump"), encoding="utf-8")


def set_default_sink(name):
    tool("pw-metadata", "0", "default.configured.audio.sink", json.dumps({"name": name}), "Spa:String:JSON")
    wait_for(lambda: Graph().default_sink() == name, f"the default device is {name}")


def remove_sink(name):
    node = Graph().node(name)
    tool("pw-cli", "destroy", str(node["id"]))
    wait_for(lambda: Graph().node(name) is None, f"{name} is gone")


def add_sink(name, description, **properties):
    """Makes a virtual device that stays until it is removed."""
    values = {"factory.name": "support.null-audio-sink", "node.name": name, "node.description": description,
              "media.class": "Audio/Sink", "audio.rate": 48000, "audio.position": "FL,FR", "object.linger": True,
              "monitor.channel-volumes": True, "session.suspend-timeout-seconds": 0, **properties}
    tool("pw-cli", "create-node", "adapter", json.dumps(values))
    wait_for(lambda: (Graph().node(name) or {}).get("info", {}).get("n-input-ports", 0) > 0, f"{name} is there")


def session_control(*words):
    """Stops, starts, restarts or kills the session's daemons."""
    root = Path(__file__).resolve().parents[3]
    tool(str(root / "scripts" / "private-session"), "--ctl", *words, seconds=60)


def _linked_version(program, library):
    # It tells the library it was compiled with and the one it runs with.
    told = tool(program, "--version").split(f"Linked with {library} ")[1].split()[0]
    return tuple(int(part) for part in told.split("."))


def library_version():
    """Of PipeWire, as numbers: (0, 3, 65)."""
    return _linked_version("pipewire", "libpipewire")


def session_manager_version():
    """Of WirePlumber, as numbers: (0, 4, 13)."""
    return _linked_version("wireplumber", "libwireplumber")


def daemon_pid(name):
    table = json.loads((Path(os.environ["QUILLMERE_SESSION_DIR"]) / "daemons.json").read_text(encoding="utf-8"))
    return table[name]
