"""What an argument dictionary asks of a scope."""

import re

from parameter_set import number

LETTERS = {"Ignore": "-", "Rising edge": "R", "Falling edge": "F", "Both edges": "B", "0": "0", "1": "1"}


class Described:
    """A scope of either kind, by its arguments."""

    def __init__(self, kind, arguments):
        self.arguments = arguments
        self.is_startup = kind == "startup_scope"
        self.depth = number(arguments, "CAPTURE_DEPTH")
        self.address_width = number(arguments, "CAPTURE_WIDTH")
        self.input_count = number(arguments, "INPUT_LINE_COUNT")
        self.line_count = number(arguments, "TRIGGER_LINE_COUNT")
        self.before = min(number(arguments, "PRE_TRIGGER_SAMPLES"), self.depth - 1)
        self.sample_width = self.input_count
        if not self.is_startup:
            self.sample_width += number(arguments, "STORE_TRIGGER") + number(arguments, "STORE_WINDOW")

    def inputs(self):
        """Width of each input, None for a single bit."""
        control = {} if self.is_startup else {"arm": None, "force_trigger": None}
        return {"clk": None, "reset": None, **control, "trig_in": self.line_count, "data_in": self.input_count,
                "rd_addr": self.address_width}

    def outputs(self):
        count = "first_valid" if self.is_startup else "window_count"
        return {"busy": None, "triggered": None, "done": None, count: self.address_width, "rd_data": self.sample_width}

    def constants(self):
        """Type and value of each constant of the package, without blanks."""
        same = ["CAPTURE_DEPTH", "CAPTURE_WIDTH", "INPUT_LINE_COUNT", "TRIGGER_LINE_COUNT"]
        integers = {"PRE_TRIGGER_SAMPLES": self.before}
        if self.is_startup:
            others = {"STARTUP_TRIG_VALUE": ("std_logic_vector(TRIGGER_LINE_COUNT-1downto0)",
                                             self.arguments["%%STARTUP_TRIG_VALUE%%"])}
        else:
            same += ["WINDOW_CAPTURE_LENGTH", "USER_DATA_DELAY", "STORE_TRIGGER", "STORE_WINDOW"]
            integers.update(WINDOW_COUNT=self.depth // number(self.arguments, "WINDOW_CAPTURE_LENGTH"),
                            SAMPLE_WIDTH=self.sample_width)
            others = {key: (type_name, self.arguments[f"%%{key}%%"]) for key, type_name in (
                ("MULTIPLE_TRIGGER_LEVEL", "boolean"), ("TRIGGER_MODE", "string"), ("CAPTURE_MODE", "string"))}
        integers.update((key, number(self.arguments, key)) for key in same)
        return {**{key: ("integer", str(value)) for key, value in integers.items()}, **others}


def bench_values(bench):
    """The values of trigger and first level that a bench tells, None where there is no first level."""
    found = dict(re.findall(r'constant (\w+)_VALUES +: string\([^)]*\) := "([^"]*)";', bench))
    has_first = re.search(r"HAS_FIRST_LEVEL +: boolean := true;", bench)
    return found["TRIGGER"], found["FIRST_LEVEL"] if has_first else None


def form_values(form):
    """The same of a form."""
    letters = ["".join(LETTERS[value] for value in column) for column in form.columns()]
    return letters[0], letters[1] if getattr(form, "multiple_level_trigger", "") == "Enable" else None
