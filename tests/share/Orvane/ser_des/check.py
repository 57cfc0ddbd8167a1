#!/usr/bin/env python3
"""Generates parameter sets of the IP "SER/DES", and checks every interface: it reads the text, runs the test bench delivered with
it, also on what synthesis makes of it, and looks at that. An altered interface shows that the bench can fail."""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import delivered_bench
import hardware_check
from hdl_rules import check_constants, check_design, check_text, without_attributes
from hdl_tools import Ghdl, require, step
from parameter_sets import parameter_sets
from structure import check_structure

NUMBERS = ["WORD_CLOCK", "BIT_CLOCK", "DATA_SIZE", "SER_COUNT", "DES_COUNT"]
ARRAYS = {"SER_LOCATIONS": "XXX", "DES_LOCATIONS": "XXX", "SER_OUTPUT_DELAY_LINE": "00", "DES_INPUT_DELAY_LINE": "00"}
NO_CONSTANTS = ["PREFIX", "ENTITY_NAME", "DATE", "APPLICATION", "SER_COUNT-1", "DES_COUNT-1"]

ATTRIBUTES = {
    "ser_out": {
        "pad_bank": "BANK_NUMBER", "pad_type": "SER_PADTYPE", "pad_differential": "SER_DIFFERENTIAL",
        "pad_slew_rate": "SER_SLEW_RATE", "pad_output_capacity": "SER_OUTPUT_CAPACITY",
        "pad_location": "SER_LOCATIONS", "pad_output_delay": "SER_OUTPUT_DELAY_LINE"},
    "des_in": {
        "pad_bank": "BANK_NUMBER", "pad_type": "DES_PADTYPE", "pad_differential": "DES_DIFFERENTIAL",
        "pad_termination": "DES_TERMINATION", "pad_termination_reference": "DES_TERMINATION_REFERENCE",
        "pad_turbo": "DES_TURBO", "pad_input_signal_slope": "DES_INPUT_SIGNAL_SLOPE",
        "pad_location": "DES_LOCATIONS", "pad_input_delay": "DES_INPUT_DELAY_LINE"},
}

ALTERED_SET = "most_both"
ALTERATIONS = {
    "<= not word_toggle": "<= word_toggle", "positive := 8": "positive := 7", "_SIZE - 5": "_SIZE - 4",
    "if ser_training = '1'": "if ser_training = 'X'", "& des_in(i)": "& des_in(0)", "mismatch and not slipped": "mismatch",
    "shift_left(stream, slip)": "rotate_right(stream, slip)", "else des_bitslip(i)": "else '0'",
    "          matches <= 0;": "          aligned(i) <= '0';", "aligned'range => '1'": "aligned'range => aligned(0)",
    "        slip    <= 0;\n": "", "<= out_shifter(Front_End_DATA_SIZE - 1)": "<= out_shifter(0)"}


class Interface:
    """What an argument dictionary asks for."""

    def __init__(self, arguments):
        self.arguments = {key.strip("%"): value.strip('"') for key, value in arguments.items()}
        self.arguments["BIT_CLOCK"] = str(int(self.arguments["WORD_CLOCK"]) * int(self.arguments["DATA_SIZE"]))
        self.prefix = self.arguments["PREFIX"]
        self.entity = self.arguments["ENTITY_NAME"]
        self.size = int(self.arguments["DATA_SIZE"])
        self.counts = {"ser": int(self.arguments["SER_COUNT"]), "des": int(self.arguments["DES_COUNT"])}

    def inputs(self):
        """The inputs that the interface has, with their widths, None for a single bit."""
        ports = {"reset": None, "word_clk": None, "bit_clk": None}
        if self.counts["ser"]:
            ports.update(ser_training=None, ser_data=self.counts["ser"] * self.size)
        if self.counts["des"]:
            ports.update(des_training=None, des_bitslip=self.counts["des"], des_in=self.counts["des"])
        return ports

    def outputs(self):
        ports = {"ser_out": self.counts["ser"]} if self.counts["ser"] else {}
        if self.counts["des"]:
            ports.update(des_data=self.counts["des"] * self.size, des_aligned=self.counts["des"], des_locked=None)
        return ports

    def entries(self, key):
        """Entries of an array constant."""
        found = re.findall(r'\d+ => "([^"]*)"', self.arguments[key])
        return [entry or ARRAYS[key] for entry in found] or [ARRAYS[key]]

    def constant(self, key):
        """Type and value of a constant of the package, without blanks."""
        value = self.arguments[key]
        if key in NUMBERS:
            return "integer", value
        if key in ARRAYS:
            entries = [f'{index}=>"{entry}"' for index, entry in enumerate(self.entries(key))]
            kind = "LOCATION" if "LOCATION" in key else "DELAY"
            return f"{self.prefix}_{kind}_ARRAY(0to{len(entries) - 1})", f"({','.join(entries)})"
        vector = f"std_logic_vector({self.prefix}_DATA_SIZE-1downto0)"
        return vector if key.endswith("TRAINING_VALUE") else "string", f'"{value}"'

    def attribute(self, key):
        return ",".join(self.entries(key)) if key in ARRAYS else self.arguments[key]


