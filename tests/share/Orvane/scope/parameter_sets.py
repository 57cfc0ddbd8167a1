#!/usr/bin/env python3
"""Parameter sets for the checks of both scopes, told by the fields of their forms.

Run as a program it prints them as JSON: a list of {"kind", "name", "form", "arguments"}, where the arguments are
the dictionary that the form makes from its fields. Numbers are what the spin boxes hold, texts what the combo boxes
and the cells of the trigger table show.
"""

import argparse
import dataclasses
import json
import random

KINDS = ["scope", "startup_scope"]

SETTINGS_KEYS = {
    "entity": "Entity",
    "input_line_count": "InputCount",
    "capture_depth": "CaptureDepth",
    "capture_mode": "CaptureMode",
    "window_capture_length": "WindowCaptureLength",
    "pre_trigger_samples": "PreTriggerSamples",
    "user_data_delay": "UserDataDelay",
    "store_trigger_pulse": "StoreTrigger",
    "store_window_number": "StoreWindow",
    "trigger_line_count": "TriggerCount",
    "trigger_mode": "TriggerMode",
    "multiple_level_trigger": "MultipleLevelTrigger",
}

APPLICATION = "Velmora"
DATE = "09/04/2026 - 16:05"

# Item text of the field "Capture depth": samples, exponent.
DEPTHS = {"2K": (2048, 11), "4K": (4096, 12), "6K": (6144, 13), "12K": (12288, 14), "24K": (24576, 15),
          "48K": (49152, 16)}
CAPTURE_MODES = {"Pre-trigger": "pre_trigger_enable", "Multiple windows": "multiple_windows"}
TRIGGER_MODES = {"Basic": "basic", "Basic & Edges": "basic_and_edges"}
CODES = {
    "Basic": {"0": "00", "1": "01", "Ignore": "11"},
    "Basic & Edges": {"0": "000", "1": "001", "Ignore": "010", "Rising edge": "110", "Falling edge": "100",
                      "Both edges": "111"},
}


@dataclasses.dataclass(frozen=True)
class ScopeForm:
    """Fields of the scope's form; the trigger table's columns have one value for each visible row."""

    entity: str
    input_line_count: int = 2
    capture_depth: str = "2K"
    capture_mode: str = "Pre-trigger"
    window_capture_length: int = 64
    pre_trigger_samples: int = 1
    user_data_delay: int = 0
    store_trigger_pulse: str = "Disable"
    store_window_number: str = "Disable"
    trigger_line_count: int = 1
    trigger_mode: str = "Basic"
    multiple_level_trigger: str = "Disable"
    trigger_values: tuple = ("Ignore",)
    first_level_trigger_values: tuple = ("Ignore",)


@dataclasses.dataclass(frozen=True)
class StartupForm:
    """Fields of the startup scope's form; the trigger table's column has one value for each visible row."""

    entity: str
    input_line_count: int = 2
    capture_depth: str = "2K"
    pre_trigger_samples: int = 1
    trigger_line_count: int = 1
    trigger_values: tuple = ("0",)


@dataclasses.dataclass(frozen=True)
class ParameterSet:
    kind: str
    name: str
    form: object

    def arguments(self):
        return argument_dictionary(self.form)

    def fields(self):
        """The form's fields by their keys in the program's settings, then the trigger table's aliases and values."""
        fields = {SETTINGS_KEYS[field.name]: getattr(self.form, field.name)
                  for field in dataclasses.fields(self.form) if field.name in SETTINGS_KEYS}
        columns = [[f"line {line}" for line in range(self.form.trigger_line_count)], self.form.trigger_values]
        if isinstance(self.form, ScopeForm):
            columns.append(self.form.first_level_trigger_values)
        table = "TriggerTableView" if isinstance(self.form, ScopeForm) else "StartupTriggerTableView"
        fields[table] = [list(row) for row in zip(*columns)]
        return fields


def trigger_value_string(values, trigger_mode):
    return ", ".join(f'{line} => "{CODES[trigger_mode][value]}"' for line, value in enumerate(values))


