#!/usr/bin/env python3
"""Parameter sets for the checks of the five FIR filters, told by the fields of their forms.

Run as a program it prints them as JSON: a list of {"kind", "name", "form", "arguments"}, where the arguments are
the dictionary that the form makes from its fields.
"""

import argparse
import dataclasses
import json
import random
import re

KINDS = ["systolic_fir", "transpose_fir", "transpose_dual_fir", "transpose_symmetric_fir", "mac_fir"]

# Fixed sets that no run leaves out.
ALWAYS = ("smallest", "reference", "largest", "input_many", "wide_negative", "one_clock")

SETTINGS_KEYS = {
    "entity": "Entity",
    "input_width": "InputDataWidth",
    "output_width": "OutputDataWidth",
    "tap_count": "TapCount",
    "dsp_count": "DSPCount",
    "saturation": "SaturationStage",
    "coefficient_width": "CoefficientWidth",
    "mode": "CoefficientMode",
    "coefficient_count": "CoefficientCount",
    "coefficients": "Coefficients",
    "truncation": "ToBeTruncated",
    "pattern": "ClkAux1Pattern",
}

APPLICATION = "Velmora"
DATE = "09/04/2026 - 16:05"


@dataclasses.dataclass(frozen=True)
class StreamingForm:
    """Fields of the systolic and transpose forms."""

    entity: str
    input_width: int = 8
    output_width: int = 8
    coefficient_width: int = 8
    mode: str = "Constant"
    coefficient_count: int = 3
    coefficients: str = ""
    truncation: int = 0


@dataclasses.dataclass(frozen=True)
class MacForm:
    """Fields of the MAC form."""

    entity: str
    input_width: int = 8
    output_width: int = 8
    tap_count: int = 4
    dsp_count: int = 1
    saturation: str = "Enable"
    coefficient_width: int = 8
    coefficients: str = ""
    truncation: int = 0
    pattern: str = ""


@dataclasses.dataclass(frozen=True)
class ParameterSet:
    kind: str
    name: str
    form: object

    def arguments(self):
        return argument_dictionary(self.form)

    def fields(self):
        """The form's fields by their keys in the program's settings."""
        return {SETTINGS_KEYS[field]: value for field, value in dataclasses.asdict(self.form).items()}


