#!/usr/bin/env python3
"""Checks the VHDL of one generated SER/DES interface against its argument dictionary.

check.py FILE ARGUMENTS.json [--seed N] [--long]

It reads the text, analyses it under three VHDL standards, reads the package's constants in a simulation, judges
simulations at several clock phases by a model of its own, and synthesises the interface.
"""

import argparse
import json
import pathlib
import random
import re
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "support"))

# pylint: disable=wrong-import-position
from bench import Shape, simulate
from hdl_rules import check_header, check_text, check_vhdl
from hdl_tools import CheckFailed, Ghdl, require, step
from model import judge
from stimulus import ALL_CLOCKS, HARDEST_CLOCKS, Program, Timeline
from structure import check_structure, without_attributes

STANDARDS = ("93c", "93", "08")

STRING_CONSTANTS = [
    "BANK_NUMBER", "SER_PADTYPE", "SER_DIFFERENTIAL", "SER_SLEW_RATE", "SER_OUTPUT_CAPACITY", "DES_PADTYPE",
    "DES_DIFFERENTIAL", "DES_TERMINATION", "DES_TERMINATION_REFERENCE", "DES_TURBO", "DES_INPUT_SIGNAL_SLOPE"]
TRAINING_CONSTANTS = ["SER_TRAINING_VALUE", "DES_TRAINING_VALUE"]
LOCATION_CONSTANTS = ["SER_LOCATIONS", "DES_LOCATIONS"]
DELAY_CONSTANTS = ["SER_OUTPUT_DELAY_LINE", "DES_INPUT_DELAY_LINE"]

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

# An instance of the package's types as a user declares it, and every constant on a line.
PROBE = """
library ieee;
use ieee.std_logic_1164.all;
use std.textio.all;
use work.{entity}_pkg.all;

entity {entity}_probe is
end entity {entity}_probe;

architecture simulation of {entity}_probe is
  constant locations : {prefix}_LOCATION_ARRAY({prefix}_SER_LOCATIONS'range) := {prefix}_SER_LOCATIONS;
  constant delays    : {prefix}_DELAY_ARRAY({prefix}_SER_OUTPUT_DELAY_LINE'range) := {prefix}_SER_OUTPUT_DELAY_LINE;
begin
  process
    file constants : text open write_mode is "constants.txt";
    variable row   : line;
  begin
{writes}
    wait;
  end process;
end architecture simulation;
"""


class Interface:
    """What an argument dictionary asks for."""

    def __init__(self, arguments):
        self.arguments = {key.strip("%"): value for key, value in arguments.items()}
        self.prefix = self.arguments["PREFIX"]
        self.size = int(self.arguments["DATA_SIZE"])
        self.counts = {"ser": int(self.arguments["SER_COUNT"]), "des": int(self.arguments["DES_COUNT"])}
        self.shape = Shape(self.arguments["ENTITY_NAME"], self.size, self.counts["ser"], self.counts["des"])

    def entries(self, key):
        """Entries of an array constant."""
        found = re.findall(r'\d+ => "([^"]*)"', self.arguments[key])
        empty = "XXX" if key in LOCATION_CONSTANTS else "00"
        return [entry or empty for entry in found] or [empty]

    def attribute_value(self, key):
        if key in LOCATION_CONSTANTS + DELAY_CONSTANTS:
            return ",".join(self.entries(key))
        return self.arguments[key].strip('"')

    def ports(self):
        """Names, directions and widths; the width of a single bit is None."""
        lines = self.counts
        ports = {("reset", "in", None), ("word_clk", "in", None), ("bit_clk", "in", None)}
        if lines["ser"]:
            ports |= {("ser_training", "in", None), ("ser_data", "in", lines["ser"] * self.size),
                      ("ser_out", "out", lines["ser"])}
        if lines["des"]:
            ports |= {("des_training", "in", None), ("des_bitslip", "in", lines["des"]), ("des_in", "in", lines["des"]),
                      ("des_data", "out", lines["des"] * self.size), ("des_aligned", "out", lines["des"]),
                      ("des_locked", "out", None)}
        return ports

    def constants(self):
        """Every constant of the package as the probe writes it."""
        clock = int(self.arguments["WORD_CLOCK"])
        rows = {"WORD_CLOCK": str(clock), "BIT_CLOCK": str(clock * self.size), "DATA_SIZE": str(self.size),
                "SER_COUNT": str(self.counts["ser"]), "DES_COUNT": str(self.counts["des"])}
        rows.update((key, self.arguments[key].strip('"')) for key in STRING_CONSTANTS + TRAINING_CONSTANTS)
        for key in LOCATION_CONSTANTS + DELAY_CONSTANTS:
            rows.update((f"{key} {index}", entry) for index, entry in enumerate(self.entries(key)))
        return {f"{self.prefix}_{name}": value for name, value in rows.items()}


