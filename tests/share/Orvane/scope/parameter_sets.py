"""Parameter sets for the checks of both scopes.

Numbers are what the spin boxes hold, texts what the combo boxes and the cells of the trigger table show.
"""

import dataclasses
import random

from parameter_set import Form, ParameterSet, random_sets, setting

KINDS = ["scope", "startup_scope"]

CAPTURE_MODES = ("Pre-trigger", "Multiple windows")
TRIGGERS = {
    "Basic": ("0", "1", "Ignore"),
    "Basic & Edges": ("0", "1", "Ignore", "Rising edge", "Falling edge", "Both edges"),
}


class CaptureForm(Form):
    """What both forms have in common: a trigger table after the fields, of aliases and values."""

    def fields(self):
        rows = [[f"line {line}", *values] for line, values in enumerate(zip(*self.columns()))]
        return {**super().fields(), self.table: rows}


@dataclasses.dataclass(frozen=True)
class ScopeForm(CaptureForm):
    """Fields of the scope's form; the trigger table's columns have one value for each visible row."""

    entity: str = setting("Entity")
    input_line_count: int = setting("InputCount", 2)
    capture_depth: str = setting("CaptureDepth", "2K")
    capture_mode: str = setting("CaptureMode", "Pre-trigger")
    window_capture_length: int = setting("WindowCaptureLength", 64)
    pre_trigger_samples: int = setting("PreTriggerSamples", 1)
    user_data_delay: int = setting("UserDataDelay", 0)
    store_trigger_pulse: str = setting("StoreTrigger", "Disable")
    store_window_number: str = setting("StoreWindow", "Disable")
    trigger_line_count: int = setting("TriggerCount", 1)
    trigger_mode: str = setting("TriggerMode", "Basic")
    multiple_level_trigger: str = setting("MultipleLevelTrigger", "Disable")
    trigger_values: tuple = ("Ignore",)
    first_level_trigger_values: tuple = ("Ignore",)

    table = "TriggerTableView"

    def columns(self):
        return self.trigger_values, self.first_level_trigger_values


@dataclasses.dataclass(frozen=True)
class StartupForm(CaptureForm):
    """Fields of the startup scope's form; the trigger table's column has one value for each visible row."""

    entity: str = setting("Entity")
    input_line_count: int = setting("InputCount", 2)
    capture_depth: str = setting("CaptureDepth", "2K")
    pre_trigger_samples: int = setting("PreTriggerSamples", 1)
    trigger_line_count: int = setting("TriggerCount", 1)
    trigger_values: tuple = ("0",)

    table = "StartupTriggerTableView"

    def columns(self):
        return (self.trigger_values,)


def scope_form(entity, triggers, first_level=None, **fields):
    """A form whose trigger table holds these values; values for a first level enable it."""
    if first_level is not None:
        fields.update(multiple_level_trigger="Enable", first_level_trigger_values=tuple(first_level))
    else:
        fields.update(first_level_trigger_values=("Ignore",) * len(triggers))
    return ScopeForm(entity, trigger_line_count=len(triggers), trigger_values=tuple(triggers), **fields)


BOTH_STORED = {"store_trigger_pulse": "Enable", "store_window_number": "Enable"}
EDGES = {"trigger_mode": "Basic & Edges"}
WINDOWS = {"capture_mode": "Multiple windows"}
ALL_KINDS = TRIGGERS["Basic & Edges"]


