"""Inputs for a simulated scope, chosen by what the model is about to do."""

import dataclasses
import random

from model import Pins

# Line values (before, now) that meet a trigger and those that just miss it.
MEETING = {"0": [(0, 0), (1, 0)], "1": [(0, 1), (1, 1)], "rising": [(0, 1)], "falling": [(1, 0)],
           "both": [(0, 1), (1, 0)]}
MISSING = {"0": [(0, 1), (1, 1)], "1": [(0, 0), (1, 0)], "rising": [(0, 0), (1, 1), (1, 0)],
           "falling": [(0, 0), (1, 1), (0, 1)], "both": [(0, 0), (1, 1)]}


@dataclasses.dataclass
class Temper:
    """How often something is done; each capture has its own."""

    arm: float = 0.3
    force: float = 0.0
    reset: float = 0.0
    hit: float = 0.1
    miss: float = 0.2


class Stimulus:
    """Runs a model on inputs that it chooses, and keeps both inputs and expected outputs."""

    def __init__(self, model, seed):
        self.model = model
        self.choice = random.Random(seed)
        self.expected = []
        self.planned = []  # values of the trigger lines for the next edges
        self.address = 0

    def pins(self):
        return self.model.pins

    def step(self, **fields):
        pins = Pins(data=self.choice.getrandbits(self.model.input_count), address=self.next_address(), **fields)
        self.expected.append(self.model.step(pins))

    def next_address(self):
        """Mostly the next one, so that all are read after a while, without a pause in between."""
        self.address = (self.address + 1) % self.model.depth
        if self.choice.random() < 0.1:
            return self.choice.randrange(2 ** self.model.address_width)
        return self.address

    def random_trig(self):
        return self.choice.getrandbits(self.model.line_count)

    def chance(self, probability):
        return int(self.choice.random() < probability)

    def plan(self, triggers, is_missed):
        """The lines' values at two edges that meet the triggers, or miss them by one line only."""
        used = [line for line, trigger in enumerate(triggers) if trigger]
        missed = self.choice.choice(used) if used and is_missed else None
        before, now = self.random_trig(), self.random_trig()
        for line in used:
            values = (MISSING if line == missed else MEETING)[triggers[line]]
            old, new = self.choice.choice(values)
            before = before & ~(1 << line) | old << line
            now = now & ~(1 << line) | new << line
        self.planned = [before, now]

    def reset(self, count, **fields):
        for _ in range(count):
            self.step(reset=1, trig=self.random_trig(), **fields)


class ScopeStimulus(Stimulus):
    def trig(self, temper):
        if not self.planned:
            draw = self.choice.random()
            triggers = self.choice.choice([self.model.triggers, self.model.first_triggers])
            if draw < temper.hit:
                self.plan(triggers, False)
            elif draw < temper.hit + temper.miss:
                self.plan(triggers, True)
            else:
                return self.random_trig() if self.chance(0.3) else self.last_trig()
        return self.planned.pop(0)

    def last_trig(self):
        """No line moves: the only meeting of edge triggers is then the planned one."""
        return self.pins()[-1].trig if self.pins() else 0

    def run(self, edge_count, temper):
        for _ in range(edge_count):
            self.step(arm=self.chance(temper.arm), force=self.chance(temper.force), reset=self.chance(temper.reset),
                      trig=self.trig(temper))

    def run_until_done(self, temper, limit):
        """Completes a capture and reads all of it; the longer it takes, the more often a trigger is forced."""
        for count in range(limit):
            if self.model.is_done():
                break
            self.run(1, dataclasses.replace(temper, arm=1.0 if self.model.is_idle() else temper.arm,
                                            force=max(temper.force, count / limit)))
        self.run(self.model.depth + 8, dataclasses.replace(temper, arm=0.0))

    def miniature_captures(self, edge_count):
        """Many captures of a small memory, with everything that may come in between."""
        choice, depth = self.choice.choice, self.model.depth
        self.reset(4, arm=1)
        while self.model.now() < edge_count:
            temper = Temper(arm=choice([0.02, 0.5, 1.0]), force=choice([0, 0, 0.02, 0.3]), reset=choice([0, 0, 0, 0.02]),
                            hit=choice([0.02, 0.2, 0.6]), miss=choice([0.05, 0.3]))
            self.run(self.choice.randint(1, 4 * depth), temper)
            self.run_until_done(temper, 8 * depth)

    def real_captures(self, capture_count):
        """A few captures of real depth, each read out completely."""
        self.reset(4)
        for number in range(capture_count):
            temper = Temper(arm=0.05, hit=[0.01, 0.5, 0.05][number % 3], miss=0.1)
            self.run(1, dataclasses.replace(temper, arm=1.0))
            if number == 2:
                self.run(self.model.depth // 2, temper)
                self.reset(1)
            self.run_until_done(temper, 10 * self.model.depth)


class StartupStimulus(Stimulus):
    def capture(self, wait):
        """One capture whose trigger comes 'wait' edges after the release of reset, read out completely."""
        self.reset(self.choice.randint(1, 3))
        for _ in range(wait):
            self.step(trig=self.other_trig())
        self.step(trig=self.model.pattern)
        for _ in range(2 * self.model.depth - self.model.before + 12):
            self.step(trig=self.random_trig())

    def other_trig(self):
        """Any value but the pattern; mostly one bit away from it."""
        value = self.model.pattern ^ 1 << self.choice.randrange(self.model.line_count)
        draw = self.random_trig()
        return value if draw == self.model.pattern or self.chance(0.5) else draw

    def miniature_captures(self, edge_count):
        before, depth = self.model.before, self.model.depth
        waits = [0, 1, before - 1, before, before + 1, depth, 3 * depth]
        self.reset(2)
        while self.model.now() < edge_count:
            self.capture(waits.pop(0) if waits else self.choice.randint(0, 2 * depth))
            if self.chance(0.5):  # a capture that the next one's reset ends early
                self.reset(1)
                for _ in range(self.choice.randint(0, depth)):
                    self.step(trig=self.random_trig())

    def real_captures(self, capture_count):
        before = self.model.before
        for wait in [before // 3, 0, before + 100, 3 * self.model.depth][:capture_count]:
            self.capture(wait)


STIMULI = {"scope": ScopeStimulus, "startup_scope": StartupStimulus}
