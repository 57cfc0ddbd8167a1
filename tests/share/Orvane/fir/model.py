"""What a FIR filter must do, computed from its argument dictionary on plain integers."""

import collections
import dataclasses
import itertools
import re

from clocked_bench import binary
from hdl_tools import require
from parameter_set import number

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
        width, tap_count = number(arguments, "COEF_WIDTH"), number(arguments, "N_TAPS")
        is_input = arguments.get("%%COEF_ARE_INPUT_SIGNALS%%") == "true"
        aggregate = arguments["%%COEFS%%" if kind == MAC_KIND else "%%COEFS_PKG_HEXA_CONSTANT%%"]
        literals = () if is_input else tuple(re.findall(r'[xX]"[0-9a-fA-F]+"', aggregate))
        values = tuple(signed_value(int(each[2:-1], 16), width) for each in literals)
        return Filter(
            kind, arguments["%%ENTITY_NAME%%"], number(arguments, "INPUT_DATA_WIDTH"),
            number(arguments, "OUTPUT_DATA_WIDTH"), width, number(arguments, "TO_BE_TRUNCATED"), tap_count,
            None if is_input else values + (0,) * (tap_count - len(values)), literals,
            int(arguments.get("%%DSP_COUNT%%", "0")), arguments.get("%%SATURATION_STAGE%%") == "true",
            arguments.get("%%CLK_AUX1_PATTERN%%", ""))

    def inputs(self):
        """Width of each port but the clock, None for a single bit."""
        ports = {"rst": None, "din_valid": None, "din": self.input_width}
        if self.coefficients is None:
            ports["coefs"] = self.port_coefficient_count * self.coefficient_width
        return ports

    def outputs(self):
        ports = {"dout_valid": None, "dout": self.output_width}
        if self.is_mac:
            ports.update(din_ready=None, clk_aux1=None)
        if self.is_dual:
            ports.update(din_channel=None, dout_channel=None)
        return ports

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
        """Bits of the sums: what the farthest one needs, of a result that wraps what it shows; a product's at least."""
        product = self.input_width + self.coefficient_width
        if self.coefficients is None:
            widest = product + ceiling_log2(self.tap_count)
        else:
            samples = -1 << (self.input_width - 1), (1 << (self.input_width - 1)) - 1
            ends = [sum(end(sample * value for sample in samples) for value in self.coefficients) for end in (min, max)]
            widest = next(width for width in itertools.count(1) if all(signed_value(end, width) == end for end in ends))
        return max(product + self.is_symmetric,
                   widest if self.is_limited else min(widest, self.truncation + self.output_width))

    @property
    def latency(self):
        clocks = self.clocks_per_sample
        return {
            MAC_KIND: clocks + ceiling_log2(self.multiplier_count) + 5 if clocks > 1 else 4,
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


class Judge:
    """Follows the outputs before each edge and raises CheckFailed at the first fault."""

    def __init__(self, described):
        self.filter = described
        self.edge = 0
        self.output_count = 0
        self.reset_count = 0
        self.reset()

    def reset(self):
        self.aux_position = 0
        self.accepted_count = 0
        self.samples = collections.deque(maxlen=2 * self.filter.tap_count)
        self.due = collections.deque()
        self.last_accepted = None
        self.edges_since_reset = 0
        self.was_ready = False

    def expect(self, name, outputs, expected):
        require(outputs[name] == expected, f"edge {self.edge}: {name} is {outputs[name]} instead of {expected}")

    def see(self, line, outputs):
        """Judges the outputs before one edge, then takes over what the edge does with the inputs of a line."""
        self.check_output(outputs)
        if self.filter.is_dual:
            self.expect("din_channel", outputs, str(self.accepted_count % 2))
        if self.filter.is_mac:
            self.expect("clk_aux1", outputs, self.filter.pattern[self.aux_position])
            self.check_ready(line, outputs)
        if line.rst:
            self.reset_count += 1
            self.reset()
        else:
            self.aux_position = (self.aux_position + 1) % 16
            self.edges_since_reset += 1
            if line.din_valid and outputs.get("din_ready") != "0":
                self.accept(line)
        self.edge += 1

    def check_output(self, outputs):
        is_due = bool(self.due) and self.due[0][0] == self.edge
        self.expect("dout_valid", outputs, str(int(is_due)))
        if not is_due:
            return
        _, value, channel = self.due.popleft()
        self.expect("dout", outputs, binary(value, self.filter.output_width))
        if self.filter.is_dual:
            self.expect("dout_channel", outputs, channel)
        self.output_count += 1

    def check_ready(self, line, outputs):
        clocks = self.filter.clocks_per_sample
        if clocks > 1 and line.rst:
            return
        require(outputs["din_ready"] in "01", f"edge {self.edge}: din_ready is {outputs['din_ready']}")
        if clocks == 1:
            self.expect("din_ready", outputs, "1")
        elif self.last_accepted is not None:
            self.expect("din_ready", outputs, str(int(self.edge - self.last_accepted >= clocks)))
        elif self.was_ready or self.edges_since_reset >= clocks + 2:
            self.expect("din_ready", outputs, "1")
        self.was_ready = outputs["din_ready"] == "1"

    def accept(self, line):
        self.samples.appendleft(signed_value(int(line.din, 2), self.filter.input_width))
        value = self.filter.result(self.filter.taps(line.coefficients), list(self.samples))
        self.due.append((self.edge + self.filter.latency, value, str(self.accepted_count % 2)))
        self.accepted_count += 1
        self.last_accepted = self.edge
