"""A recording of what other programs play is no call: only a microphone is."""

import os
import subprocess
import unittest
from pathlib import Path

from quillmere_e2e import filters, graph
from quillmere_e2e.case import DESK, MixerTest
from quillmere_e2e.players import copied_executable
from quillmere_e2e.waiting import wait_for

MICROPHONE = "quillmere_test_microphone"


class Recorder:
    """A stock recorder under a name of its own, found by its node in the graph."""

    def __init__(self, binary, source, *arguments, desktop_entry=False):
        self.binary = binary
        self.executable = copied_executable(source, binary)
        self.command = [self.executable, *arguments]
        self.process = None
        if desktop_entry:
            folder = Path(os.environ["XDG_DATA_HOME"]) / "applications"
            folder.mkdir(parents=True, exist_ok=True)
            (folder / f"{binary}.desktop").write_text(
                f"[Desktop Entry]\nType=Application\nName={binary}\nExec={self.executable}\n", encoding="utf-8")

    def __enter__(self):
        with open(Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / f"{self.binary}.log", "ab") as log:
            self.process = subprocess.Popen(self.command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                            stderr=log)
        wait_for(self.runs, f"{self.binary} records")
        return self

    def runs(self):
        standing = graph.Graph()
        for node in standing.nodes("Stream/Input/Audio"):
            props = node["info"]["props"]
            client = standing.by_id.get(props.get("client.id"), {}).get("info", {}).get("props", {})
            pid = next((told[key] for told in (props, client) for key in ("application.process.id", "pipewire.sec.pid")
                        if key in told), None)
            linked = any(link["info"]["input-node-id"] == node["id"] for link in standing.of_type("Link"))
            if str(pid) == str(self.process.pid) and node["info"]["state"] == "running" and linked:
                return True
        return False

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(5)


def pw_record(binary, target, **properties):
    values = {"application.name": binary, **properties}
    return Recorder(binary, "/usr/bin/pw-cat", "--record", "--properties", "{ " + " ".join(
        f"{key} = {value}" for key, value in values.items()) + " }", "--target", str(target), "--format", "s16",
        os.path.join(os.environ["TMPDIR"], binary + ".wav"))


def parecord(binary, device, **options):
    return Recorder(binary, "/usr/bin/pacat", "--record", f"--client-name={binary}",
                    f"--property=application.process.binary={binary}", f"--device={device}", "--raw", **options)


class RecordingTest(MixerTest):
    def setUp(self):
        super().setUp()
        self.player = self.play("pw-play", "Recorded", 500)
        self.app = self.agent.wait_until_live(self.player)

    def watch_for(self, binary):
        """From now on the recorder's taking a microphone turns the player down."""
        self.agent.ask("rule", binary, self.app, 0.3, 500)

    def known(self, binary):
        """The mixer has seen everything that came before this: a later recorder, whose microphone it tells."""
        marker = binary + "-marker"
        with pw_record(marker, MICROPHONE):
            wait_for(lambda: marker in self.agent.state()["mic"], "the mixer knows the recorders")
        wait_for(lambda: marker not in self.agent.state()["mic"], "the mixer knows who has left")

    def assert_no_call(self, recorder, gain=1):
        self.watch_for(recorder.binary)
        with recorder:
            self.known(recorder.binary)
            state = self.agent.state()
            self.assertEqual((state["mic"], state["isDucking"]), ([], False))
            self.assertEqual(self.rows(), [self.app])
            self.assert_level(self.desk, self.player, gain)

    def assert_call(self, recorder, rows=()):
        self.watch_for(recorder.binary)
        with recorder:
            wait_for(lambda: recorder.binary in self.agent.state()["mic"], "the microphone is in use")
            self.assert_level(self.desk, self.player, 0.3)
            # A desktop entry that is installed meanwhile is seen within five seconds.
            wait_for(lambda: sorted(self.rows()) == sorted([self.app, *rows]), f"the rows are {rows}", 8)
        wait_for(lambda: self.agent.state()["mic"] == [], "nobody uses the microphone")
        self.assert_level(self.desk, self.player, 1)


class Applications(RecordingTest):
    def serial(self):
        return self.player.streams()[0]["serial"]

    def test_recording_an_application_is_no_call(self):
        self.assert_no_call(pw_record("qm-test-grabber", self.serial()))

    def test_recording_a_tapped_application_is_no_call(self):
        self.agent.gain(self.app, 0.5)
        self.assert_level(self.desk, self.player, 0.5)
        self.assert_no_call(pw_record("qm-test-grabber", self.serial()), gain=0.5)

    def test_an_application_that_is_recorded_can_be_tapped(self):
        with pw_record("qm-test-grabber", self.serial()):
            self.agent.gain(self.app, 0.5)
            self.assert_level(self.desk, self.player, 0.5)
            self.assertEqual(self.agent.state()["mic"], [])
            self.agent.gain(self.app, 1)
            self.assert_level(self.desk, self.player, 1)


class Monitors(RecordingTest):
    def test_recording_a_devices_monitor_is_no_call(self):
        self.assert_no_call(pw_record("qm-test-grabber", DESK, **{"stream.capture.sink": "true"}))

    def test_recording_a_devices_monitor_through_the_pulseaudio_server_is_no_call(self):
        self.assert_no_call(parecord("qm-test-screencast", DESK + ".monitor"))

    def test_recording_the_monitor_of_a_filter_is_no_call(self):
        with filters.biquad("quillmere_filter", {"target.object": DESK}):
            self.assert_no_call(parecord("qm-test-screencast", "quillmere_filter.monitor"))

    def test_a_source_that_is_a_devices_monitor_is_no_microphone(self):
        with filters.PulseModules(["module-remap-source", "source_name=quillmere_remapped", f"master={DESK}.monitor"],
                                  nodes=["quillmere_remapped"]):
            self.assert_no_call(parecord("qm-test-screencast", "quillmere_remapped"))


class Microphones(RecordingTest):
    def test_a_tool_on_the_microphone_is_a_call_without_a_row(self):
        self.assert_call(pw_record("qm-test-call", MICROPHONE))

    def test_an_installed_application_on_the_microphone_is_a_call_with_a_row(self):
        recorder = parecord("qm-test-meeting", MICROPHONE, desktop_entry=True)
        self.addCleanup(os.unlink, Path(os.environ["XDG_DATA_HOME"]) / "applications" / "qm-test-meeting.desktop")
        self.assert_call(recorder, rows=["qm-test-meeting"])

    def test_the_microphone_behind_an_echo_canceller_is_one(self):
        with filters.echo_canceller("quillmere_canceller", {"target.object": MICROPHONE}):
            self.assert_call(parecord("qm-test-softphone", "quillmere_canceller_source"))

    def test_a_microphone_that_is_mixed_into_a_virtual_sink_is_one(self):
        with filters.PulseModules(["module-null-sink", "sink_name=quillmere_mix"],
                                  ["module-loopback", f"source={MICROPHONE}", "sink=quillmere_mix"],
                                  nodes=["quillmere_mix"]):
            self.assert_call(parecord("qm-test-softphone", "quillmere_mix.monitor"))


class Players(RecordingTest):
    def test_a_program_without_a_desktop_entry_that_plays_has_a_row(self):
        tool = self.play("paplay", "Plain Tool", 900, desktop_entry=False)
        app = self.agent.wait_until_live(tool)
        self.assertEqual(sorted(self.rows()), sorted([self.app, app]))


if __name__ == "__main__":
    unittest.main()
