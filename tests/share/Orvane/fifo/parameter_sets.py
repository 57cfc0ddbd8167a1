"""Parameter sets for the checks of the FIFO, told by the fields of its form."""

import dataclasses
import random

from parameter_set import Form, ParameterSet, random_sets, setting

MODES = ("Registered", "First word falls through")
REGISTERED, FALLS_THROUGH = MODES


@dataclasses.dataclass(frozen=True)
class FifoForm(Form):
    """Fields of the form; the defaults are the reset values."""

    entity: str = setting("Entity")
    width: int = setting("Width", 8)
    depth: int = setting("Depth", 16)
    mode: str = setting("ReadMode", REGISTERED)
    almost_full: int = setting("AlmostFull", 12)
    almost_empty: int = setting("AlmostEmpty", 4)


FORMS = {
    "reset_values": FifoForm("e"),
    "smallest": FifoForm("smallest", 1, 2, REGISTERED, 1, 0),
    "two_shown": FifoForm("Two_Shown", 3, 2, FALLS_THROUGH, 2, 1),
    "three": FifoForm("three", 9, 3, FALLS_THROUGH, 3, 0),
    "power": FifoForm("power", 36, 128, FALLS_THROUGH, 1, 127),
    "uneven": FifoForm("uneven", 5, 100, REGISTERED, 80, 20),
    "uneven_shown": FifoForm("uneven_shown", 18, 1023, FALLS_THROUGH, 1023, 1022),
}
LONG_FORMS = {
    "largest": FifoForm("largest", 512, 65536, REGISTERED, 65000, 500),
    "largest_shown": FifoForm("largest_shown", 512, 65535, FALLS_THROUGH, 65535, 0),
}


def random_form(entity, choice):
    depth = choice.choice([choice.randint(2, 9), choice.randint(10, 600)])
    return FifoForm(entity, choice.randint(2, 72), depth, choice.choice(MODES), choice.randint(1, depth),
                    choice.randint(0, depth - 1))


def parameter_sets(ip, seed, is_long):
    forms = {**FORMS, **LONG_FORMS} if is_long else FORMS
    return [ParameterSet(ip, name, form) for name, form in forms.items()] + random_sets(
        ip, random_form, random.Random(seed), 30 if is_long else 3)
