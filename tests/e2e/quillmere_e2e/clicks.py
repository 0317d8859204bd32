"""Clicks in what is heard: steps that are steeper than the tone and a glide make them, told from cycles that are lost."""

import math
import os
from typing import NamedTuple

from .case import AMPLITUDE, MixerTest
from .tones import LEFT, RATE, RIGHT, tone_file

# One step of the 30 ms glide, the largest that a full change of gain can add between two samples.
GLIDE_STEP = 1 - math.exp(-1 / (0.03 * RATE))


def sine_step(hz):
    """The largest step between two samples of a sine."""
    return 2 * math.sin(math.pi * hz / RATE)


TRIES = 5
# Of recordings that say nothing, because the machine has lost a cycle of the control.
MOST_SPOILED = 10
SHORTEST_CYCLE, LONGEST_CYCLE = 64, 1024
# Of the phase, in radians. A gain that glides shifts what is measured by less than a hundredth. A cycle is a multiple
# of 64 frames; skipped, it shifts a tone of 200 Hz by a multiple of 16 of its 240 frames.
SMALLEST_JUMP = 0.08


class Step(NamedTuple):
    """A step between two samples that is steeper than it may be."""
    frame: int
    height: float
    # A change of gain leaves the sine where it is. A cycle that is lost leaves silence, or is skipped, and then the
    # sine goes on from another place. A JACK client is heard at another gain for one cycle: a step where it begins, one
    # where it ends, and none around.
    is_lost_cycle: bool


def sine_at(samples, first, hz):
    """Amplitude and phase, in radians, of a sine over the period that begins at a frame."""
    turn = 2 * math.pi * hz / RATE
    period = range(max(0, first), min(first + RATE // hz, len(samples)))
    cosine = sum(samples[frame] * math.cos(turn * frame) for frame in period)
    sine = sum(samples[frame] * math.sin(turn * frame) for frame in period)
    return 2 * math.hypot(cosine, sine) / max(1, len(period)), math.atan2(cosine, sine)


def steps_in(samples, hz, glides):
    """All steps that are higher than those of the sine itself and, where the gain changes, of one glide."""
    allowed = AMPLITUDE * (sine_step(hz) + (GLIDE_STEP if glides else 0)) * 1.02 + 1e-4

    def is_lost_cycle(frame):
        start = frame + 1
        if any(part and max(map(abs, part)) < 1e-5
               for part in (samples[max(0, start - SHORTEST_CYCLE):start], samples[start:start + SHORTEST_CYCLE])):
            return True
        jump = sine_at(samples, start, hz)[1] - sine_at(samples, start - RATE // hz, hz)[1]
        return abs(math.remainder(jump, 2 * math.pi)) > SMALLEST_JUMP

    frames = [frame for frame, (before, after) in enumerate(zip(samples, samples[1:])) if abs(after - before) > allowed]

    def bounds_one_cycle(frame):
        near = [other for other in frames if abs(other - frame) <= 2 * LONGEST_CYCLE]
        if len(near) != 2 or (near[1] - near[0]) % SHORTEST_CYCLE != 0 or near[1] - near[0] > LONGEST_CYCLE:
            return False
        # Between them the gain may have glided on, by as much as a glide does in a cycle.
        before, _ = sine_at(samples, near[0] + 1 - RATE // hz, hz)
        after, _ = sine_at(samples, near[1] + 1, hz)
        return abs(after - before) <= 0.25 * max(after, before)

    return [Step(frame, samples[frame + 1] - samples[frame], is_lost_cycle(frame) or bounds_one_cycle(frame))
            for frame in frames]


def is_realtime(pid):
    """Whether any thread of a process goes before all ordinary ones, as an audio client's does where the system lets it.
    One that makes its sound on its main thread, as pw-play of Debian 13, has none anywhere."""
    def is_realtime(thread):
        try:
            policy = os.sched_getscheduler(int(thread)) & ~os.SCHED_RESET_ON_FORK
        except ProcessLookupError:
            return False
        return policy in (os.SCHED_FIFO, os.SCHED_RR)

    return any(map(is_realtime, os.listdir(f"/proc/{pid}/task")))


class ClickTest(MixerTest):
    def play_left(self, kind, name, hz):
        return self.play(kind, name, hz, file=tone_file(hz, AMPLITUDE, sides=LEFT))

    def assert_no_click(self, scenario, player):
        """Plays the scenario until TRIES of its recordings say something of us; none of these has a click.

        A machine that is not let run in time loses audio cycles, whoever plays. What it has lost is told by a control:
        the player is heard on the left only, and on the right of the same recording plays a stream that counts as no
        application, so that nobody touches it. A recording with steps on the right says nothing and is made again. A
        tap's sound goes through one process more than the control's, and that one may be late alone; then a whole cycle
        is lost. In one of TRIES recordings that is put up with, in two not, unless the player's own sound is made
        among ordinary threads: then who is late is chance. Another kind of step is put up with in none."""
        control = self.play("pw-play", "Control", player.hz, file=tone_file(player.hz, AMPLITUDE, sides=RIGHT),
                            extra=["--properties", "{ stream.monitor = true }"])
        self.assertIsNone(self.agent.find(control), "the mixer does not know the control")
        in_time = is_realtime(control.pid)

        recordings, lost, spoiled = 0, 0, []
        while recordings < TRIES:
            since = self.desk.frames()
            scenario()
            count = self.desk.frames() - since
            steps = steps_in(self.desk.read(since, count), player.hz, glides=True)
            right = self.desk.read(since, count, channel=1)
            self.assertGreater(max(right), 0.9 * AMPLITUDE, "the control plays")
            spoils = steps_in(right, control.hz, glides=False)
            if spoils:
                spoiled.append(spoils[0])
                if len(spoiled) > MOST_SPOILED:
                    self.skipTest(f"this machine loses cycles of a player that nobody touches: {len(spoiled)} of "
                                  f"{len(spoiled) + recordings} recordings have steps, the first of each is {spoiled}")
                continue
            recordings += 1
            clicks = [step for step in steps if not step.is_lost_cycle]
            self.assertEqual(clicks, [], f"clicks in recording {recordings} of {TRIES}, and none in the control")
            lost += bool(steps)
            if in_time:
                self.assertLess(lost, 2, f"cycles lost in {lost} of {recordings} recordings, and none in the control")
        if lost:
            print(f"{self.id()}: cycles lost in {lost} of {recordings} recordings, and none in the control"
                  + ("" if in_time else "; the players have no audio thread that goes before ordinary ones"), flush=True)
