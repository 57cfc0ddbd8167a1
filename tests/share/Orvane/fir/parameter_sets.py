"""Parameter sets for the checks of the five FIR filters."""

import dataclasses
import functools
import random

from parameter_set import Form, ParameterSet, random_sets, setting

KINDS = ["systolic_fir", "transpose_fir", "transpose_dual_fir", "transpose_symmetric_fir", "mac_fir"]

# Fixed sets that no run leaves out.
ALWAYS = ("smallest", "reference", "largest", "input_many", "wide_negative", "one_clock")


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


def streaming_forms(kind):
    """The fixed forms of a streaming kind: ends of all ranges, odd widths, unusual coefficients."""
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
    return forms


def mac_forms():
    """The fixed forms of the MAC filter: ends of all ranges, clocks per sample and units of many shapes."""
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
    return forms


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
    """All fixed sets of a kind and some random ones; without 'is_long' a choice of them."""
    choice = random.Random(f"{kind} {seed}")
    is_mac = kind == "mac_fir"
    sets = [ParameterSet(kind, name, form) for name, form in (mac_forms() if is_mac else streaming_forms(kind)).items()]
    if not is_long:
        others = [each for each in sets if each.name not in ALWAYS]
        sets = [each for each in sets if each.name in ALWAYS] + choice.sample(others, 5)
    random_form = random_mac_form if is_mac else functools.partial(random_streaming_form, kind)
    return sets + random_sets(kind, random_form, choice, 30 if is_long else 3)
