#!/usr/bin/env python3
"""Checks the VHDL of one generated FIR filter against its argument dictionary.

check.py KIND FILE ARGUMENTS.json [--seed N] [--long]

It reads the text, analyses it under three VHDL standards, compares a simulation bit for bit and clock for clock with
a model of its own, and counts what synthesis makes of it.
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
from bench import simulate
from hdl_rules import check_text, check_vhdl
from hdl_tools import CheckFailed, Ghdl, require, step
from model import Filter, Judge, Mismatch
from parameter_sets import KINDS
from stimulus import Stimulus
from structure import check_structure

STANDARDS = ("93c", "93", "08")

IP_NAMES = {
    "mac_fir": "Mac fir",
    "systolic_fir": "Systolic",
    "transpose_fir": "Transpose",
    "transpose_dual_fir": "Transpose dual",
    "transpose_symmetric_fir": "Transpose symmetric",
}


def expected_ports(described):
    """Names, directions and widths of the ports, in no order; the width of a single bit is None."""
    ports = {
        ("clk", "in", None), ("rst", "in", None), ("din_valid", "in", None), ("din", "in", described.input_width),
        ("dout_valid", "out", None), ("dout", "out", described.output_width),
    }
    if described.is_mac:
        ports |= {("din_ready", "out", None), ("clk_aux1", "out", None)}
    if described.is_dual:
        ports |= {("din_channel", "out", None), ("dout_channel", "out", None)}
    if described.coefficients is None:
        ports.add(("coefs", "in", described.port_coefficient_count * described.coefficient_width))
    return ports


def check_ports(described, code):
    ports = re.search(r"\bport\s*\((.*?)\)\s*;\s*end\b", code, re.S).group(1)
    found = set()
    for name, direction, high in re.findall(r"(\w+)\s*:\s*(\w+)\s+std_logic(?:_vector\((\d+) downto 0\))?", ports):
        found.add((name, direction, int(high) + 1 if high else None))
    require(found == expected_ports(described), f"the ports differ: {found ^ expected_ports(described)}")


def check_header(described, arguments, text):
    """The comment in front shows what the filter was made from, and one line for each coefficient given."""
    header = re.match(r"(--[^\n]*\n)+", text).group(0)
    shown = [IP_NAMES[described.kind], arguments["%%APPLICATION%%"], arguments["%%ENTITY_NAME%%"],
             arguments["%%DATE%%"], f"{described.latency} clocks", "1 sample per "]
    shown += [f"  {arguments[key]}" for key in arguments if key.endswith("WIDTH%%") or key == "%%N_TAPS%%"]
    shown += [arguments["%%CLK_AUX1_PATTERN%%"]] if described.is_mac else []
    for each in shown:
        require(each in header, f"the header does not show {each}")
    coefficients = described.coefficients or ()
    for literal, value in zip(described.literals, coefficients):
        require(f"{literal} = {value}\n" in header, f"the header does not show {literal} = {value}")
    tap_lines = re.findall(r"(?m)^-- Coefficient \d+ ", header)
    require(len(tap_lines) == len(coefficients), f"{len(tap_lines)} of {len(coefficients)} coefficients in the header")


def check_rules(described, arguments, content):
    check_text("the filter", content)
    text = content.decode("ascii")
    require("%%" not in text, "a key of the argument dictionary is left over")
    check_header(described, arguments, text)
    check_vhdl("the filter", text, described.entity)
    code = re.sub(r"--[^\n]*", "", text).lower()
    units = re.findall(r"(?m)^(entity|architecture)\s+(\w+)", code)
    require(units == [("entity", described.entity.lower()), ("architecture", "rtl")], f"the design units are {units}")
    check_ports(described, code)


def check_analysis(directory, path):
    for standard in STANDARDS:
        Ghdl(directory / standard, standard).analyse([path])
    return ", ".join(STANDARDS)


def check_simulation(ghdl, described, stimulus, *options):
    judge = Judge(described, stimulus.coefficient_sets)
    for pins in simulate(ghdl, described, stimulus, *options):
        judge.see(pins)
    require(not judge.due, f"{len(judge.due)} outputs are missing at the end")
    return (f"{judge.output_count} outputs, {judge.edge} edges, {judge.reset_count} of them reset, "
            f"standard {ghdl.standard}")


def check_netlist(directory, described, stimulus):
    """Simulates what GHDL's synthesis makes of the filter. Its wires are unknown until time has passed once."""
    netlist = Ghdl(directory / "93c", "93c")("--synth", "--out=vhdl", described.entity)
    ghdl = Ghdl(directory / "netlist", "08")
    (ghdl.directory / "netlist.vhd").write_text(netlist[netlist.index("library ieee;"):])
    ghdl.analyse(["netlist.vhd"])
    return check_simulation(ghdl, described, stimulus, "--ieee-asserts=disable-at-0")


def check(kind, path, arguments, seed, is_long):
    described = Filter.from_arguments(kind, arguments)
    with tempfile.TemporaryDirectory() as scratch:
        directory = pathlib.Path(scratch)
        with step("rules") as remarks:
            check_rules(described, arguments, path.read_bytes())
            remarks.append("text, header and ports")
        with step("analysis") as remarks:
            remarks.append(check_analysis(directory, path))
        standards = ("93c", "08") if is_long else (random.Random(seed).choice(["93c", "08"]),)
        stimulus = Stimulus(described, seed, is_long)
        for standard in standards:
            with step("simulation") as remarks:
                remarks.append(check_simulation(Ghdl(directory / standard, standard), described, stimulus))
        with step("synthesis") as remarks:
            remarks.append(str(check_structure(Ghdl(directory / "93c", "93c"), described)))
        if is_long or described.tap_count <= 10:
            with step("netlist simulation") as remarks:
                remarks.append(check_netlist(directory, described, stimulus))


def main():
    parser = argparse.ArgumentParser(description="Checks the VHDL of one generated FIR filter.")
    parser.add_argument("kind", choices=KINDS)
    parser.add_argument("file", type=pathlib.Path)
    parser.add_argument("arguments", type=pathlib.Path, help="JSON file with the argument dictionary")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--long", action="store_true", help="more samples, under two VHDL standards")
    options = parser.parse_args()
    try:
        check(options.kind, options.file.resolve(), json.loads(options.arguments.read_text(encoding="utf-8")),
              options.seed, options.long)
    except (CheckFailed, Mismatch) as fault:
        print(f"FAILED {options.kind} {options.file} (seed {options.seed}): {fault}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
