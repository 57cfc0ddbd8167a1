"""What a FIR filter is to be, computed from its argument dictionary by the rules of its page."""

import re

from parameter_set import number


def signed_value(pattern, width):
    """The low bits of a pattern as two's complement."""
    pattern %= 1 << width
    return pattern - (1 << width) if pattern >> (width - 1) else pattern


class Filter:
    """Literals and coefficients are empty where a port brings the coefficients."""

    def __init__(self, kind, arguments):
        self.widths = [number(arguments, f"{key}_WIDTH") for key in ("INPUT_DATA", "OUTPUT_DATA", "COEF")]
        self.truncation, self.tap_count = number(arguments, "TO_BE_TRUNCATED"), number(arguments, "N_TAPS")
        self.output_end = self.truncation + self.widths[1]  # the bit above those that leave
        self.has_port = arguments.get("%%COEF_ARE_INPUT_SIGNALS%%") == "true"
        aggregate = arguments.get("%%COEFS%%") or arguments["%%COEFS_PKG_HEXA_CONSTANT%%"]
        self.literals = [] if self.has_port else re.findall(r'[xX]"[0-9a-fA-F]+"', aggregate)
        self.coefficients = [signed_value(int(literal[2:-1], 16), self.widths[2]) for literal in self.literals]
        self.is_symmetric = kind == "transpose_symmetric_fir"
        self.is_limited = arguments.get("%%SATURATION_STAGE%%") == "true"
        self.clocks = -(-self.tap_count // int(arguments.get("%%DSP_COUNT%%", self.tap_count)))
        self.multipliers = -(-self.tap_count // self.clocks) // (2 if self.is_symmetric else 1)
        self.latency = {
            "mac_fir": self.clocks + (self.multipliers - 1).bit_length() + 5 if self.clocks > 1 else 4,
            "systolic_fir": self.tap_count + 2, "transpose_symmetric_fir": 4}.get(kind, 3)
        self.inputs = {"clk": None, "rst": None, "din_valid": None, "din": self.widths[0]}
        if self.has_port:
            self.inputs["coefs"] = self.multipliers * self.widths[2]
        self.outputs = {"dout_valid": None, "dout": self.widths[1]}
        own_outputs = {"mac_fir": ["din_ready", "clk_aux1"], "transpose_dual_fir": ["din_channel", "dout_channel"]}
        self.outputs.update(dict.fromkeys(own_outputs.get(kind, [])))

    def reached_width(self):
        """Bits of the lowest and of the highest sum; with a port what holds those of any coefficients."""
        input_width, _, coefficient_width = self.widths
        if self.has_port:
            return input_width + coefficient_width + (self.tap_count - 1).bit_length()
        products = [(each * -2**(input_width - 1), each * (2**(input_width - 1) - 1)) for each in self.coefficients]
        return max(sum(map(max, products)).bit_length(), (~sum(map(min, products))).bit_length()) + 1

    def sum_width(self):
        """Bits of the sums in the text: what the farthest one needs, of a result that wraps what leaves; a product's at least."""
        needed = self.reached_width() if self.is_limited else min(self.reached_width(), self.output_end)
        return max(needed, self.widths[0] + self.widths[2] + self.is_symmetric)

    def facts(self):
        facts = {
            "Taps": self.tap_count, "Multipliers": self.multipliers, "Latency": self.latency, "Sum width": self.reached_width(),
            "Clocks per sample": self.clocks, "Output bits": f"{self.output_end - 1} downto {self.truncation}",
            "Can wrap": "yes" if self.reached_width() > self.output_end and not self.is_limited else "no"}
        return facts if self.has_port else {**facts, "DC gain": sum(self.coefficients)}