def scope_forms():
    """The fixed forms of the scope: every field at its ends, every depth that is no power of two."""
    many = (ALL_KINDS * 6)[:32]
    return {
        "reset_values": ScopeForm("e"),
        "reference": scope_form("reference_scope", ["1", "Ignore", "0"], input_line_count=8, pre_trigger_samples=1024,
                                store_trigger_pulse="Enable"),
        "two_levels": scope_form("Two_Levels", ["Rising edge", "Ignore", "1"], ["Ignore", "Both edges", "0"],
                                 input_line_count=9, pre_trigger_samples=2000, user_data_delay=2, **EDGES, **BOTH_STORED),
        "first_also": scope_form("first_also", ["1", "Ignore", "0"], ["1", "0", "Ignore"], input_line_count=5,
                                 pre_trigger_samples=7, store_trigger_pulse="Enable"),
        "pre_trigger_limit": scope_form("all_before", ["1", "0"], input_line_count=3, pre_trigger_samples=2048),
        "windows_contiguous": scope_form("stream", ["Ignore"], input_line_count=16, **WINDOWS, **BOTH_STORED),
        "windows_two_levels": scope_form("widest", many[::-1], many, input_line_count=240, window_capture_length=300,
                                         store_window_number="Enable", **EDGES, **WINDOWS),
        "windows_uneven": scope_form("uneven", ["Falling edge"], input_line_count=7, capture_depth="6K",
                                     window_capture_length=100, user_data_delay=1, **EDGES, **WINDOWS, **BOTH_STORED),
        "odd_depth": scope_form("six_k", ["0", "1"], ["1", "0"], input_line_count=12, capture_depth="6K",
                                pre_trigger_samples=2048, user_data_delay=1),
        "depth_12k": scope_form("twelve_k", ["1", "1"], input_line_count=3, capture_depth="12K",
                                window_capture_length=2047, **WINDOWS),
        "depth_24k": scope_form("twenty_four_k", ["Rising edge"], capture_depth="24K", **EDGES),
        "largest": scope_form("largest_scope", many, many[::-1], input_line_count=240, capture_depth="48K",
                              pre_trigger_samples=2048, user_data_delay=2, **EDGES, **BOTH_STORED),
    }


def startup_forms():
    """The fixed forms of the startup scope: every field at its ends."""
    return {
        "reset_values": StartupForm("e"),
        "reference": StartupForm("reference_startup", 8, "2K", 1000, 3, ("1", "0", "0")),
        "odd_depth": StartupForm("six_k", 7, "6K", 999, 2, ("0", "1")),
        "largest": StartupForm("largest_startup", 240, "48K", 1000, 4, ("0", "1", "1", "0")),
    }


def random_scope_form(entity, choice):
    mode = choice.choice(list(TRIGGERS))
    line_count = choice.choice([1, 2, 3, choice.randint(1, 32)])
    # Few lines that are not ignored keep the triggers frequent.
    values = [["Ignore"] * line_count for _ in range(2)]
    for column in values:
        for line in choice.sample(range(line_count), min(line_count, choice.randint(1, 3))):
            column[line] = choice.choice(TRIGGERS[mode])
    return ScopeForm(
        entity, choice.choice([2, 3, choice.randint(2, 40)]), choice.choice(["2K", "2K", "4K", "6K"]),
        choice.choice(CAPTURE_MODES), choice.choice([64, choice.randint(64, 2048), choice.randint(64, 200)]),
        choice.choice([1, 2048, choice.randint(1, 2048)]), choice.randint(0, 2), choice.choice(["Enable", "Disable"]),
        choice.choice(["Enable", "Disable"]), line_count, mode, choice.choice(["Enable", "Disable"]),
        tuple(values[0]), tuple(values[1]))


def random_startup_form(entity, choice):
    line_count = choice.randint(1, 4)
    return StartupForm(entity, choice.randint(2, 40), choice.choice(["2K", "4K", "6K"]),
                       choice.choice([1, 1000, choice.randint(1, 1000)]), line_count,
                       tuple(choice.choice("01") for _ in range(line_count)))


FORMS = {"scope": (scope_forms, random_scope_form), "startup_scope": (startup_forms, random_startup_form)}


def parameter_sets(kind, seed, is_long):
    """All fixed sets of a kind, and random ones in the long run."""
    fixed_forms, random_form = FORMS[kind]
    return ([ParameterSet(kind, name, form) for name, form in fixed_forms().items()]
            + random_sets(kind, random_form, random.Random(f"{kind} {seed}"), 24 if is_long else 0))
