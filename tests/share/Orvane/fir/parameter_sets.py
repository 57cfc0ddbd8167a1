"""Parameter sets for the checks of the five FIR filters."""

import dataclasses
import functools
import random

from parameter_set import Form, ParameterSet, random_sets, setting

KINDS = ["systolic_fir", "transpose_fir", "transpose_dual_fir", "transpose_symmetric_fir", "mac_fir"]


@dataclasses.dataclass(frozen=True)
class StreamingForm(Form):
    """Fields of the systolic and transpose forms."""

    entity: str = setting("Entity")
    input_width: int = setting("InputDataWidth", 8)
    output_width: int = setting("OutputDataWidth", 8)
    coefficient_width: int = setting("CoefficientWidth", 8)
    mode: str = setting("CoefficientMode", "Constant")
    coefficient_count: int = setting("CoefficientCount", 3)
    coefficients: str = setting("Coefficients", "")
    truncation: int = setting("ToBeTruncated", 0)


@dataclasses.dataclass(frozen=True)
class MacForm(Form):
    """Fields of the MAC form."""

    entity: str = setting("Entity")
    input_width: int = setting("InputDataWidth", 8)
    output_width: int = setting("OutputDataWidth", 8)
    tap_count: int = setting("TapCount", 4)
    dsp_count: int = setting("DSPCount", 1)
    saturation: str = setting("SaturationStage", "Enable")
    coefficient_width: int = setting("CoefficientWidth", 8)
    coefficients: str = setting("Coefficients", "")
    truncation: int = setting("ToBeTruncated", 0)
    pattern: str = setting("ClkAux1Pattern", "")


def joined(values, separator=", "):
    return separator.join(str(value) for value in values)


