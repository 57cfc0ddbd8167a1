"""The rules of the interface, against which the recorded pins of a simulation are judged.

Latencies are those of the description page. Where it gives two, by the phase of the clocks, and for the first edge after
reset, any constant value is accepted: it is found by trying.
"""

import itertools

from bench import BIT_PERIOD
from hdl_tools import require

MATCHES_TO_ALIGN = 8
WORDS_TO_LOSE_ALIGNMENT = 8
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
    for latency in (size // 2, size // 2 + 1):
        due = [(timeline.sent_word(line, k), recording.bit_edges[k] + latency) for k in words]
        due = [(word, edge) for word, edge in due if timeline.bit_times[0] + (edge + size) * BIT_PERIOD < session.end]
        # A bit that an edge puts out is recorded before the next one.
        if all(bits[edge + 1:edge + 1 + size] == format(word, f"0{size}b") for word, edge in due):
            found.append(latency)
    return found


def check_deserialiser(recording, deserialiser):
    for session in recording.sessions:
        paths = [search_path(recording.shape.size, session, deserialiser, start) for start in FIRST_EDGES]
        require(any(paths), f"deserialiser {deserialiser.line}: des_aligned does not follow its words from {session.begin} ns on")
        require(any(windows_fit(recording, session, deserialiser, path) for path in paths if path),
                f"deserialiser {deserialiser.line}: its words are not in the stream where its slip position says, "
                f"from {session.begin} ns to {session.end} ns")


def search_path(size, session, deserialiser, start):
    """The slip position after each word edge, by the words on des_data; None if des_aligned does not follow the search."""
    slip, matches, aligned, is_step, path = 0, 0, "0", False, {}
    for k in session.words:
        if deserialiser.aligned[k] != aligned:
            return None
        if k >= session.words[0] + start:
            ignored, is_step = is_step, False
            if deserialiser.searching[k] == "0":
                matches = 0
                is_step = deserialiser.slips[k] == "1"
            elif not ignored and deserialiser.words[k] == deserialiser.training:
                matches += 1
                aligned = "1" if matches >= MATCHES_TO_ALIGN else aligned
            elif not ignored:
                matches, aligned, is_step = 0, "0", True
            slip = (slip + is_step) % size
        path[k] = slip
    return path


def windows_fit(recording, session, deserialiser, path):
    """Whether the words on des_data are the windows of the stream at the slip positions."""
    size, bits = recording.shape.size, deserialiser.bits
    for phase in (0, 1):
        # What is seen at a word edge was given by the one before, which knew the slip position of one edge more before.
        begins = {k: recording.bit_edges[k - 1] - (4 * size - size // 2 - 1) - phase + path[k - 2]
                  for k in session.words[8:]}
        if all(bits[begin:begin + size] == deserialiser.words[k] for k, begin in begins.items()):
            return True
    return False


def check_locked(recording):
    """des_locked is the AND of des_aligned, one word clock late."""
    for session in recording.sessions:
        pins = [recording.word_pins[k] for k in session.words]
        all_aligned = ["1" if "0" not in each["des_aligned"] else "0" for each in pins]
        locked = [each["des_locked"] for each in pins]
        require(locked == ["0"] + all_aligned[:-1],
                f"des_locked does not follow des_aligned, from {session.begin} ns to {session.end} ns")


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
    """The words sent arrive in order, one each word clock."""
    sent = [format(recording.timeline.sent_word(deserialiser.line, k), f"0{recording.shape.size}b") for k in range(begin, end)]
    received = deserialiser.words[begin:end + LARGEST_LAG]
    require(any(sent == received[lag:lag + len(sent)] for lag in range(LARGEST_LAG)),
            f"deserialiser {deserialiser.line}: the words sent from word edge {begin} do not arrive")