def argument_dictionary(form):
    """The argument dictionary of a form, its keys in the form's order."""
    return startup_arguments(form) if isinstance(form, StartupForm) else scope_arguments(form)


def scope_arguments(form):
    basic = advanced = '(others => "00")'
    edge = advanced_edge = '(others => "000")'
    has_two_levels = form.multiple_level_trigger == "Enable"
    values = trigger_value_string(form.trigger_values, form.trigger_mode)
    first_values = trigger_value_string(form.first_level_trigger_values, form.trigger_mode) if has_two_levels else None
    if form.trigger_mode == "Basic":
        basic, advanced = values, first_values or advanced
    else:
        edge, advanced_edge = values, first_values or advanced_edge
    depth, exponent = DEPTHS[form.capture_depth]
    return {
        "%%STORE_WINDOW%%": "4" if form.store_window_number == "Enable" else "0",
        "%%STORE_TRIGGER%%": "1" if form.store_trigger_pulse == "Enable" else "0",
        "%%ENTITY_NAME%%": form.entity,
        "%%CAPTURE_DEPTH%%": str(depth),
        "%%CAPTURE_WIDTH%%": str(exponent),
        "%%TRIGGER_MODE%%": f'"{TRIGGER_MODES[form.trigger_mode]}"',
        "%%CAPTURE_MODE%%": f'"{CAPTURE_MODES[form.capture_mode]}"',
        "%%USER_DATA_DELAY%%": str(form.user_data_delay),
        "%%EDGE_TRIGGER_VALUES%%": edge,
        "%%INPUT_LINE_COUNT%%": str(form.input_line_count),
        "%%BASIC_TRIGGER_VALUES%%": basic,
        "%%MULTIPLE_TRIGGER_LEVEL%%": "true" if has_two_levels else "false",
        "%%TRIGGER_LINE_COUNT%%": str(form.trigger_line_count),
        "%%INPUT_LINE_COUNT-1%%": str(form.input_line_count - 1),
        "%%APPLICATION%%": APPLICATION,
        "%%ADVANCED_TRIGGER_VALUES%%": advanced,
        "%%TRIGGER_LINE_COUNT-1%%": str(form.trigger_line_count - 1),
        "%%PRE_TRIGGER_SAMPLES%%": str(form.pre_trigger_samples),
        "%%WINDOW_CAPTURE_LENGTH%%": str(form.window_capture_length),
        "%%ADVANCED_EDGE_TRIGGER_VALUES%%": advanced_edge,
        "%%DATE%%": DATE,
    }


def startup_arguments(form):
    depth, exponent = DEPTHS[form.capture_depth]
    return {
        "%%ENTITY_NAME%%": form.entity,
        "%%CAPTURE_DEPTH%%": str(depth),
        "%%CAPTURE_WIDTH%%": str(exponent),
        "%%INPUT_LINE_COUNT%%": str(form.input_line_count),
        "%%TRIGGER_LINE_COUNT%%": str(form.trigger_line_count),
        "%%STARTUP_TRIG_VALUE%%": '"' + "".join(reversed(form.trigger_values)) + '"',
        "%%INPUT_LINE_COUNT-1%%": str(form.input_line_count - 1),
        "%%APPLICATION%%": APPLICATION,
        "%%TRIGGER_LINE_COUNT-1%%": str(form.trigger_line_count - 1),
        "%%PRE_TRIGGER_SAMPLES%%": str(form.pre_trigger_samples),
        "%%DATE%%": DATE,
    }


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
ALL_KINDS = ("0", "1", "Ignore", "Rising edge", "Falling edge", "Both edges")