def check_rules(interface, content):
    check_text("the interface", content)
    text, given = content.decode("ascii"), interface.arguments
    require("LINK" not in text.replace(interface.prefix, ""), "the prefix of the template is left over")
    hidden = [*ARRAYS, "APPLICATION", "SER_COUNT-1", "DES_COUNT-1", "BIT_CLOCK"]
    check_design(without_attributes(text).encode(), "SER/DES", interface.entity,
                 [value for key, value in given.items() if key not in hidden], ["package", "entity", "architecture"],
                 interface.inputs(), interface.outputs())
    check_constants(text, {f"{interface.prefix}_{key}": interface.constant(key) for key in given if key not in NO_CONSTANTS})
    check_attributes(interface, text)
    if not any(interface.counts.values()):
        require(re.search(r"architecture rtl of \w+ is\s+begin\s+end architecture rtl;\s*\Z", text),
                "the architecture without lines is not empty")
    return "text, header, ports, constants and attributes"


def check_attributes(interface, text):
    """Each attribute is declared once and given once to each port that has it, in the entity, alone on its line."""
    entity = re.search(r"(?ms)^entity .*?^end entity", text).group(0)
    specified = re.findall(r'(?m)^ *attribute (\w+) of (\w+) : signal is "([^"\n]*)";$', entity)
    expected = [(name, port, interface.attribute(key)) for port, keys in ATTRIBUTES.items() if interface.counts[port[:3]]
                for name, key in keys.items()]
    require(sorted(specified) == sorted(expected), f"the attributes differ: {set(specified) ^ set(expected)}")
    declared = re.findall(r"(?m)^ *attribute (\w+) : string;$", entity)
    require(sorted(declared) == sorted({name for name, _, _ in specified}), f"declared are the attributes {declared}")
    lines = [line for line in re.sub(r"--[^\n]*", "", text).splitlines() if re.search(r"(?i)\battribute\b", line)]
    require(len(lines) == len(specified) + len(declared), "an attribute does not stand alone on its line")


def check(design):
    interface = Interface(design.arguments)
    plain = Ghdl(design.path.parent / "plain", "08")
    (plain.directory / "plain.vhd").write_text(without_attributes(design.path.read_text()))
    plain.analyse(["plain.vhd"])
    step("rules", check_rules, interface, design.path.read_bytes())
    told = [design.facts[label] for label in ("Serialisers", "Deserialisers", "Bit clock", "Word size")]
    require(told == [*interface.counts.values(), int(interface.arguments["BIT_CLOCK"]), interface.size], f"told is {told}")
    step("synthesis", check_structure, plain, interface)
    if not any(interface.counts.values()):  # nothing to compare
        return
    bench = delivered_bench.write(design)
    is_small = design.is_long or interface.size <= 5
    for standard in ("93", "08") if is_small else ("08",):
        step("bench", design.ghdl(standard).run_bench, bench)
    # The VHDL netlists of GHDL are wrong at vectors of one bit.
    if is_small and 1 not in interface.counts.values():
        netlist = plain.netlist(interface.entity, design.path.parent / "netlist")
        step("bench on the netlist", netlist.run_bench, bench, "--ieee-asserts=disable-at-0")
    if design.origin.name == ALTERED_SET:
        step("altered", delivered_bench.check_altered, [design.path], bench, ALTERATIONS, design.path.parent)


if __name__ == "__main__":
    sys.exit(hardware_check.main(__doc__, ["ser_des"], parameter_sets, check))