def mirrored(kind, values):
    """The values, for the symmetric filter the first half of them and its mirror image."""
    if kind != "transpose_symmetric_fir":
        return values
    half = values[:len(values) // 2]
    return half + half[::-1]


def streaming_forms(kind):
    """The fixed forms of a streaming kind, each for a limit of its own."""
    is_symmetric = kind == "transpose_symmetric_fir"
    # Here the lowest sum takes one bit more than the highest; with negative coefficients the highest does.
    lowest = [127, 127, 4, 4, 127, 127] if is_symmetric else [127, 127, 3]
    plain = [2749, -3811, 1003, -77, 4091, -4096, 19, 1234, -2222, 3333]
    negative = [-3, -5000001, 99, -8388607, -7, 11]
    digits = ['x"7"', 'x"fffe"', 'X"2DF2"', 'x"00000000000000000a5"', "-1024", "1023"]
    extremes = [-2**23, 2**23 - 1, -2**23, -2**23, 2**23 - 1, -1, 0] * 8
    forms = {
        "highest_sum": StreamingForm("e", 8, 17 + is_symmetric, 8, coefficients=joined([-value for value in lowest], ";")),
        "lowest_sum": StreamingForm("lowest_sum", 8, 17 + is_symmetric, 8, coefficients=joined(lowest)),
        "wide_negative": StreamingForm("wide_negative", 18, 45, 24, coefficients=joined(mirrored(kind, negative))),
        "low_bits": StreamingForm("wrapping", 11, 8, 13, coefficients=joined(mirrored(kind, plain))),
        "digit_counts": StreamingForm("x1_y2", 13, 17, 11, truncation=5,
                                      coefficients=joined(mirrored(kind, digits), " ;\n")),
        "beyond_the_sum": StreamingForm("Shifts", 10, 14, 8, truncation=36,
                                        coefficients=joined(mirrored(kind, [0, 1, -1, 64, 0, -128, 3, 3]))),
        "largest": StreamingForm("largest_fir", 18, 50, 24, coefficients=joined(mirrored(kind, extremes))),
        "input_many": StreamingForm("loadable", 18, 35, 21, "Input", 8, "7, 8", 8),
    }
    if kind == "transpose_fir":
        forms["widest_input"] = StreamingForm("wide_input", 24, 36, 18, truncation=12,
                                              coefficients=joined([-2**17, 2**17 - 1, 77777] * 4))
    return forms


def mac_forms():
    """The fixed forms of the MAC filter: clocks per sample and units of many shapes, each with a limit of its own."""
    low_pass = "5, -15, -30, 110, 330, 330, 110, -30, -15, 5"
    negative = "-3, -99999, -5, 77777, -131071, -7"
    largest = joined([(-2**17, 2**17 - 1, -2**17, 99999, -1)[index % 5] for index in range(160)])
    return {
        "smallest": MacForm("bits", 1, 1, 5, 2, "Enable", 1, "-1, -1, 0, -1", 1, "0101010101010101"),
        "reference": MacForm("reference_fir", 12, 10, 10, 3, "Enable", 10, low_pass, 9),
        "one_clock": MacForm("one_clock", 18, 16, 6, 6, "Enable", 18, negative, 20),
        "spare_units": MacForm("spare", 10, 16, 6, 20, "Disable", 8, "-61, -24, 120, 102, 56, -33", 2),
        "five_of_eight": MacForm("five_of_eight", 9, 16, 10, 8, "Enable", 9, low_pass, 6, "1111000011110000"),
        "one_unit": MacForm("one_unit", 8, 8, 4, 1, "Enable", 8, "127, -128, 127, -128", 7),
        "lowest_sum": MacForm("lowest_sum", 8, 16, 4, 2, "Disable", 8, "127, 127, 3", 1),
        "largest": MacForm("largest_fir", 18, 16, 160, 20, "Enable", 18, largest, 26, "0000000000000001"),
    }


def literal(choice, value, width):
    """A coefficient as a designer may write it."""
    normalized_width = -(-width // 4) * 4
    if choice.random() < 0.7:
        return str(value)
    return f'x"{format(value % 2**normalized_width, "x").zfill(normalized_width // 4 + choice.randint(0, 2))}"'


def random_literals(choice, count, width):
    limit = 2**(width - 1)
    return [literal(choice, choice.choice([-limit, limit - 1, 0, choice.randint(-limit, limit - 1)]), width)
            for _ in range(count)]


def random_streaming_form(kind, entity, choice):
    coefficient_width = choice.randint(8, 24)
    input_width = choice.randint(8, 24 if kind == "transpose_fir" and coefficient_width <= 18 else 18)
    output_width = choice.randint(8, 50)
    count = choice.randint(3, choice.choice([14, 14, 56]))
    count += count % 2 if kind == "transpose_symmetric_fir" else 0
    return StreamingForm(entity, input_width, output_width, coefficient_width,
                         choice.choice(["Constant", "Constant", "Input"]), count,
                         joined(mirrored(kind, random_literals(choice, count, coefficient_width))),
                         choice.randint(0, min(36, 50 - output_width)))


def random_mac_form(entity, choice):
    coefficient_width, output_width = choice.randint(1, 18), choice.randint(1, 16)
    tap_count = choice.randint(4, choice.choice([24, 24, 160]))
    given = choice.choice([tap_count, choice.randint(3, tap_count)])
    return MacForm(entity, choice.randint(1, 18), output_width, tap_count, choice.randint(1, 20),
                   choice.choice(["Enable", "Disable"]), coefficient_width,
                   joined(random_literals(choice, given, coefficient_width)),
                   choice.randint(0, choice.choice([50 - output_width, 18])), format(choice.getrandbits(16), "016b"))


def parameter_sets(kind, seed, is_long):
    """The fixed sets of a kind and, with 'is_long', random ones."""
    is_mac = kind == "mac_fir"
    sets = [ParameterSet(kind, name, form) for name, form in (mac_forms() if is_mac else streaming_forms(kind)).items()]
    random_form = random_mac_form if is_mac else functools.partial(random_streaming_form, kind)
    return sets + random_sets(kind, random_form, random.Random(f"{kind} {seed}"), 30 if is_long else 0)