def check_rules(interface, content):
    check_text("the interface", content)
    text = content.decode("ascii")
    require("%%" not in text, "a key of the argument dictionary is left over")
    require("LINK" not in text.replace(interface.prefix, ""), "the prefix of the template is left over")
    check_header("the interface", text, "SER/DES", interface.shape.entity)
    header = re.match(r"(--[^\n]*\n)+", text).group(0)
    shown = [interface.arguments[key].strip('"') for key in interface.arguments
             if key not in LOCATION_CONSTANTS + DELAY_CONSTANTS and not key.endswith("-1")]
    for value in shown:
        require(re.search(rf"  {re.escape(value)}\n", header), f"the header does not show {value}")
    check_vhdl("the interface", without_attributes(text), interface.shape.entity)
    code = re.sub(r"--[^\n]*", "", text).lower()
    entity = interface.shape.entity.lower()
    units = re.findall(r"(?m)^(package|entity|architecture)\s+(\w+)", code)
    require(units == [("package", f"{entity}_pkg"), ("entity", entity), ("architecture", "rtl")],
            f"the design units are {units}")
    check_ports(interface, code)
    check_attributes(interface, text)
    if not any(interface.counts.values()):
        require(re.search(r"architecture rtl of \w+ is\s+begin\s+end architecture rtl;\s*\Z", code),
                "the architecture without lines is not empty")


def check_ports(interface, code):
    ports = re.search(r"\bport\s*\((.*?)\)\s*;\s*(end|attribute)\b", code, re.S).group(1)
    found = {(name, direction, int(high) + 1 if high else None) for name, direction, high in
             re.findall(r"(\w+)\s*:\s*(\w+)\s+std_logic(?:_vector\((\d+) downto 0\))?", ports)}
    require(found == interface.ports(), f"the ports differ: {found ^ interface.ports()}")


def check_attributes(interface, text):
    """Each attribute is declared once and given once to each port that has it, in the entity, alone on its line."""
    entity = re.search(r"(?ms)^entity .*?^end entity", text).group(0)
    expected = {(name, port, interface.attribute_value(key)) for port, attributes in ATTRIBUTES.items()
                if interface.counts[port[:3]] for name, key in attributes.items()}
    specified = re.findall(r'(?m)^ *attribute (\w+) of (\w+) : signal is "([^"\n]*)";$', entity)
    declared = re.findall(r"(?m)^ *attribute (\w+) : string;$", entity)
    require(sorted(specified) == sorted(expected), f"the attributes differ: {set(specified) ^ expected}")
    require(sorted(declared) == sorted({name for name, _, _ in expected}), f"declared are the attributes {declared}")
    lines = [line for line in re.sub(r"--[^\n]*", "", text).splitlines() if re.search(r"(?i)\battribute\b", line)]
    require(len(lines) == len(specified) + len(declared), "an attribute does not stand alone on its line")


