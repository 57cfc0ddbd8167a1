#!/usr/bin/env python3
"""Parameter sets for the checks of the IP "SER/DES", told by the fields of its form.

Run as a program it prints them as JSON: a list of {"name", "form", "arguments"}, where the arguments are the
dictionary that the form makes from its fields.
"""

import argparse
import dataclasses
import json
import random

SETTINGS_KEYS = {
    "entity": "Entity",
    "prefix": "Prefix",
    "word_clock": "WordClock",
    "data_size": "DataSize",
    "ser_count": "SERCount",
    "des_count": "DESCount",
    "bank_number": "BankNumber",
    "ser_pad_type": "SER/PadType",
    "ser_differential": "SER/Differential",
    "ser_slew_rate": "SER/SlewRate",
    "ser_output_capacity": "SER/OutputCapacity",
    "ser_training": "SER/TrainingValue",
    "des_pad_type": "DES/PadType",
    "des_differential": "DES/Differential",
    "des_termination": "DES/Termination",
    "des_termination_reference": "DES/TerminationReference",
    "des_turbo": "DES/Turbo",
    "des_input_signal_slope": "DES/InputSignalSlope",
    "des_training": "DES/TrainingValue",
}

DATE = "09/04/2026 - 16:05"
LARGEST_COUNT = 30
DATA_SIZES = range(3, 11)
PADS = [f"{number:02}{side}" for number in range(1, 16) for side in "PN"]
BANKS = ["02", "03", "04", "05", "09", "10", "11", "12"]
PAD_TYPES = ["LVCMOS_2.5V", "SSTL_2.5V_II", "LVDS_2.5V", "BLVDS_2.5V", "MLVDS_2.5V", "RSDS_2.5V", "LVPECL_2.5V"]


@dataclasses.dataclass(frozen=True)
class Form:
    """Fields of the form in its order. A table gives one entry a line; missing entries are as after a reset."""

    entity: str
    prefix: str = "P"
    word_clock: int = 20
    data_size: int = 3
    ser_count: int = 1
    des_count: int = 1
    bank_number: str = "02"
    ser_pad_type: str = "LVDS_2.5V"
    ser_differential: str = "True"
    ser_slew_rate: str = "Fast"
    ser_output_capacity: int = 0
    ser_training: str = ""
    ser_locations: tuple = ()
    ser_output_delays: tuple = ()
    des_pad_type: str = "LVDS_2.5V"
    des_differential: str = "True"
    des_termination: int = 100
    des_termination_reference: str = "VT"
    des_turbo: str = "False"
    des_input_signal_slope: float = 0.5
    des_training: str = ""
    des_locations: tuple = ()


@dataclasses.dataclass(frozen=True)
class ParameterSet:
    name: str
    form: Form

    def arguments(self):
        return argument_dictionary(self.form)

    def fields(self):
        """The form's fields by their keys in the program's settings; tables by their names."""
        fields = {SETTINGS_KEYS[field]: getattr(self.form, field) for field in SETTINGS_KEYS}
        delays = visible_rows(self.form.ser_output_delays, self.form.ser_count, 0)
        fields["LocationTableView/SER"] = [
            [location, delay] for location, delay in
            zip(visible_rows(self.form.ser_locations, self.form.ser_count, ""), delays)]
        fields["LocationTableView/DES"] = [
            [location] for location in visible_rows(self.form.des_locations, self.form.des_count, "")]
        return fields


def visible_rows(entries, count, missing):
    return [*entries, *[missing] * count][:count]


def aggregate(texts, empty='(others => "XXX")'):
    """The VHDL aggregate that the form makes from the rows of a table."""
    return "(" + ", ".join(f'{index} => "{text}"' for index, text in enumerate(texts)) + ")" if texts else empty


def quoted(value):
    return f'"{value}"'


