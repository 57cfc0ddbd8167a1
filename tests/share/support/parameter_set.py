"""Parameter sets, told by the fields of an IP's form."""

import dataclasses

def setting(key, default=dataclasses.MISSING):
    """A field of a form, with its key in the program's settings."""
    return dataclasses.field(default=default, metadata={"key": key})


class Form:
    """What the forms, dataclasses of settings and tables, have in common."""

    def fields(self):
        return {each.metadata["key"]: getattr(self, each.name) for each in dataclasses.fields(self) if each.metadata}


@dataclasses.dataclass(frozen=True)
class ParameterSet:
    """A named form of an IP."""

    ip: str
    name: str
    form: Form


def number(arguments, key):
    return int(arguments[f"%%{key}%%"])


def random_sets(ip, random_form, choice, count):
    return [ParameterSet(ip, f"random_{number}", random_form(f"random_{number}", choice)) for number in range(count)]
