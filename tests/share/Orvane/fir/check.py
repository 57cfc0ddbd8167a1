#!/usr/bin/env python3
"""Generates parameter sets of the FIR filters, and checks every filter: it reads the text, runs the test bench delivered with it,
also on what synthesis makes of it, and counts what that is made of. Altered filters show that the benches can fail."""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import delivered_bench
import hardware_check
from described import Filter
from generator import CATALOGUE
from hdl_rules import check_design
from hdl_tools import Ghdl, require, step
from parameter_sets import KINDS, parameter_sets
from structure import check_structure

# A set for each template, which goes through everything.
THOROUGH_SETS = {"low_bits", "five_of_eight", "one_clock"}

# Sets whose facts about the sums are compared with what the sums are; those that are limited by the ends of their sums.
MEASURED_SETS = {"lowest_sum", "highest_sum", "low_bits", "input_many", "reference", "one_clock"}

# A text of the filter is replaced wherever it stands.
ALTERATIONS = {
    "rst = '1'": "rst = 'U'", "+ products(": "- products(", "dout_valid <= ": "dout_valid <= din_valid and ",
    "signed(din)": "not signed(din)", "COUNT - 2 loop": "COUNT - 3 loop",
    "pattern(15)": "pattern(14)", "xor din_valid": "xor '1'", "xor valid(2)": "xor valid(1)", "upper = -1": "upper < 0",
    "not clearing": "'1'"}


def check_rules(design, described):
    """The header shows what the filter was made from, and one line for each coefficient given; the program tells its facts."""
    shown = [design.arguments["%%APPLICATION%%"], design.arguments["%%DATE%%"], f"{described.latency} clocks", *described.widths]
    shown += [f"{literal} = {value}" for literal, value in zip(described.literals, described.coefficients)]
    content = design.path.read_bytes()
    ip_name = re.search(r"(?m)^name (.+)$", (CATALOGUE / design.ip / "config").read_text()).group(1)
    check_design(content, ip_name, design.entity, shown, ["entity", "architecture"], described.inputs, described.outputs)
    sum_width = int(re.search(rb"SUM_WIDTH +: positive := (\d+);", content).group(1))
    require(sum_width == described.sum_width(), f"sums have {sum_width} bits, not {described.sum_width()}")
    require(design.facts == described.facts(), f"the program tells {design.facts} instead of {described.facts()}")
    return "text, header, ports and facts"


def check_sums(design, described, bench):
    """The sums of the bench's model, which meets the lowest and the highest, need the bits that the program tells, and wrap only
    where it says that they can."""
    line = "    sum := shift_right(sum, TRUNCATED_BITS);"
    before, after = bench.read_text().split(line)
    upper, lower = "shift_right(sum, 24)", "resize(unsigned(resize(sum, 64)), 24)"
    told = f"""    report "sum " & integer'image(to_integer({upper})) & " " & integer'image(to_integer({lower}));\n"""
    ghdl = Ghdl(design.path.parent / "sums", "08")
    (ghdl.directory / bench.name).write_text(before + told + line + after)
    ghdl.analyse([design.path, bench.name])
    output = ghdl("-r", f"{design.entity}_tb")
    sums = [int(upper) * 2**24 + int(lower) for upper, lower in re.findall(r"sum (-?\d+) (\d+)\n", output)]
    width = max(max(sums).bit_length(), (~min(sums)).bit_length()) + 1
    # The most for any coefficients is told as if the taps were a power of two.
    told_width = design.facts["Sum width"] - (described.has_port and described.tap_count & (described.tap_count - 1) != 0)
    can_wrap = "yes" if width > described.output_end and not described.is_limited else "no"
    require((told_width, design.facts["Can wrap"]) == (width, can_wrap), f"sums need {width} bits: {design.facts}")
    return f"{width} bits"


def check(design):
    described = Filter(design.ip, design.arguments)
    step("rules", check_rules, design, described)
    bench = delivered_bench.write(design)
    step("bench", design.ghdl("93c").run_bench, bench)
    if design.is_long or design.origin.name in MEASURED_SETS:
        step("sums", check_sums, design, described, bench)
    if design.is_long or design.origin.name in THOROUGH_SETS:
        step("bench", design.ghdl("08").run_bench, bench)
        netlist = design.ghdl("93c").netlist(design.entity, design.path.parent / "netlist")
        # The wires of the netlist are unknown until time has passed once.
        step("bench on the netlist", netlist.run_bench, bench, "--ieee-asserts=disable-at-0")
        step("altered", delivered_bench.check_altered, [design.path], bench, ALTERATIONS, design.path.parent)
    step("synthesis", check_structure, design.ghdl("93c"), design.entity, described)


if __name__ == "__main__":
    sys.exit(hardware_check.main(__doc__, KINDS, parameter_sets, check))
