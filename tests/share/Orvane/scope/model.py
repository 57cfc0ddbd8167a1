"""What a scope has to do, clock by clock, told by its rules alone.

Index t stands for what is sampled at clock edge t. Outputs are told as they are sampled at an edge, that is just before
it. A value that the rules leave open is None.
"""

import dataclasses
import re

from parameter_set import number

# Clocks from an event to the edge at which its status output shows it, as the description pages promise.
BUSY_LATENCY = 1    # arm, release of a startup scope's reset
RESET_LATENCY = 1
SAMPLE_LATENCY = 3  # the sample that triggers or ends a window

LEVELS = {"00": "0", "01": "1", "000": "0", "001": "1"}
EDGES = {"110": "rising", "100": "falling", "111": "both"}


def line_triggers(text, mode, line_count):
    """What each line has to show, by the codes of a trigger set; None where it is ignored."""
    codes = dict(re.findall(r'(\d+|others)\s*=>\s*"(\w*)"', text))
    width = 2 if mode == "basic" else 3
    meanings = LEVELS if mode == "basic" else {**LEVELS, **EDGES}
    chosen = [codes.get(str(line), codes.get("others", "")) for line in range(line_count)]
    return [meanings.get(code) if len(code) == width else None for code in chosen]


def line_holds(trigger, before, now):
    return {None: True, "0": now == 0, "1": now == 1, "rising": (before, now) == (0, 1),
            "falling": (before, now) == (1, 0), "both": before != now}[trigger]


def holds(triggers, before, now):
    """Whether a condition holds at a sample: the AND over all lines, given as numbers with line i in bit i."""
    return all(line_holds(trigger, before >> line & 1, now >> line & 1) for line, trigger in enumerate(triggers))


@dataclasses.dataclass
class Pins:
    """Inputs at one edge; arm and force are not used by the startup scope."""

    reset: int = 0
    arm: int = 0
    force: int = 0
    trig: int = 0
    data: int = 0
    address: int = 0


@dataclasses.dataclass
class Outputs:
    """Outputs at one edge; count is the scope's window_count, the startup scope's first_valid."""

    busy: int = None
    triggered: int = None
    done: int = None
    count: int = None
    sample: int = None


class Recorder:
    """What both scopes have in common: past inputs, status in the making, and the readout."""

    is_armed = False  # has the pins arm and force_trigger

    def __init__(self, arguments):
        self.depth = number(arguments, "CAPTURE_DEPTH")
        self.address_width = number(arguments, "CAPTURE_WIDTH")
        self.input_count = number(arguments, "INPUT_LINE_COUNT")
        self.line_count = number(arguments, "TRIGGER_LINE_COUNT")
        self.sample_width = self.input_count
        self.pins = []
        self.status = Outputs()
        self.coming = []   # (edge at which it is seen, field, value)
        self.content = {}  # sample by its logical number, of the capture that is or will be done
        self.done_edge = None
        self.events = {}   # how often something happened, for the stimulus to prove that it covers the rules

    def now(self):
        """Index of the next edge."""
        return len(self.pins)

    def note(self, event):
        self.events[event] = self.events.get(event, 0) + 1

    def is_done(self):
        return self.done_edge is not None and self.now() > self.done_edge

    def show(self, edge, **fields):
        self.coming += [(edge, field, value) for field, value in fields.items()]

    def clear_status(self, edge, **fields):
        """Nothing that was under way is seen any more; the fields are seen from the edge on."""
        self.coming = []
        self.show(edge, **fields)
        self.done_edge = None

    def finish(self, last_index, **fields):
        self.done_edge = last_index + SAMPLE_LATENCY
        self.show(self.done_edge, busy=0, done=1, **fields)

    def step(self, pins):
        """Takes the inputs at the next edge and tells the outputs at it."""
        edge = self.now()
        for change in [each for each in self.coming if each[0] == edge]:
            self.coming.remove(change)
            setattr(self.status, change[1], change[2])
        outputs = dataclasses.replace(self.status, sample=self.read_sample(edge))
        self.pins.append(pins)
        self.take(edge, pins)
        return self.visible(outputs)

    def visible(self, outputs):
        return outputs

    def read_sample(self, edge):
        """The sample whose number was given two edges before, if it was readable all the time."""
        if not self.status.done or edge - 2 < self.done_edge + 1:
            return None
        self.note("read")
        return self.content.get(self.pins[edge - 2].address)

    def take(self, edge, pins):
        raise NotImplementedError


