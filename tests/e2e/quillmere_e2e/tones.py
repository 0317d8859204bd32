"""Tones at a known level, as files, and their level in a recording.

Every tone is a multiple of 100 Hz and every measurement takes a multiple of 10 ms at 48 kHz, so that several tones in
one recording don't leak into each other and no window is needed."""

import array
import math
import os
import struct
from pathlib import Path

RATE = 48000
STEP_HZ = 100
BLOCK = RATE // STEP_HZ
SILENCE_DB = -200.0
# What of a tone goes left and right.
BOTH, LEFT, RIGHT = (1, 1), (1, 0), (0, 1)


def tone_file(hz, amplitude, seconds=240, rate=RATE, sides=BOTH):
    """A stereo 16-bit WAV file with a sine; made once a session. An amplitude of 0 gives silence."""
    if hz % STEP_HZ:
        raise ValueError("a tone is a multiple of 100 Hz")
    path = Path(os.environ["TMPDIR"]) / f"tone-{hz}-{amplitude:g}-{seconds}-{rate}-{sides[0]}{sides[1]}.wav"
    if path.exists():
        return path
    block = [round(32767 * amplitude * math.sin(2 * math.pi * hz * frame / rate)) for frame in range(rate // STEP_HZ)]
    return _write(path, block, seconds * STEP_HZ, rate, sides)


def click_file(period_frames=12000, amplitude=0.5, seconds=240, rate=RATE):
    """The same with nothing but one sample a period: a mark that can be found to the sample."""
    path = Path(os.environ["TMPDIR"]) / f"click-{period_frames}-{amplitude:g}-{seconds}-{rate}.wav"
    if path.exists():
        return path
    block = [round(32767 * amplitude)] + [0] * (period_frames - 1)
    return _write(path, block, seconds * rate // period_frames, rate)


def _write(path, block, repeats, rate, sides=BOTH):
    stereo = array.array("h")
    for sample in block:
        stereo.extend((sample * sides[0], sample * sides[1]))
    data = stereo.tobytes() * repeats
    header = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + len(data), b"WAVE", b"fmt ", 16, 1, 2, rate, rate * 4, 4,
                         16, b"data", len(data))
    partial = path.with_suffix(f".{os.getpid()}.part")
    partial.write_bytes(header + data)
    partial.replace(path)
    return path


def to_db(amplitude):
    return 20 * math.log10(amplitude) if amplitude > 1e-10 else SILENCE_DB


def tone_amplitude(samples, hz, rate=RATE):
    """The amplitude of one tone in a list of samples (Goertzel), over the largest whole number of 10 ms blocks."""
    count = len(samples) // (rate // STEP_HZ) * (rate // STEP_HZ)
    if count == 0:
        return 0.0
    coefficient = 2 * math.cos(2 * math.pi * hz / rate)
    before, last = 0.0, 0.0
    for sample in samples[len(samples) - count:]:
        before, last = last, sample + coefficient * last - before
    power = before * before + last * last - coefficient * before * last
    return 2 * math.sqrt(max(0.0, power)) / count


def tone_level(samples, hz, rate=RATE):
    """The same in dB of full scale."""
    return to_db(tone_amplitude(samples, hz, rate))