def argument_dictionary(form):
    """The argument dictionary of a form, its keys in the form's order; both sides get the DES training value."""
    delays = [f"{delay:02}" for delay in visible_rows(form.ser_output_delays, form.ser_count, 0)]
    return {
        "%%PREFIX%%": form.prefix,
        "%%ENTITY_NAME%%": form.entity,
        "%%WORD_CLOCK%%": str(form.word_clock),
        "%%DATA_SIZE%%": str(form.data_size),
        "%%SER_COUNT%%": str(form.ser_count),
        "%%SER_COUNT-1%%": str(form.ser_count - 1),
        "%%DES_COUNT%%": str(form.des_count),
        "%%DES_COUNT-1%%": str(form.des_count - 1),
        "%%BANK_NUMBER%%": quoted(form.bank_number),
        "%%SER_PADTYPE%%": quoted(form.ser_pad_type),
        "%%SER_DIFFERENTIAL%%": quoted(form.ser_differential),
        "%%SER_SLEW_RATE%%": quoted(form.ser_slew_rate),
        "%%SER_OUTPUT_CAPACITY%%": quoted(form.ser_output_capacity),
        "%%SER_OUTPUT_DELAY_LINE%%": aggregate(delays),
        "%%SER_TRAINING_VALUE%%": quoted(form.des_training),
        "%%SER_LOCATIONS%%": aggregate(visible_rows(form.ser_locations, form.ser_count, "")),
        "%%DES_PADTYPE%%": quoted(form.des_pad_type),
        "%%DES_DIFFERENTIAL%%": quoted(form.des_differential),
        "%%DES_TERMINATION%%": quoted(form.des_termination),
        "%%DES_TERMINATION_REFERENCE%%": quoted(form.des_termination_reference),
        "%%DES_TURBO%%": quoted(form.des_turbo),
        "%%DES_INPUT_SIGNAL_SLOPE%%": quoted(form.des_input_signal_slope),
        "%%DES_INPUT_DELAY_LINE%%": aggregate(["00"] * form.des_count, "()"),
        "%%DES_TRAINING_VALUE%%": quoted(form.des_training),
        "%%DES_LOCATIONS%%": aggregate(visible_rows(form.des_locations, form.des_count, "")),
        "%%DATE%%": DATE,
    }


def equals_own_rotation(training):
    return any(training == training[shift:] + training[:shift] for shift in range(1, len(training)))


def random_training(choice, size):
    """A training value that fixes the word boundary."""
    while True:
        training = format(choice.getrandbits(size), f"0{size}b")
        if not equals_own_rotation(training):
            return training


def filled_form(choice, entity, size, ser_count, des_count, **fields):
    """A form that its check accepts, with all pads set and every other field at random."""
    training = fields.pop("training", None) or random_training(choice, size)
    pads = choice.sample(PADS, ser_count + des_count)
    values = {
        "prefix": choice.choice(["P", "link", "Front_End", "x0"]),
        "word_clock": choice.randint(20, 200),
        "bank_number": choice.choice(BANKS),
        "ser_pad_type": choice.choice(PAD_TYPES),
        "ser_differential": choice.choice(["True", "False"]),
        "ser_slew_rate": choice.choice(["Slow", "Medium", "Fast"]),
        "ser_output_capacity": choice.randint(0, 100),
        "ser_training": random_training(choice, size),
        "ser_locations": tuple(pads[:ser_count]),
        "ser_output_delays": tuple(choice.randint(0, 63) for _ in range(ser_count)),
        "des_pad_type": choice.choice(PAD_TYPES),
        "des_differential": choice.choice(["True", "False"]),
        "des_termination": choice.randint(0, 100),
        "des_termination_reference": choice.choice(["VT", "Floating"]),
        "des_turbo": choice.choice(["True", "False"]),
        "des_input_signal_slope": choice.randint(5, 200) / 10,
        "des_training": training,
        "des_locations": tuple(pads[ser_count:]),
    }
    return Form(entity, data_size=size, ser_count=ser_count, des_count=des_count, **{**values, **fields})


def parameter_sets(seed, is_long):
    """Sets of all data sizes with a line for each bit offset, the ends of the counts, and some random ones."""
    choice = random.Random(f"sets {seed}")
    forms = {f"size_{size}": filled_form(choice, f"link_{size}", size, size, size) for size in DATA_SIZES}
    forms.update({
        "after_reset": Form("e", ser_training="110", des_training="100", ser_locations=("01P",)),
        "no_lines": filled_form(choice, "nothing", 6, 0, 0),
        "one_out": filled_form(choice, "one_out", 3, 1, 0, prefix="ser"),
        "one_in": filled_form(choice, "One_In", 10, 0, 1, prefix="ser_des"),
        "most_out": filled_form(choice, "most_out", 10, LARGEST_COUNT, 0, prefix="des"),
        "most_in": filled_form(choice, "most_in", 10, 0, LARGEST_COUNT, word_clock=200),
        "most_both": filled_form(choice, "most_both", 4, 15, 15, prefix="PAD"),
        "rotating": filled_form(choice, "ser_des_2", 6, 2, 6, training="101101", prefix="LINK"),
        "constant": filled_form(choice, "ser_des", 3, 0, 3, training="000", prefix="ser_des"),
    })
    for number in range(12 if is_long else 1):
        ser_count = choice.randint(0, LARGEST_COUNT)
        forms[f"random_{number}"] = filled_form(choice, f"random_{number}", choice.choice(DATA_SIZES), ser_count,
                                                choice.randint(0, LARGEST_COUNT - ser_count))
    return [ParameterSet(name, form) for name, form in forms.items()]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--long", action="store_true")
    options = parser.parse_args()
    print(json.dumps([{"name": each.name, "form": dataclasses.asdict(each.form), "arguments": each.arguments()}
                      for each in parameter_sets(options.seed, options.long)], indent=1))


if __name__ == "__main__":
    main()
