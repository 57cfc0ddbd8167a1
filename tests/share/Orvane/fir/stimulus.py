"""Inputs of a filter's simulation."""

import dataclasses
import random

from clocked_bench import binary
from model import signed_value


@dataclasses.dataclass
class Line:
    """Inputs that stay until the filter takes the sample, at most for 'patience' clocks."""

    rst: int
    din_valid: int
    din: str
    coefs: str           # on the port, if there is one
    coefficients: tuple  # their values
    patience: int

    def text(self):
        return f"{self.rst}{self.din_valid}{self.din}{self.coefs}"


class Stimulus:
    """Collects the lines for one filter."""

    def __init__(self, described, seed, is_long):
        self.filter = described
        self.random = random.Random(f"{described} {seed}")
        self.lines = []
        self.coefs, self.coefficients = "", ()
        self.highest = 2**(described.input_width - 1) - 1
        self.lowest = -2**(described.input_width - 1)
        self.build(3 if is_long else 1)

    def build(self, rounds):
        if self.filter.coefficients is None:
            self.coefs = "0" * self.filter.inputs()["coefs"]
            self.reset_with_coefficients(makes_largest_sums=True)
        else:
            # The initial values alone must make the filter work.
            self.stream([self.any_sample() for _ in range(5)], 0.0)
            self.reset(1, 0.0)
        self.corners()
        for _ in range(rounds):
            for gap, extra in ((0.0, self.filter.tap_count), (0.5, self.filter.tap_count // 2), (0.9, 0)):
                self.stream([self.any_sample() for _ in range(extra + 15)], gap)
                self.reset_in_stream()
                if self.filter.coefficients is None:
                    self.reset_with_coefficients()
        self.reset_at_every_phase()
        self.stream([self.any_sample() for _ in range(self.filter.tap_count + 5)], 0.2)
        self.idle(self.filter.latency + 4)

    def any_sample(self):
        return self.random.choice([self.lowest, self.highest] + 6 * [self.random.randint(self.lowest, self.highest)])

    def clock(self, rst, din_valid, sample, patience=1):
        din = "X" * self.filter.input_width if sample is None else binary(sample, self.filter.input_width)
        self.lines.append(Line(rst, din_valid, din, self.coefs, self.coefficients, patience))

    def idle(self, count):
        """Clocks without a sample; what din carries then is of no account, even if unknown."""
        for _ in range(count):
            self.clock(0, 0, None if self.random.random() < 0.3 else self.any_sample())

    def stream(self, samples, gap):
        """Samples, each with the chance 'gap' of some idle clocks in front."""
        patience = 2 * self.filter.clocks_per_sample + 8 if self.filter.is_mac else 1  # more than a filter needs
        for sample in samples:
            if self.random.random() < gap:
                self.idle(self.random.choice([1, 1, 2, 3, self.filter.clocks_per_sample, self.filter.latency + 2]))
            self.clock(0, 1, sample, patience)

    def corners(self):
        """Impulses, a step and alternation at full scale, and the samples that reach the ends of the sum's range."""
        stretch = (self.filter.tap_count + 2) * (2 if self.filter.is_dual else 1)
        taps = self.filter.taps(self.coefficients)
        upwards = [self.lowest if tap < 0 else self.highest for tap in reversed(taps)]
        downwards = [self.highest if tap < 0 else self.lowest for tap in reversed(taps)]
        if self.filter.is_dual:
            upwards, downwards = ([each for each in ends for _ in range(2)] for ends in (upwards, downwards))
        for samples in (
                [self.highest] + [0] * stretch,
                [self.lowest] + [0, 0, 0] + [self.highest] * stretch,
                [self.lowest, self.highest] * (stretch // 2),
                upwards + downwards + [0, -1] * 3):
            self.stream(samples, self.random.choice([0.0, 0.0, 0.3]))

    def reset(self, length, offered):
        """Clocks with the reset active, some of them offering a sample, which must not be taken."""
        for _ in range(length):
            self.clock(1, int(self.random.random() < offered), self.any_sample())

    def reset_in_stream(self):
        """A reset of one clock while samples are under way, and another within a burst of held samples."""
        self.stream([self.any_sample() for _ in range(self.filter.tap_count // 2 + 2)], 0.1)
        self.reset(1, 1.0)
        self.stream([self.any_sample() for _ in range(4)], 0.0)
        self.clock(0, 1, self.highest)
        self.reset(self.random.randint(1, 3), 0.5)

    def reset_at_every_phase(self):
        """Resets that meet a sample at every stage of its way, or at some if there are many."""
        phases = range(self.filter.latency + 1)
        for phase in sorted(self.random.sample(phases, min(len(phases), 12))):
            self.stream([self.highest, self.lowest, self.any_sample()], 0.0)
            self.idle(phase)
            self.reset(1, 0.5)
            self.stream([self.any_sample()], 0.0)

    def reset_with_coefficients(self, makes_largest_sums=False):
        """New coefficients under reset: arbitrary ones first, the final ones for the last three clocks."""
        self.reset(1, 0.5)
        self.load_coefficients()
        self.reset(self.random.randint(1, 2), 0.5)
        self.load_coefficients(makes_largest_sums)
        self.reset(3, 0.5)

    def load_coefficients(self, makes_largest_sums=False):
        width = self.filter.coefficient_width
        ends = [2**(width - 1), 2**(width - 1) - 1]
        patterns = [ends[0] if makes_largest_sums else self.random.choice(ends + 2 * [self.random.getrandbits(width)])
                    for _ in range(self.filter.port_coefficient_count)]
        self.coefs = "".join(binary(pattern, width) for pattern in reversed(patterns))
        self.coefficients = tuple(signed_value(pattern, width) for pattern in patterns)
