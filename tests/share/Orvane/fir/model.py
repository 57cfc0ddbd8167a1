"""What a FIR filter must do, computed from its argument dictionary on plain integers."""

import collections
import dataclasses
import re

MAC_KIND = "mac_fir"
DUAL_KIND = "transpose_dual_fir"
SYMMETRIC_KIND = "transpose_symmetric_fir"


def signed_value(pattern, width):
    """The low bits of a pattern as two's complement."""
    pattern &= (1 << width) - 1
    return pattern - (1 << width) if pattern >> (width - 1) else pattern


def ceiling_log2(number):
    return (number - 1).bit_length()


@dataclasses.dataclass(frozen=True)
class Filter:
    """A filter as its arguments describe it; coefficients is None where they come from a port."""

    kind: str
    entity: str
    input_width: int
    output_width: int
    coefficient_width: int
    truncation: int
    tap_count: int
    coefficients: tuple
    literals: tuple
    dsp_count: int = 0
    is_limited: bool = False
    pattern: str = ""

    @staticmethod
    def from_arguments(kind, arguments):
        width = int(arguments["%%COEF_WIDTH%%"])
        is_input = arguments.get("%%COEF_ARE_INPUT_SIGNALS%%", "false").lower() == "true"
        aggregate = arguments["%%COEFS%%" if kind == MAC_KIND else "%%COEFS_PKG_HEXA_CONSTANT%%"]
        literals = () if is_input else tuple(re.findall(r'[xX]"[0-9a-fA-F]+"', aggregate))
        values = [signed_value(int(each[2:-1], 16), width) for each in literals]
        tap_count = int(arguments["%%N_TAPS%%"])
        values += [0] * (tap_count - len(values))
        return Filter(
            kind, arguments["%%ENTITY_NAME%%"], int(arguments["%%INPUT_DATA_WIDTH%%"]),
            int(arguments["%%OUTPUT_DATA_WIDTH%%"]), width, int(arguments["%%TO_BE_TRUNCATED%%"]), tap_count,
            None if is_input else tuple(values), literals, int(arguments.get("%%DSP_COUNT%%", "0")),
            arguments.get("%%SATURATION_STAGE%%", "false") == "true", arguments.get("%%CLK_AUX1_PATTERN%%", ""))

    @property
    def is_mac(self):
        return self.kind == MAC_KIND

    @property
    def is_dual(self):
        return self.kind == DUAL_KIND

    @property
    def is_symmetric(self):
        return self.kind == SYMMETRIC_KIND

    @property
    def port_coefficient_count(self):
        """Coefficients that the port carries when they are inputs."""
        return self.tap_count // 2 if self.is_symmetric else self.tap_count

    @property
    def clocks_per_sample(self):
        return -(-self.tap_count // self.dsp_count) if self.is_mac else 1

    @property
    def multiplier_count(self):
        """The most multipliers that the structure may have."""
        if self.is_mac:
            return -(-self.tap_count // self.clocks_per_sample)
        return self.port_coefficient_count

    @property
    def sum_width(self):
        """Bits that hold every sum, whatever the coefficients."""
        return self.input_width + self.coefficient_width + ceiling_log2(self.tap_count)

    @property
    def latency(self):
        return {
            MAC_KIND: self.clocks_per_sample + ceiling_log2(self.multiplier_count) + 4,
            "systolic_fir": self.tap_count + 2,
            "transpose_fir": 3,
            DUAL_KIND: 3,
            SYMMETRIC_KIND: 4,
        }[self.kind]

    def taps(self, port_coefficients):
        """The coefficient of every tap, from the list or from what the port carried."""
        if self.coefficients is not None:
            return self.coefficients
        return port_coefficients + port_coefficients[::-1] if self.is_symmetric else port_coefficients

    def result(self, taps, samples):
        """The output for samples told newest first; those before a reset count as zero."""
        step = 2 if self.is_dual else 1
        total = sum(tap * sample for tap, sample in zip(taps, samples[::step]))
        shifted = total >> self.truncation
        if self.is_limited:
            limit = 1 << (self.output_width - 1)
            return max(-limit, min(limit - 1, shifted))
        return signed_value(shifted, self.output_width)


class Mismatch(Exception):
    """The recorded pins differ from what the filter must do."""


@dataclasses.dataclass
class Pins:
    """The pins just before one rising edge, as characters; those that a kind lacks are '0' (din_ready '1')."""

    rst: str
    din_valid: str
    din_ready: str
    din: str
    din_channel: str
    dout_valid: str
    dout: str
    dout_channel: str
    clk_aux1: str
    coefficient_set: int


class Judge:
    """Follows the recorded pins edge by edge and raises Mismatch at the first fault."""

    def __init__(self, described, coefficient_sets):
        self.filter = described
        self.coefficient_sets = coefficient_sets
        self.edge = 0
        self.output_count = 0
        self.reset_count = 0
        self.aux_position = 0
        self.reset()

    def reset(self):
        self.accepted_count = 0
        self.samples = collections.deque(maxlen=2 * self.filter.tap_count)
        self.due = collections.deque()
        self.last_accepted = None
        self.edges_since_reset = 0
        self.was_ready = False

    def expect(self, name, actual, expected):
        if actual != expected:
            raise Mismatch(f"edge {self.edge}: {name} is {actual} instead of {expected}")

    def see(self, pins):
        """Judges the pins before one edge, then takes over what the edge does."""
        self.check_output(pins)
        if self.filter.is_dual:
            self.expect("din_channel", pins.din_channel, str(self.accepted_count % 2))
        if self.filter.is_mac:
            self.expect("clk_aux1", pins.clk_aux1, self.filter.pattern[self.aux_position])
            self.check_ready(pins)
        if pins.rst == "1":
            self.reset_count += 1
            self.aux_position = 0
            self.reset()
        else:
            self.aux_position = (self.aux_position + 1) % 16
            self.edges_since_reset += 1
            if pins.din_valid == "1" and pins.din_ready == "1":
                self.accept(pins)
        self.edge += 1

    def check_output(self, pins):
        is_due = bool(self.due) and self.due[0][0] == self.edge
        self.expect("dout_valid", pins.dout_valid, "1" if is_due else "0")
        if not is_due:
            return
        _, value, channel = self.due.popleft()
        pattern = format(value & ((1 << self.filter.output_width) - 1), f"0{self.filter.output_width}b")
        self.expect("dout", pins.dout, pattern)
        if self.filter.is_dual:
            self.expect("dout_channel", pins.dout_channel, channel)
        self.output_count += 1

    def check_ready(self, pins):
        clocks = self.filter.clocks_per_sample
        if clocks == 1:
            self.expect("din_ready", pins.din_ready, "1")
            return
        if pins.rst == "1":
            return
        if pins.din_ready not in "01":
            raise Mismatch(f"edge {self.edge}: din_ready is {pins.din_ready}")
        if self.last_accepted is not None:
            self.expect("din_ready", pins.din_ready, "1" if self.edge - self.last_accepted >= clocks else "0")
        elif self.was_ready or self.edges_since_reset >= clocks + 2:
            self.expect("din_ready", pins.din_ready, "1")
        self.was_ready = pins.din_ready == "1"

    def accept(self, pins):
        self.samples.appendleft(signed_value(int(pins.din, 2), self.filter.input_width))
        taps = self.filter.taps(self.coefficient_sets[pins.coefficient_set])
        value = self.filter.result(taps, list(self.samples))
        self.due.append((self.edge + self.filter.latency, value, str(self.accepted_count % 2)))
        self.accepted_count += 1
        self.last_accepted = self.edge