class ScopeModel(Recorder):
    is_armed = True

    def __init__(self, arguments):
        super().__init__(arguments)
        self.before = min(number(arguments, "PRE_TRIGGER_SAMPLES"), self.depth - 1)
        self.window_length = number(arguments, "WINDOW_CAPTURE_LENGTH")
        self.window_total = self.depth // self.window_length
        self.delay = number(arguments, "USER_DATA_DELAY")
        self.stores_trigger = number(arguments, "STORE_TRIGGER") == 1
        self.stores_window = number(arguments, "STORE_WINDOW") == 4
        self.sample_width += number(arguments, "STORE_TRIGGER") + number(arguments, "STORE_WINDOW")
        self.has_windows = arguments["%%CAPTURE_MODE%%"] == '"multiple_windows"'
        self.has_two_levels = arguments["%%MULTIPLE_TRIGGER_LEVEL%%"] == "true"
        mode = arguments["%%TRIGGER_MODE%%"].strip('"')
        keys = (("BASIC_TRIGGER_VALUES", "ADVANCED_TRIGGER_VALUES") if mode == "basic" else
                ("EDGE_TRIGGER_VALUES", "ADVANCED_EDGE_TRIGGER_VALUES"))
        self.triggers, self.first_triggers = (
            line_triggers(arguments[f"%%{key}%%"], mode, self.line_count) for key in keys)
        self.armed_edge = None     # of the capture that takes samples
        self.eligible_from = None  # first index that may trigger
        self.first_index = None    # that met the first level
        self.trigger_index = None  # accepted, of the window that is being filled
        self.windows = 0

    def is_idle(self):
        """Whether nothing is captured, or is about to be shown as captured."""
        return self.armed_edge is None and self.done_edge is None

    def take(self, edge, pins):
        if pins.reset:
            if self.armed_edge is not None:
                self.note("aborted")
            self.armed_edge = None
            self.clear_status(edge + RESET_LATENCY, busy=0, triggered=0, done=0, count=0)
        elif self.armed_edge is not None:
            if pins.arm:
                self.note("arm while busy")
            self.take_sample(edge, pins)
        elif pins.arm and self.status.busy == 0:
            self.start(edge)

    def start(self, edge):
        self.armed_edge = edge
        self.eligible_from = edge + 1 + (0 if self.has_windows else self.before)
        self.first_index = self.trigger_index = None
        self.windows = 0
        self.content = {}
        self.clear_status(edge + BUSY_LATENCY, busy=1, triggered=0, done=0, count=0)

    def take_sample(self, edge, pins):
        if pins.force and edge < self.eligible_from:
            self.note("forced too early")
        if self.trigger_index is None and edge >= self.eligible_from:
            self.look_for_trigger(edge, pins)
        if self.trigger_index is None:
            return
        behind = self.window_length - 1 if self.has_windows else self.depth - 1 - self.before
        if edge == self.trigger_index + behind:
            self.end_window(edge)

    def look_for_trigger(self, edge, pins):
        before = self.pins[edge - 1].trig
        condition = holds(self.triggers, before, pins.trig)
        if pins.force or (condition and (not self.has_two_levels or self.first_index is not None)):
            self.trigger_index = edge
            self.show(edge + SAMPLE_LATENCY, triggered=1)
            return
        if condition:
            self.note("trigger without first level")
        if self.has_two_levels and self.first_index is None and holds(self.first_triggers, before, pins.trig):
            if condition:
                self.note("first level with condition")
            self.first_index = edge

    def end_window(self, edge):
        first = self.trigger_index - (0 if self.has_windows else self.before)
        offset = self.windows * self.window_length if self.has_windows else 0
        for index in range(first, edge + 1):
            self.content[offset + index - first] = self.sample(index)
        self.windows += 1
        if not self.has_windows or self.windows == self.window_total:
            self.note("captured")
            self.armed_edge = None
            self.finish(edge, count=self.windows)
            return
        self.show(edge + SAMPLE_LATENCY, count=self.windows)
        self.eligible_from = edge + 1
        self.first_index = self.trigger_index = None

    def sample(self, index):
        """The stored sample of an index."""
        value, width = self.pins[index - self.delay].data, self.input_count
        if self.stores_trigger:
            value |= int(index == self.trigger_index) << width
            width += 1
        if self.stores_window and self.has_windows:
            value |= self.windows % 16 << width
        return value


class StartupModel(Recorder):
    def __init__(self, arguments):
        super().__init__(arguments)
        self.before = number(arguments, "PRE_TRIGGER_SAMPLES")
        self.pattern = int(arguments["%%STARTUP_TRIG_VALUE%%"].strip('"'), 2)
        self.start_edge = None
        self.trigger_index = None

    def take(self, edge, pins):
        if pins.reset:
            if self.status.busy:
                self.note("aborted")
            self.start_edge = self.trigger_index = None
            self.content = {}
            self.clear_status(edge + RESET_LATENCY, busy=0, triggered=0, done=0, count=0)
            return
        if self.start_edge is None and edge > 0 and self.pins[edge - 1].reset:
            self.start_edge = edge
            self.show(edge + BUSY_LATENCY, busy=1, count=None)
        if self.start_edge is None:
            return
        if self.trigger_index is None and pins.trig == self.pattern:
            self.take_trigger(edge)
        if self.trigger_index is not None and edge == self.trigger_index + self.depth - 1 - self.before:
            self.end_capture(edge)

    def take_trigger(self, edge):
        age = edge - self.start_edge
        self.note("triggered at the first sample" if age == 0 else
                  "triggered early" if age < self.before else "triggered late")
        self.trigger_index = edge
        self.show(edge + SAMPLE_LATENCY, triggered=1)

    def end_capture(self, edge):
        self.note("captured")
        first = self.trigger_index - self.before
        for index in range(max(first, self.start_edge), edge + 1):
            self.content[index - first] = self.pins[index].data
        self.finish(edge, count=max(0, self.start_edge - first))


MODELS = {"scope": ScopeModel, "startup_scope": StartupModel}