def check_constants(interface, ghdl):
    """Compares what a user of the package reads."""
    writes = []
    prefix = interface.prefix
    for name in ["WORD_CLOCK", "BIT_CLOCK", "DATA_SIZE", "SER_COUNT", "DES_COUNT"]:
        writes.append(f'write(row, string\'("{prefix}_{name}=") & integer\'image({prefix}_{name}));')
    for name in STRING_CONSTANTS:
        writes.append(f'write(row, string\'("{prefix}_{name}=") & {prefix}_{name});')
    for name in TRAINING_CONSTANTS:
        writes.append(f'write(row, string\'("{prefix}_{name}=") & to_string({prefix}_{name}));')
    for name in LOCATION_CONSTANTS + DELAY_CONSTANTS:
        writes.append(f"for i in {prefix}_{name}'range loop "
                      f'write(row, string\'("{prefix}_{name} ") & integer\'image(i) & "=" & {prefix}_{name}(i) & LF); '
                      "end loop;")
    lines = "\n".join(f"    {each}\n    writeline(constants, row);" for each in writes)
    probe = f"{interface.shape.entity}_probe"
    (ghdl.directory / "probe.vhd").write_text(
        PROBE.format(entity=interface.shape.entity, prefix=prefix, writes=lines))
    ghdl.analyse(["probe.vhd"])
    ghdl("-e", probe)
    ghdl("-r", probe)
    rows = [row.split("=", 1) for row in (ghdl.directory / "constants.txt").read_text().splitlines() if row]
    expected = interface.constants()
    require(len(rows) == len(expected) and dict(rows) == expected,
            f"the constants differ: {set(map(tuple, rows)) ^ set(expected.items())}")
    return f"{len(rows)} values"


def check_simulations(interface, ghdl, clocks, seed):
    training = interface.arguments["DES_TRAINING_VALUE"].strip('"')
    program = Program(interface.shape, training, seed)
    for each in clocks:
        timeline = Timeline(program, each)
        try:
            remark = judge(timeline, simulate(ghdl, interface.shape, timeline.changes()))
        except CheckFailed as failure:
            raise CheckFailed(f"{each}: {failure}") from failure
    phases = " ".join(f"{each.offset}{each.first}" for each in clocks)
    return f"{remark} at the clock phases {phases}"


def netlist_library(directory, interface):
    """What GHDL's synthesis makes of the interface, analysed."""
    netlist = Ghdl(directory / "plain", "08")("--synth", "--out=vhdl", interface.shape.entity)
    ghdl = Ghdl(directory / "netlist", "08")
    netlist = netlist.replace(f"use work.{interface.shape.entity.lower()}_pkg.all;", "")
    (ghdl.directory / "netlist.vhd").write_text(netlist)
    ghdl.analyse(["netlist.vhd"])
    return ghdl


def check(path, arguments, seed, is_long):
    interface = Interface(arguments)
    choice = random.Random(f"{seed} {interface.shape}")
    with tempfile.TemporaryDirectory() as scratch:
        directory = pathlib.Path(scratch)
        with step("rules") as remarks:
            check_rules(interface, path.read_bytes())
            remarks.append("text, header, ports and attributes")
        with step("analysis") as remarks:
            for standard in STANDARDS:
                Ghdl(directory / standard, standard).analyse([path])
            remarks.append(", ".join(STANDARDS))
        with step("constants") as remarks:
            remarks.append(check_constants(interface, Ghdl(directory / "08", "08")))
        with step("simulation") as remarks:
            clocks = ALL_CLOCKS if is_long else [HARDEST_CLOCKS, choice.choice(ALL_CLOCKS)]
            remarks.append(check_simulations(interface, Ghdl(directory / "08", "08"), clocks, seed))
        with step("synthesis") as remarks:
            plain = Ghdl(directory / "plain", "08")
            (plain.directory / "plain.vhd").write_text(without_attributes(path.read_text()))
            plain.analyse(["plain.vhd"])
            remarks.append(check_structure(plain, interface.shape))
        # The VHDL netlists of GHDL are wrong at vectors of one bit.
        if is_long and any(interface.counts.values()) and 1 not in interface.counts.values():
            with step("netlist simulation") as remarks:
                remarks.append(check_simulations(interface, netlist_library(directory, interface),
                                                 choice.sample(ALL_CLOCKS, 1), seed))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("file", type=pathlib.Path)
    parser.add_argument("arguments", type=pathlib.Path, help="JSON file with the argument dictionary")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--long", action="store_true", help="all clock phases, and the synthesised netlist")
    options = parser.parse_args()
    try:
        check(options.file.resolve(), json.loads(options.arguments.read_text(encoding="utf-8")), options.seed,
              options.long)
    except CheckFailed as failure:
        print(f"FAILED {options.file} (seed {options.seed}): {failure}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