def scope_sets():
    """The fixed sets of the scope: every field at its ends, every kind of trigger, every depth."""
    many = (ALL_KINDS * 6)[:32]
    forms = {
        "reset_values": ScopeForm("e"),
        "reference": scope_form("reference_scope", ["1", "Ignore", "0"], input_line_count=8, pre_trigger_samples=1024,
                                store_trigger_pulse="Enable"),
        "all_edges": scope_form("edges", ["Rising edge", "Falling edge", "Both edges", "0", "1", "Ignore"],
                                input_line_count=5, pre_trigger_samples=77, user_data_delay=1, **EDGES),
        "two_levels": scope_form("Two_Levels", ["Rising edge", "Ignore", "1"], ["Ignore", "Both edges", "0"],
                                 input_line_count=9, pre_trigger_samples=2000, user_data_delay=2, **EDGES,
                                 **BOTH_STORED),
        "pre_trigger_limit": scope_form("all_before", ["1", "0"], input_line_count=3, pre_trigger_samples=2048,
                                        store_trigger_pulse="Enable"),
        "one_before_limit": scope_form("nearly_all", ["1"], input_line_count=3, pre_trigger_samples=2047),
        "windows_contiguous": scope_form("stream", ["Ignore"], input_line_count=16, **WINDOWS, **BOTH_STORED),
        "windows_uneven": scope_form("uneven", ["Falling edge"], input_line_count=7, capture_depth="6K",
                                     window_capture_length=100, user_data_delay=1, **EDGES, **WINDOWS, **BOTH_STORED),
        "windows_two_levels": scope_form("staged", ["1", "Ignore"], ["Ignore", "1"], input_line_count=4,
                                         window_capture_length=300, store_window_number="Enable", **WINDOWS),
        "one_window": scope_form("single", ["Both edges", "Ignore"], input_line_count=2, window_capture_length=2048,
                                 pre_trigger_samples=2048, store_trigger_pulse="Enable", **EDGES, **WINDOWS),
        "odd_depth": scope_form("six_k", ["0", "1"], ["1", "0"], input_line_count=12, capture_depth="6K",
                                pre_trigger_samples=2048, user_data_delay=1),
        "depth_4k": scope_form("four_k", ["1"], input_line_count=3, capture_depth="4K", pre_trigger_samples=600),
        "depth_12k": scope_form("twelve_k", ["1", "1"], input_line_count=3, capture_depth="12K",
                                window_capture_length=2047, **WINDOWS),
        "depth_24k": scope_form("twenty_four_k", ["Rising edge"], input_line_count=6, capture_depth="24K",
                                pre_trigger_samples=2048, **EDGES),
        "depth_48k": scope_form("forty_eight_k", ["0"], input_line_count=4, capture_depth="48K",
                                store_window_number="Enable", **WINDOWS),
        "largest": scope_form("largest_scope", many, many[::-1], input_line_count=240, capture_depth="48K",
                              pre_trigger_samples=2048, user_data_delay=2, **EDGES, **BOTH_STORED),
        "largest_windows": scope_form("largest_windows", many[::-1], many, input_line_count=240, capture_depth="48K",
                                      window_capture_length=64, user_data_delay=2, **EDGES, **WINDOWS, **BOTH_STORED),
    }
    return [ParameterSet("scope", name, form) for name, form in forms.items()]


def startup_sets():
    """The fixed sets of the startup scope: every field at its ends, every depth."""
    forms = {
        "reset_values": StartupForm("e"),
        "reference": StartupForm("reference_startup", 8, "2K", 1000, 3, ("1", "0", "0")),
        "four_lines": StartupForm("Four_Lines", 5, "4K", 500, 4, ("1", "1", "0", "1")),
        "odd_depth": StartupForm("six_k", 7, "6K", 999, 2, ("0", "1")),
        "depth_12k": StartupForm("twelve_k", 3, "12K", 1000, 1, ("1",)),
        "depth_24k": StartupForm("twenty_four_k", 4, "24K", 2, 2, ("1", "1")),
        "largest": StartupForm("largest_startup", 240, "48K", 1000, 4, ("0", "1", "1", "0")),
    }
    return [ParameterSet("startup_scope", name, form) for name, form in forms.items()]


