"""What is heard at a device: a running recording of its monitor, read while it grows."""

import array
import os
import signal
import struct
import subprocess
import tempfile
import time
from pathlib import Path

from .tones import RATE, tone_level
from .waiting import wait_for

CHANNELS = 2
FRAME = 4 * CHANNELS


class Monitor:
    """Records a device's monitor (32-bit float, stereo, 48 kHz) from start to stop. Frames count from the start.

    Without a device it records what is linked to it by hand, as the node `name`."""

    def __init__(self, sink=None, name="quillmere-test-monitor", latency=256):
        self.sink = sink
        self.name = name
        # In frames: nobody's cycles are longer than those of the most impatient.
        self.latency = latency
        self.process = None
        handle, path = tempfile.mkstemp(prefix="monitor-", suffix=".wav")
        os.close(handle)
        self.path = Path(path)
        self.offset = None

    def start(self):
        properties = (f'{{ node.name = "{self.name}", media.name = "{self.name}", node.dont-reconnect = true'
                      + (", stream.capture.sink = true }" if self.sink else " }"))
        log = open(Path(os.environ["QUILLMERE_SESSION_DIR"]) / "logs" / "monitor.log", "ab")
        with log:
            self.process = subprocess.Popen(
                ["pw-record", "--properties", properties, "--target", self.sink or "0", "--format", "f32", "--rate", str(RATE),
                 "--channels", str(CHANNELS), "--latency", str(self.latency), str(self.path)], stdin=subprocess.DEVNULL,
                stdout=log, stderr=log)
        if self.sink:
            wait_for(lambda: self.frames() > RATE // 10, f"the monitor of {self.sink} delivers")
        return self

    def _data_offset(self):
        if self.offset is None and self.path.stat().st_size > 12:
            with open(self.path, "rb") as file:
                head = file.read(4096)
            position = 12
            while position + 8 <= len(head):
                name, size = struct.unpack("<4sI", head[position:position + 8])
                if name == b"data":
                    self.offset = position + 8
                    break
                position += 8 + size + size % 2
        return self.offset

    def frames(self):
        offset = self._data_offset()
        return 0 if offset is None else max(0, (self.path.stat().st_size - offset) // FRAME)

    def read(self, first, count, channel=0):
        """One channel of `count` frames from `first` on."""
        with open(self.path, "rb") as file:
            file.seek(self._data_offset() + first * FRAME)
            data = array.array("f")
            raw = file.read(count * FRAME)
            data.frombytes(raw[: len(raw) // FRAME * FRAME])
        return data[channel::CHANNELS]

    def tail(self, seconds):
        """The newest left samples."""
        count = round(seconds * RATE)
        end = self.frames()
        return self.read(max(0, end - count), min(count, end))

    def level(self, hz, seconds=0.1):
        """Level of a tone in the newest `seconds`, in dB of full scale."""
        return tone_level(self.tail(seconds), hz)

    def fresh_level(self, hz, seconds=0.2):
        """Level of a tone in `seconds` that begin now."""
        first = self.frames()
        count = round(seconds * RATE)
        wait_for(lambda: self.frames() >= first + count, "the monitor delivers", seconds + 5)
        return tone_level(self.read(first, count), hz)

    def wait_for_level(self, hz, expected_db, tolerance=0.2, seconds=5.0):
        """Waits until a tone has stood at a level for a fresh measurement's length, and returns that measurement."""
        return self._wait_for(hz, lambda level: abs(level - expected_db) <= tolerance, f"{expected_db:.2f} dB", seconds)

    def wait_for_silence(self, hz, below_db=-60.0, seconds=5.0):
        return self._wait_for(hz, lambda level: level < below_db, f"silence below {below_db:.0f} dB", seconds)

    def _wait_for(self, hz, fits, wanted, seconds):
        deadline = time.monotonic() + seconds
        while True:
            try:
                wait_for(lambda: fits(self.level(hz)), "", max(0, deadline - time.monotonic()))
            except AssertionError:
                raise AssertionError(f"{hz} Hz at {self.sink}: {self.level(hz):.2f} dB after {seconds:g} s, "
                                     f"{wanted} wanted") from None
            measured = self.fresh_level(hz)
            # One missed cycle on a busy machine spoils a measurement; a level that is wrong spoils all of them.
            if fits(measured) or time.monotonic() > deadline:
                return measured

    def running(self):
        return self.process is not None and self.process.poll() is None

    def stop(self):
        if self.process is None:
            return
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGINT)
        try:
            self.process.wait(5)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process = None
        self.path.unlink(missing_ok=True)

    def __enter__(self):
        return self if self.running() else self.start()

    def __exit__(self, *_):
        self.stop()


def longest_gap(samples, threshold=1e-5):
    """The longest run of samples that are as good as zero."""
    longest = run = 0
    for sample in samples:
        run = run + 1 if -threshold < sample < threshold else 0
        longest = max(longest, run)
    return longest
