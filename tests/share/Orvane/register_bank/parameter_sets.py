"""Parameter sets for the checks of the register bank: tables of registers."""

import dataclasses
import random
import typing

from parameter_set import Form, ParameterSet, random_sets, setting

ACCESSES = ("RW", "RO", "W1C", "Pulse")


class Register(typing.NamedTuple):
    """A line of the table; the reset value is a text."""

    name: str
    access: str = "RW"
    width: int = 32
    reset: str = "0"
    description: str = ""


@dataclasses.dataclass(frozen=True)
class BankForm(Form):
    """The form: an entity and its registers."""

    entity: str = setting("Entity")
    registers: tuple = ()

    def fields(self):
        return {**super().fields(), "RegisterCount": len(self.registers), "Registers": self.registers and list(self.registers)}


REFERENCE = (Register("control", "RW", 8, "0x5A", "Mode"), Register("status", "RO", 16), Register("events", "W1C", 4),
             Register("command", "Pulse", 2))

FORMS = {
    "reference": BankForm("register_bank", REFERENCE),
    "one_bit": BankForm("one_bit", (Register("a", "RW", 1, "1"),)),
    "read_only": BankForm("read_only", (Register("a", "RO"), Register("b", "RO", 5))),
    "awkward": BankForm("register_bank_2", (
        Register("register_bank", "W1C", 32, "0xFFFF_FFFF", "ends */ and /* begins | a <cell> \\ *b* _c_"),
        Register("Register_Bank_out", "Pulse", 32), Register("a_reg", "RW", 3, "7", '"quoted", caf\u00e9 `x'),
        Register("a", "RW", 2, "0"), Register("a_write", "W1C", 2, "2"), Register("a_out", "RO", 2), Register("a_set", "W1C", 2))),
}


def random_form(entity, choice):
    registers = []
    for number in range(choice.choice([choice.randint(1, 8), choice.randint(9, 32)])):
        access, width = choice.choice(ACCESSES), choice.choice([choice.randint(2, 32), 32])
        value = choice.getrandbits(width) if access in ("RW", "W1C") else 0
        registers.append(Register(f"r{number}", access, width, choice.choice([str(value), hex(value)])))
    return BankForm(entity, tuple(registers))


def parameter_sets(ip, seed, is_long):
    return [ParameterSet(ip, name, form) for name, form in FORMS.items()] + random_sets(
        ip, random_form, random.Random(seed), 40 if is_long else 4)
