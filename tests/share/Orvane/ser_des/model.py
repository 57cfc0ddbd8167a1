"""The rules of the interface, against which the recorded pins of a simulation are judged.

Where the rules leave a latency open, any constant value within their bounds is accepted: it is found by trying.
"""

import itertools

from bench import BIT_PERIOD
from hdl_tools import require
from stimulus import SLIP_PAUSE

MATCHES_TO_ALIGN = 8
WORDS_TO_LOSE_ALIGNMENT = 8
LARGEST_LATENCY = 4           # words, from the last bit of a word to the edge that gives it, and of a slip
LARGEST_INPUT_REGISTERS = 2   # words, of des_training and des_bitslip
LOST_AFTER_RESET = 4          # words that need not be sent
FIRST_EDGES = range(6)        # word edges after reset, one of which is the first to count
LARGEST_LAG = 14              # words, from a serialiser's word edge to the far deserialiser's


class Session:
    """The part of a recording from one reset to the next one."""

    def __init__(self, begin, end, recording):
        self.begin = begin
        self.end = end
        self.words = [k for k, time in enumerate(recording.timeline.word_times) if begin < time < end]


class Recording:
    """The pins before every word edge and every bit edge."""

    def __init__(self, timeline, rows):
        self.timeline = timeline
        self.shape = timeline.shape
        self.word_pins = []
        self.bit_pins = []
        self.rows = []
        for record, pins in itertools.zip_longest(timeline.records, rows):
            require(record and pins, "the recording ended early")
            time, kind, _ = record
            {"word": self.word_pins, "bit": self.bit_pins, "reset": []}[kind].append(pins)
            self.rows.append((time, kind, pins))
        # The first bit edge that is not before each word edge.
        self.bit_edges = [-(-(time - timeline.bit_times[0]) // BIT_PERIOD) for time in timeline.word_times]
        resets = timeline.resets + [(timeline.word_times[-1] + timeline.word_period, 0)]
        self.sessions = [Session(released, asserted, self) for (_, released), (asserted, _) in zip(resets, resets[1:])]

    def column(self, rows, port, line, width=1):
        """What one line of a port shows in all rows."""
        begin = ((self.shape.widths()[port] or 1) // width - 1 - line) * width
        return [pins[port][begin:begin + width] for pins in rows]

    def bits(self, port, line):
        """The levels of a serial line before each bit edge."""
        return "".join(self.column(self.bit_pins, port, line))


class Deserialiser:
    """One line's view of a recording, before each bit edge and each word edge."""

    def __init__(self, recording, line):
        size = recording.shape.size
        self.line = line
        self.bits = recording.bits("des_in", line)
        self.words = recording.column(recording.word_pins, "des_data", line, size)
        self.aligned = recording.column(recording.word_pins, "des_aligned", line)
        self.slips = recording.column(recording.word_pins, "des_bitslip", line)
        self.searching = [pins["des_training"] for pins in recording.word_pins]
        self.training = format(recording.timeline.program.training, f"0{size}b")


def judge(timeline, rows):
    """Raises CheckFailed if a recording breaks a rule; returns what was seen, as text."""
    recording = Recording(timeline, rows)
    check_reset(recording)
    check_registered(recording)
    if recording.shape.ser_count:
        check_serialisers(recording)
    if recording.shape.des_count:
        deserialisers = [Deserialiser(recording, line) for line in range(recording.shape.des_count)]
        for deserialiser in deserialisers:
            check_deserialiser(recording, deserialiser)
        check_locked(recording)
        check_program(recording, deserialisers)
    return f"{len(recording.word_pins)} words on {recording.shape.ser_count} + {recording.shape.des_count} lines"


def check_reset(recording):
    for time, _, pins in recording.rows:
        if any(begin < time <= end for begin, end in recording.timeline.resets):
            for port in ("ser_out", "des_data", "des_aligned", "des_locked"):
                require(set(pins[port]) == {"0"}, f"{port} is {pins[port]} in reset, at {time} ns")


def check_registered(recording):
    """Between two edges of its clock an output does not change."""
    for kind, ports in (("word", ("des_data", "des_aligned", "des_locked")), ("bit", ("ser_out",))):
        expected = None
        for time, row_kind, pins in sorted(recording.rows, key=lambda row: (-row[0], row[1] != kind)):
            if any(begin - recording.timeline.word_period <= time <= end for begin, end in recording.timeline.resets):
                expected = None
            elif row_kind == kind:
                expected = pins
            elif expected:
                for port in ports:
                    require(pins[port] == expected[port], f"{port} changes away from its clock, at {time} ns")


def check_serialisers(recording):
    for session in recording.sessions:
        latencies = [serialiser_latencies(recording, session, line) for line in range(recording.shape.ser_count)]
        for line, found in enumerate(latencies):
            require(len(found) == 1, f"serialiser {line}: no single latency in bits explains its output, but {found}")
        require(all(found == latencies[0] for found in latencies), f"the serialisers differ in latency: {latencies}")


def serialiser_latencies(recording, session, line):
    """Bit edges from the word edge to the first bit of its word, as many as fit to all words of a session."""
    size, timeline = recording.shape.size, recording.timeline
    bits = recording.bits("ser_out", line)
    first_time = session.begin + LOST_AFTER_RESET * timeline.word_period
    words = [k for k in session.words if timeline.word_times[k] > first_time]
    found = []
    for latency in range(2 * size + 5):
        due = [(timeline.sent_word(line, k), recording.bit_edges[k] + latency) for k in words]
        due = [(word, edge) for word, edge in due if timeline.bit_times[0] + (edge + size) * BIT_PERIOD < session.end]
        leaving = timeline.bit_times[0] + (recording.bit_edges[words[0]] + latency) * BIT_PERIOD
        is_quick = leaving - timeline.word_times[words[0]] <= (2 * size + 4) * BIT_PERIOD
        # A bit that an edge puts out is recorded before the next one.
        if is_quick and all(bits[edge + 1:edge + 1 + size] == format(word, f"0{size}b") for word, edge in due):
            found.append(latency)
    return found


def check_deserialiser(recording, deserialiser):
    for session in recording.sessions:
        fits = any(windows_fit(recording, session, deserialiser, path, ignored)
                   for path, ignored in search_paths(recording, session, deserialiser))
        require(fits, f"deserialiser {deserialiser.line}: no allowed latency explains its words and des_aligned "
                      f"from {session.begin} ns to {session.end} ns")


def search_paths(recording, session, deserialiser):
    """(slip position after each word edge, words ignored) for all latencies that explain des_aligned."""
    registers = range(LARGEST_INPUT_REGISTERS + 1)
    for ignored, delay, start in itertools.product(range(LARGEST_LATENCY + 1), registers, FIRST_EDGES):
        path = search_path(recording.shape.size, session, deserialiser, ignored, delay, start)
        if path:
            yield path, ignored


def search_path(size, session, deserialiser, ignored, delay, start):
    """Follows the search by the words on des_data; None if des_aligned does not follow it, too."""
    slip, matches, aligned, to_ignore, path = 0, 0, "0", 0, {}
    for k in session.words:
        if deserialiser.aligned[k] != aligned:
            return None
        if k >= session.words[0] + max(start, delay):
            is_step = False
            if deserialiser.searching[k - delay] == "0":
                matches = 0
                is_step = deserialiser.slips[k - delay] == "1"
            elif not to_ignore and deserialiser.words[k] == deserialiser.training:
                matches += 1
                aligned = "1" if matches >= MATCHES_TO_ALIGN else aligned
            elif not to_ignore:
                matches, aligned, is_step = 0, "0", True
            to_ignore = ignored if is_step else max(to_ignore - 1, 0)
            slip = (slip + is_step) % size
        path[k] = slip
    return path


def windows_fit(recording, session, deserialiser, path, ignored):
    """Whether the words on des_data are the windows of the stream at the slip positions, soon enough."""
    size, timeline, bits = recording.shape.size, recording.timeline, deserialiser.bits
    for visible, origin in itertools.product(range(1, ignored + 2), range(-7 * size, 1 - size)):
        begins = {k: recording.bit_edges[k] + origin + path[k - visible] for k in session.words[LARGEST_LATENCY + 4:]}
        if any(bits[begin:begin + size] != deserialiser.words[k] for k, begin in begins.items()):
            continue
        latencies = [timeline.word_times[k - 1] - timeline.bit_times[begin + size - 1] for k, begin in begins.items()]
        if min(latencies) >= 0 and max(latencies) <= LARGEST_LATENCY * timeline.word_period:
            return True
    return False


def check_locked(recording):
    """des_locked is the AND of des_aligned, up to two word clocks late and always equally so."""
    for session in recording.sessions:
        pins = [recording.word_pins[k] for k in session.words]
        all_aligned = ["1" if "0" not in each["des_aligned"] else "0" for each in pins]
        locked = [each["des_locked"] for each in pins]
        fits = [delay for delay in (1, 2) if locked == ["0"] * delay + all_aligned[:-delay]]
        require(fits, f"des_locked does not follow des_aligned, from {session.begin} ns to {session.end} ns")


def check_program(recording, deserialisers):
    program = recording.timeline.program
    for begin, end in program.searches:
        pins = recording.word_pins[end - 1]
        require("0" not in pins["des_aligned"] and pins["des_locked"] == "1",
                f"not aligned {end - begin} words after training began: {pins['des_aligned']}, word edge {end - 1}")
    for deserialiser in deserialisers:
        for step in program.wrong_steps:
            arrival = arrival_of(recording, step, deserialiser)
            require("0" in deserialiser.aligned[step:arrival + WORDS_TO_LOSE_ALIGNMENT + 1],
                    f"deserialiser {deserialiser.line} stays aligned after a wrong word, word edge {step}")
        for begin, end in program.payloads:
            check_payload(recording, deserialiser, begin, end)


def arrival_of(recording, step, deserialiser):
    """The first word edge at which the wrong word that a step sends has arrived, or an earlier one."""
    size, timeline, bits = recording.shape.size, recording.timeline, deserialiser.bits
    begin = recording.bit_edges[step] - size
    steady = bits[begin:begin + size]
    require(steady in deserialiser.training * 2, f"line {deserialiser.line} does not train before the wrong word")
    first_wrong = next(edge for edge in range(begin, len(bits)) if bits[edge] != steady[(edge - begin) % size])
    return next(k for k, time in enumerate(timeline.word_times) if time >= timeline.bit_times[first_wrong])


def check_payload(recording, deserialiser, begin, end):
    """The words sent arrive in order, one each word clock; while the user slips, at one of the slip positions."""
    program = recording.timeline.program
    sent = [format(recording.timeline.sent_word(deserialiser.line, k), f"0{recording.shape.size}b")
            for k in range(begin, end)]
    received = deserialiser.words[begin:end + LARGEST_LAG]
    length = SLIP_PAUSE // 2 if program.is_rotating else end - begin
    runs = [longest_run(a == b for a, b in zip(sent, received[lag:])) for lag in range(LARGEST_LAG)]
    require(max(runs) >= length,
            f"deserialiser {deserialiser.line}: the words sent from word edge {begin} do not arrive")


def longest_run(flags):
    return max((len(list(group)) for flag, group in itertools.groupby(flags) if flag), default=0)
