"""What a simulation of an interface does: the words, searches, slips and resets, and the clocks below them."""

import dataclasses
import random

from bench import BIT_PERIOD
from parameter_sets import equals_own_rotation

START = 2 * BIT_PERIOD  # ns, of bit edge 0


@dataclasses.dataclass(frozen=True)
class Clocks:
    """Word edges lie "offset" ns after a bit edge.

    Of edges at the same time the one of "first" leads: w or b; x is none of them and ? is now this, now that.
    """

    offset: int
    first: str = "x"


HARDEST_CLOCKS = Clocks(0, "?")
ALL_CLOCKS = [Clocks(0, "w"), Clocks(0, "b"), Clocks(0, "x"), HARDEST_CLOCKS,
              *[Clocks(offset) for offset in (2, 6, 10, 14, 18)]]


@dataclasses.dataclass
class Step:
    """Pins that a word edge samples."""

    ser_training: bool
    words: list
    des_training: bool
    slips: list


class Program:
    """Steps of a simulation, one a word edge, and what the judges have to look at."""

    def __init__(self, shape, training, seed):
        self.shape = shape
        self.training = int(training, 2)
        self.choice = random.Random(f"{shape} {seed}")
        self.steps = []
        self.resets = [(0, self.reset_length() + 2)]  # (word edge before, words), both at any fraction
        self.searches = []   # (first step, end): alignment is complete at the end, from steady training words
        self.wrong_steps = []
        self.payloads = []   # (first step, end): the words of these steps arrive at the other end
        self.is_rotating = equals_own_rotation(training)
        self.first_session()
        self.second_session()

    def reset_length(self):
        return 2 + self.choice.random()

    def random_words(self):
        return [self.choice.getrandbits(self.shape.size) for _ in range(self.shape.ser_count)]

    def random_slips(self, chance):
        return [int(self.choice.random() < chance) for _ in range(self.shape.des_count)]

    def add(self, count, training=False, searching=False, slip_chance=0.0):
        for _ in range(count):
            self.steps.append(Step(training, self.random_words(), searching, self.random_slips(slip_chance)))

    def add_search(self):
        """Long enough for each line to find the training value, with slips that have to be ignored."""
        begin = len(self.steps)
        self.add(8 * self.shape.size + 48, training=True, searching=True, slip_chance=0.3)
        self.searches.append((begin, len(self.steps)))

    def add_payload(self):
        """Words that arrive, and the time that they need."""
        begin = len(self.steps)
        self.add(20)
        if not self.is_rotating:
            self.payloads.append((begin, len(self.steps)))
        self.add(12)

    def add_wrong_word(self):
        wrong = Step(False, [self.training ^ (1 << self.choice.randrange(self.shape.size))
                             for _ in self.random_words()], True, self.random_slips(0.3))
        self.wrong_steps.append(len(self.steps))
        self.steps.append(wrong)

    def add_reset(self):
        self.resets.append((len(self.steps) - self.choice.random(), self.reset_length()))

    def first_session(self):
        self.add(14)
        self.add(6 * self.shape.size, slip_chance=0.4)
        self.add(6 * self.shape.size, slip_chance=0.1)
        self.add(10)
        self.add_search()
        self.add(3, training=True)
        self.add_payload()
        self.add(10, training=True)
        self.add(12, training=True, searching=True, slip_chance=1.0)
        self.add_wrong_word()
        self.add_search()
        self.add(2 * self.shape.size + 20, searching=True)
        self.add(6, training=True, searching=True)
        self.add_reset()

    def second_session(self):
        """The search goes on from the reset and is interrupted over and over."""
        self.add(10, training=True, searching=True)
        for _ in range(12):
            self.add(self.choice.randint(3, 12), training=True, searching=True)
            self.add(self.choice.randint(1, 3), training=True, slip_chance=0.2)
        self.add_search()
        self.add_payload()
        self.add_reset()
        self.add(24)


class Timeline:
    """A program on its clocks: the changes that the bench plays, and the time and meaning of each record."""

    def __init__(self, program, clocks):
        self.program = program
        self.shape = program.shape
        self.choice = random.Random(f"{program.shape} {clocks}")
        self.word_period = BIT_PERIOD * program.shape.size
        self.word_times = [START + clocks.offset + step * self.word_period for step in range(len(program.steps))]
        end = self.word_times[-1] + self.word_period
        self.bit_times = list(range(START, end, BIT_PERIOD))
        self.resets = [self.reset_times(*reset) for reset in program.resets]
        self.events = []  # (time, rank among those of the same time, change)
        self.records = []  # kind of each record: (time, "word" or "bit", index) or (time, "reset", None)
        self.add_clocks(clocks)
        self.add_inputs()
        self.add_resets()

    def reset_times(self, word, length):
        start = 0 if word == 0 else int(START + word * self.word_period)
        return start, start + int(length * self.word_period)

    def at(self, time, rank, change):
        self.events.append((time, rank, change))

    def add_clocks(self, clocks):
        bit_times = set(self.bit_times)
        both = set(time for time in self.word_times if time in bit_times)
        for index, time in enumerate(self.word_times):
            self.at(time - 1, index, f"s word {index}")
            self.at(time + self.word_period // 2, 0, "w 0")
        for index, time in enumerate(self.bit_times):
            self.at(time - 1, index, f"s bit {index}")
            self.at(time + 8, 0, "u 1")
            self.at(time + BIT_PERIOD // 2, 0, "b 0")
            self.at(time + 16, 0, "u 0")
        for time in sorted(bit_times.symmetric_difference(self.word_times)):
            self.at(time, 1, "b 1" if time in bit_times else "w 1")
        for time in sorted(both):
            first = self.choice.choice("wbx") if clocks.first == "?" else clocks.first
            for rank, clock in enumerate({"w": "wb", "b": "bw", "x": "x"}[first], 1):
                self.at(time, rank, f"{clock} 1")

    def add_inputs(self):
        """Inputs are right at their clock's rising edge and wrong before and after."""
        size = self.shape.size
        for time, step in zip(self.word_times, self.program.steps):
            words = step.words if self.shape.ser_count else [0]
            data = "".join(format(word, f"0{size}b") for word in reversed(words))
            slips = "".join(map(str, reversed(step.slips))) or "0"
            pins = f"i {int(step.ser_training)} {data} {int(step.des_training)} {slips}"
            self.at(time - 5, 0, pins)
            self.at(time + 3, 0, pins.translate(str.maketrans("01", "10")))

    def sent_word(self, line, step):
        """The word that a deserialiser line is to receive from a step."""
        described = self.program.steps[step]
        return self.program.training if described.ser_training else described.words[line % len(described.words)]

    def add_resets(self):
        for start, end in self.resets:
            self.at(start, self.choice.choice([0, 9]), "r 1")
            self.at(start + 1, 9, "s reset 0")
            self.at(end, self.choice.choice([0, 9]), "r 0")

    def changes(self):
        """Lines for the bench; fills the list of records."""
        lines, now = [], 0
        for time, _, change in sorted(self.events):
            lines.append(f"{time - now} {change}")
            now = time
            if change.startswith("s"):
                _, kind, index = change.split()
                self.records.append((time, kind, int(index)))
        return lines