def random_scope_form(choice, number):
    mode = choice.choice(list(TRIGGER_MODES))
    line_count = choice.choice([1, 2, 3, choice.randint(1, 32)])
    # Few lines that are not ignored keep the triggers frequent.
    values = [["Ignore"] * line_count for _ in range(2)]
    for column in values:
        for line in choice.sample(range(line_count), min(line_count, choice.randint(1, 3))):
            column[line] = choice.choice(list(CODES[mode]))
    return ScopeForm(
        f"random_{number}", choice.choice([2, 3, choice.randint(2, 40)]), choice.choice(["2K", "2K", "4K", "6K"]),
        choice.choice(list(CAPTURE_MODES)), choice.choice([64, choice.randint(64, 2048), choice.randint(64, 200)]),
        choice.choice([1, 2048, choice.randint(1, 2048)]), choice.randint(0, 2), choice.choice(["Enable", "Disable"]),
        choice.choice(["Enable", "Disable"]), line_count, mode, choice.choice(["Enable", "Disable"]),
        tuple(values[0]), tuple(values[1]))


def random_startup_form(choice, number):
    line_count = choice.randint(1, 4)
    return StartupForm(f"random_{number}", choice.randint(2, 40), choice.choice(["2K", "4K", "6K"]),
                       choice.choice([1, 1000, choice.randint(1, 1000)]), line_count,
                       tuple(choice.choice("01") for _ in range(line_count)))


def parameter_sets(kind, seed, random_count):
    """All fixed sets of a kind and some random ones."""
    choice = random.Random(f"{kind} {seed}")
    fixed, random_form = ((scope_sets(), random_scope_form) if kind == "scope" else
                          (startup_sets(), random_startup_form))
    return fixed + [ParameterSet(kind, f"random_{number}", random_form(choice, number))
                    for number in range(random_count)]


def with_small_memory(arguments, choice):
    """The arguments with a memory so small that many captures can be simulated; no form gives them.

    The values reach the same rules as the form's: a depth that is a power of two or not, pre-trigger samples from 1
    to beyond the depth, and windows that fill the memory or leave a rest.
    """
    width = choice.choice([4, 5])
    depth = choice.choice([2 ** width, choice.randint(2 ** (width - 1) + 1, 2 ** width)])
    arguments = dict(arguments)
    arguments["%%CAPTURE_DEPTH%%"] = str(depth)
    arguments["%%CAPTURE_WIDTH%%"] = str(width)
    if "%%WINDOW_CAPTURE_LENGTH%%" in arguments:
        shortest = 2 if depth == 2 ** width else 1  # window_count has to hold the number of windows
        length = choice.choice([shortest, 2, depth, choice.randint(2, depth)])
        arguments["%%WINDOW_CAPTURE_LENGTH%%"] = str(length)
        arguments["%%PRE_TRIGGER_SAMPLES%%"] = str(choice.choice([1, depth - 1, depth, choice.randint(1, depth)]))
    else:
        arguments["%%PRE_TRIGGER_SAMPLES%%"] = str(choice.choice([1, depth - 2, choice.randint(1, depth - 2)]))
    return arguments


def miniatures(kind, seed, count):
    """(name, form, arguments) of scopes with a small memory: with random fields, and with every kind of trigger."""
    choice = random.Random(f"small {kind} {seed}")
    random_form = random_scope_form if kind == "scope" else random_startup_form
    forms = [random_form(choice, number) for number in range(count)]
    if kind == "scope":
        mode = {"capture_mode": choice.choice(list(CAPTURE_MODES))}
        forms += [scope_form("edges", ALL_KINDS, ALL_KINDS[::-1], **EDGES, **BOTH_STORED, **mode),
                  scope_form("levels", ["1", "0", "Ignore"], ["Ignore", "1", "0"], **BOTH_STORED, **mode)]
    return [(f"small_{number}", form, with_small_memory(argument_dictionary(form), choice))
            for number, form in enumerate(forms)]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--kind", choices=KINDS, action="append", help="only this kind")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--random", type=int, default=2, help="random sets of each kind")
    options = parser.parse_args()
    print(json.dumps([
        {"kind": each.kind, "name": each.name, "form": dataclasses.asdict(each.form), "arguments": each.arguments()}
        for kind in options.kind or KINDS for each in parameter_sets(kind, options.seed, options.random)], indent=1))


if __name__ == "__main__":
    main()
