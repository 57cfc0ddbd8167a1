"""Parameter sets for the checks of the IP "SER/DES"."""

import dataclasses
import random

from parameter_set import Form, ParameterSet, setting

LARGEST_COUNT = 30
DATA_SIZES = range(3, 11)
PADS = [f"{number:02}{side}" for number in range(1, 16) for side in "PN"]


@dataclasses.dataclass(frozen=True)
class SerDesForm(Form):
    """Fields of the form in its order. A table gives one entry a line; missing entries are as after a reset."""

    entity: str = setting("Entity")
    prefix: str = setting("Prefix", "P")
    word_clock: int = setting("WordClock", 20)
    data_size: int = setting("DataSize", 3)
    ser_count: int = setting("SERCount", 1)
    des_count: int = setting("DESCount", 1)
    bank_number: str = setting("BankNumber", "02")
    ser_padtype: str = setting("SER/PadType", "LVDS_2.5V")
    ser_differential: str = setting("SER/Differential", "True")
    ser_slew_rate: str = setting("SER/SlewRate", "Fast")
    ser_output_capacity: int = setting("SER/OutputCapacity", 0)
    ser_training_value: str = setting("SER/TrainingValue", "")
    ser_locations: tuple = ()
    ser_output_delays: tuple = ()
    des_padtype: str = setting("DES/PadType", "LVDS_2.5V")
    des_differential: str = setting("DES/Differential", "True")
    des_termination: int = setting("DES/Termination", 100)
    des_termination_reference: str = setting("DES/TerminationReference", "VT")
    des_turbo: str = setting("DES/Turbo", "False")
    des_input_signal_slope: float = setting("DES/InputSignalSlope", 0.5)
    des_training_value: str = setting("DES/TrainingValue", "")
    des_locations: tuple = ()

    def fields(self):
        ser_rows = zip(visible_rows(self.ser_locations, self.ser_count, ""),
                       visible_rows(self.ser_output_delays, self.ser_count, 0))
        return {**super().fields(), "LocationTableView/SER": [list(row) for row in ser_rows],
                "LocationTableView/DES": [[each] for each in visible_rows(self.des_locations, self.des_count, "")]}


def visible_rows(entries, count, missing):
    return [*entries, *[missing] * count][:count]


def equals_own_rotation(training):
    return any(training == training[shift:] + training[:shift] for shift in range(1, len(training)))


def random_training(choice, size):
    """A training value that fixes the word boundary."""
    while True:
        training = format(choice.getrandbits(size), f"0{size}b")
        if not equals_own_rotation(training):
            return training


def filled_form(choice, entity, size, ser_count, des_count, **fields):
    """A form that its check accepts, with all pads set."""
    pads = choice.sample(PADS, ser_count + des_count)
    values = {
        "ser_training_value": random_training(choice, size), "des_training_value": random_training(choice, size),
        "ser_locations": tuple(pads[:ser_count]), "des_locations": tuple(pads[ser_count:]),
        "ser_output_delays": tuple(choice.randint(0, 63) for _ in range(ser_count)),
    }
    return SerDesForm(entity, data_size=size, ser_count=ser_count, des_count=des_count, **{**values, **fields})


# No two fields have the same text.
OTHER_STRINGS = {
    "prefix": "Front_End", "word_clock": 200, "bank_number": "12", "ser_padtype": "LVCMOS_2.5V", "ser_differential": "False",
    "ser_slew_rate": "Medium", "ser_output_capacity": 99, "des_padtype": "SSTL_2.5V_II", "des_termination": 47,
    "des_termination_reference": "Floating", "des_turbo": "True", "des_input_signal_slope": 12.5}


def parameter_sets(ip, seed, is_long):
    """Sizes odd and even with a line for each bit offset, the ends of the counts, and random ones in the long run."""
    choice = random.Random(f"sets {seed}")
    forms = {f"size_{size}": filled_form(choice, f"link_{size}", size, size, size) for size in (3, 4, 7, 10)}
    forms.update({
        "after_reset": SerDesForm("e", ser_training_value="110", des_training_value="100", ser_locations=("01P",)),
        "no_lines": filled_form(choice, "nothing", 6, 0, 0),
        "most_out": filled_form(choice, "most_out", 10, LARGEST_COUNT, 0, prefix="ser"),
        "one_in": filled_form(choice, "One_In", 10, 0, 1, prefix="ser_des"),
        "most_both": filled_form(choice, "most_both", 4, 15, 15, **OTHER_STRINGS),
        "rotating": filled_form(choice, "ser_des", 6, 2, 6, des_training_value="101101", prefix="LINK"),
    })
    for number in range(12 if is_long else 0):
        ser_count = choice.randint(0, LARGEST_COUNT)
        forms[f"random_{number}"] = filled_form(choice, f"random_{number}", choice.choice(DATA_SIZES), ser_count,
                                                choice.randint(0, LARGEST_COUNT - ser_count))
    return [ParameterSet(ip, name, form) for name, form in forms.items()]