def hexadecimal(value, bit_count):
    """The literal that a form makes from a decimal coefficient; leading f digits are cut until it fits."""
    digits = format(value % 2**64, "x").zfill(bit_count // 4)
    while len(digits) > bit_count // 4:
        if digits[0] != "f":
            raise ValueError(f"{value} is too high for {bit_count} bits")
        digits = digits[1:]
    return f'x"{digits}"'


def coefficient_aggregate(text, coefficient_width):
    """The aggregate that a form makes from the text of its coefficients editor."""
    normalized_width = -(-coefficient_width // 4) * 4
    pieces = [" ".join(piece.split()) for piece in re.split(r"[;,\n]", text)]
    literals = [piece if re.fullmatch(r'[xX]"[0-9A-Fa-f]+"', piece) else hexadecimal(int(piece), normalized_width)
                for piece in pieces if piece]
    return "(" + ", ".join(literals) + ")", len(literals)


def argument_dictionary(form):
    """The argument dictionary of a form, its keys in the form's order."""
    widths = {
        "%%INPUT_DATA_WIDTH%%": str(form.input_width),
        "%%INPUT_DATA_WIDTH-1%%": str(form.input_width - 1),
        "%%OUTPUT_DATA_WIDTH%%": str(form.output_width),
        "%%OUTPUT_DATA_WIDTH-1%%": str(form.output_width - 1),
        "%%TO_BE_TRUNCATED%%": str(form.truncation),
        "%%COEF_WIDTH%%": str(form.coefficient_width),
        "%%DATE%%": DATE,
    }
    if isinstance(form, MacForm):
        return {
            "%%COEFS%%": coefficient_aggregate(form.coefficients, form.coefficient_width)[0],
            "%%N_TAPS%%": str(form.tap_count),
            "%%CLK_AUX1_PATTERN%%": form.pattern or "1000000000000000",
            "%%SATURATION_STAGE%%": "true" if form.saturation == "Enable" else "false",
            "%%ENTITY_NAME%%": form.entity,
            "%%APPLICATION%%": APPLICATION,
            "%%DSP_COUNT%%": str(form.dsp_count),
            **widths,
        }
    is_input = form.mode == "Input"
    if is_input:
        aggregate, count = "(others => (others => '0'))", form.coefficient_count
    else:
        aggregate, count = coefficient_aggregate(form.coefficients, form.coefficient_width)
    return {
        "%%N_TAPS%%": str(count),
        "%%ENTITY_NAME%%": form.entity,
        "%%COEFS_PKG_HEXA_CONSTANT%%": aggregate,
        "%%APPLICATION%%": APPLICATION,
        "%%COEF_ARE_INPUT_SIGNALS%%": "true" if is_input else "false",
        **widths,
    }


def joined(values, separator=", "):
    return separator.join(str(value) for value in values)


def plain_values(count, width):
    """Coefficients of both signs, no two equal, none zero or a power of two."""
    choice = random.Random(count * 100 + width)
    values = []
    while len(values) < count:
        value = choice.randint(-2**(width - 1), 2**(width - 1) - 1)
        if value not in values and bin(abs(value)).count("1") > 1:
            values.append(value)
    return values


def mirrored(kind, values):
    """The values, for the symmetric filter the first half of them and its mirror image."""
    if kind != "transpose_symmetric_fir":
        return values
    half = values[:len(values) // 2]
    return half + half[::-1]


def streaming_sets(kind):
    """The fixed sets of a streaming kind: ends of all ranges, odd widths, unusual coefficients."""
    is_symmetric = kind == "transpose_symmetric_fir"
    fewest = 4 if is_symmetric else 3
    widest = 24 if kind == "transpose_fir" else 18
    extremes = [-2**23, 2**23 - 1, -2**23, -2**23, 2**23 - 1, -1, 0] * 8
    small = mirrored(kind, [1, -128, -1, 127][:fewest])
    digits = ['x"7"', 'x"fffe"', 'X"1F2"', 'x"00000000000000000a5"', "-1024", "1023"]
    forms = {
        "smallest": StreamingForm("e", coefficients=joined(small, ";")),
        "reference": StreamingForm("reference_fir", 12, 14, 10, truncation=6,
                                   coefficients=joined(mirrored(kind, plain_values(8, 10)))),
        "largest": StreamingForm("largest_fir", 18, 50, 24, coefficients=joined(mirrored(kind, extremes))),
        "all_negative": StreamingForm("Deepest_Fir", 18, 50, 18, coefficients=joined([-2**17] * 56, "\n")),
        "beyond_the_sum": StreamingForm("sign_only", 8, 14, 8, truncation=36, coefficients=joined(small)),
        "sign_extended": StreamingForm("wide_output", 9, 40, 9, truncation=10,
                                       coefficients=joined(mirrored(kind, plain_values(6, 9)))),
        "wide_negative": StreamingForm("wide_negative", 18, 45, 24,
                                       coefficients=joined(mirrored(kind, [-3, -5000001, 99, -8388607, -7, 11]))),
        "low_bits": StreamingForm("wrapping", 11, 8, 13, coefficients=joined(mirrored(kind, plain_values(10, 13)))),
        "digit_counts": StreamingForm("x1_y2", 13, 17, 11, truncation=5,
                                      coefficients=joined(mirrored(kind, digits), " ;\n")),
        "simple_values": StreamingForm("shifts", 10, 16, 8, truncation=1,
                                       coefficients=joined(mirrored(kind, [0, 1, -1, 64, 0, -128, 3, 3]))),
        "all_zero": StreamingForm("nothing", 8, 9, 8, truncation=2, coefficients=joined([0] * fewest)),
        "input_fewest": StreamingForm("loadable", 8, 12, 9, "Input", fewest, "7, 8", 3),
        "input_many": StreamingForm("loadable_wide", 18, 42, 21, "Input", 16, "", 8),
        "input_largest": StreamingForm("loadable_largest", widest, 48, 18 if widest > 18 else 24, "Input", 56, "", 0),
    }
    if kind == "transpose_fir":
        forms["widest_input"] = StreamingForm("wide_input", 24, 36, 18, truncation=12,
                                              coefficients=joined([-2**17, 2**17 - 1, 77777] * 4))
    return [ParameterSet(kind, name, form) for name, form in forms.items()]


def mac_sets():
    """The fixed sets of the MAC filter: ends of all ranges, clocks per sample and units of many shapes."""
    low_pass = "5, -15, -30, 110, 330, 330, 110, -30, -15, 5"
    largest = joined([(-2**17, 2**17 - 1, -2**17, 99999, -1)[index % 5] for index in range(160)])
    forms = {
        "smallest": MacForm("bits", 1, 1, 4, 1, "Disable", 1, "-1, 0, 1"),
        "smallest_limited": MacForm("limited_bits", 1, 1, 5, 2, "Enable", 1, "-1, -1, 0, -1", 1, "0101010101010101"),
        "reference": MacForm("reference_fir", 12, 10, 10, 3, "Enable", 10, low_pass, 9),
        "one_clock": MacForm("one_clock", 12, 12, 20, 20, "Enable", 11, joined(plain_values(20, 11)), 10),
        "wide_negative": MacForm("wide_negative", 18, 16, 6, 6, "Enable", 18, "-3, -99999, -5, 77777, -131071, -7", 20),
        "spare_units": MacForm("spare", 10, 16, 6, 20, "Disable", 8, joined(plain_values(6, 8)), 2),
        "five_of_eight": MacForm("five_of_eight", 9, 11, 10, 8, "Enable", 9, low_pass, 6, "1111000011110000"),
        "one_unit": MacForm("one_unit", 8, 8, 4, 1, "Enable", 8, "127, -128, 127, -128", 7),
        "one_long_unit": MacForm("one_long_unit", 16, 16, 160, 1, "Disable", 16, joined(plain_values(159, 16)), 17),
        "largest": MacForm("largest_fir", 18, 16, 160, 20, "Enable", 18, largest, 26, "0000000000000001"),
        "padded_unit": MacForm("padded_unit", 11, 13, 16, 3, "Disable", 9, joined(plain_values(16, 9)), 4),
        "padded_taps": MacForm("padded_taps", 7, 9, 11, 4, "Enable", 6, 'x"1f", x"20", x"3f"', 3),
        "digit_counts": MacForm("digits", 13, 15, 7, 2, "Enable", 10, 'x"e", X"1FFF"; x"0000200"\n-512, 511'),
        "beyond_the_sum": MacForm("sign_only", 5, 8, 6, 3, "Enable", 5, "15, -16, 15, -16, 1, -1", 42),
        "always_limited": MacForm("clipping", 18, 2, 12, 5, "Enable", 18, joined([-2**17, 2**17 - 1] * 6), 0),
        "all_zero": MacForm("nothing", 6, 6, 8, 3, "Enable", 6, "0, 0, 0", 0, "0000000000000000"),
    }
    return [ParameterSet("mac_fir", name, form) for name, form in forms.items()]


def literal(choice, value, width):
    """A coefficient as a designer may write it."""
    normalized_width = -(-width // 4) * 4
    if choice.random() < 0.7:
        return str(value)
    return f'x"{format(value % 2**normalized_width, "x").zfill(normalized_width // 4 + choice.randint(0, 2))}"'


def random_streaming_set(kind, choice, number):
    coefficient_width = choice.randint(8, 24)
    input_width = choice.randint(8, 24 if kind == "transpose_fir" and coefficient_width <= 18 else 18)
    output_width = choice.randint(8, 50)
    count = choice.randint(3, 56) if choice.random() < 0.3 else choice.randint(3, 14)
    count += count % 2 if kind == "transpose_symmetric_fir" else 0
    limit = 2**(coefficient_width - 1)
    values = [choice.choice([-limit, limit - 1, 0, choice.randint(-limit, limit - 1)]) for _ in range(count)]
    literals = [literal(choice, value, coefficient_width) for value in values]
    form = StreamingForm(f"random_{number}", input_width, output_width, coefficient_width,
                         choice.choice(["Constant", "Constant", "Input"]), count, joined(mirrored(kind, literals)),
                         choice.randint(0, min(36, 50 - output_width)))
    return ParameterSet(kind, f"random_{number}", form)


def random_mac_set(choice, number):
    coefficient_width = choice.randint(1, 18)
    output_width = choice.randint(1, 16)
    tap_count = choice.randint(4, 160) if choice.random() < 0.3 else choice.randint(4, 24)
    limit = 2**(coefficient_width - 1)
    values = [choice.choice([-limit, limit - 1, choice.randint(-limit, limit - 1)])
              for _ in range(choice.choice([tap_count, choice.randint(3, tap_count)]))]
    largest_truncation = choice.choice([50 - output_width, 18])
    form = MacForm(f"random_{number}", choice.randint(1, 18), output_width, tap_count, choice.randint(1, 20),
                   choice.choice(["Enable", "Disable"]), coefficient_width,
                   joined(literal(choice, value, coefficient_width) for value in values),
                   choice.randint(0, min(largest_truncation, 50 - output_width)),
                   format(choice.getrandbits(16), "016b"))
    return ParameterSet("mac_fir", f"random_{number}", form)


def parameter_sets(kind, seed, is_long):
    """All fixed sets of a kind and some random ones; without 'is_long' a choice of them."""
    choice = random.Random(f"{kind} {seed}")
    sets = mac_sets() if kind == "mac_fir" else streaming_sets(kind)
    if not is_long:
        always = [each for each in sets if each.name in ALWAYS]
        others = [each for each in sets if each not in always]
        sets = always + choice.sample(others, 5)
    for number in range(30 if is_long else 3):
        sets.append(random_mac_set(choice, number) if kind == "mac_fir" else random_streaming_set(kind, choice, number))
    return sets


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--kind", choices=KINDS, action="append", help="only this kind")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--long", action="store_true")
    options = parser.parse_args()
    print(json.dumps([
        {"kind": each.kind, "name": each.name, "form": dataclasses.asdict(each.form), "arguments": each.arguments()}
        for kind in options.kind or KINDS for each in parameter_sets(kind, options.seed, options.long)], indent=1))


if __name__ == "__main__":
    main()
