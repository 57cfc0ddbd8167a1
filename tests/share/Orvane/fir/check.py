#!/usr/bin/env python3
"""Generates parameter sets of the FIR filters, and checks every filter: it reads the text, compares a simulation bit for bit
and clock for clock with a model of its own, and counts what synthesis makes of it."""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import hardware_check
from clocked_bench import ClockedBench
from generator import CATALOGUE
from hdl_rules import check_design
from hdl_tools import require, step
from model import Filter, Judge
from parameter_sets import KINDS, parameter_sets
from stimulus import Stimulus
from structure import check_structure


def check_rules(design, described):
    """The header shows what the filter was made from, and one line for each coefficient given."""
    clocks = described.clocks_per_sample
    throughput = f"{clocks} clocks" if clocks > 1 else "clock, 1 per 2 clocks and channel" if described.is_dual else "clock"
    shown = [design.arguments["%%APPLICATION%%"], design.arguments["%%DATE%%"], f"{described.latency} clocks",
             f"1 sample per {throughput}", described.input_width, described.output_width, described.coefficient_width,
             described.tap_count]
    shown += [described.pattern] if described.is_mac else []
    shown += [f"{literal} = {value}" for literal, value in zip(described.literals, described.coefficients or ())]
    content = design.path.read_bytes()
    ip_name = re.search(r"(?m)^name (.+)$", (CATALOGUE / design.ip / "config").read_text()).group(1)
    check_design(content, ip_name, described.entity, shown, ["entity", "architecture"],
                 {"clk": None, **described.inputs()}, described.outputs())
    sum_width = int(re.search(rb"SUM_WIDTH +: positive := (\d+);", content).group(1))
    require(sum_width == described.sum_width, f"sums have {sum_width} bits, not {described.sum_width}")
    tap_count = len(re.findall(rb"(?m)^-- Coefficient \d+ ", content))
    require(tap_count == len(described.coefficients or ()), f"{tap_count} coefficients in the header")
    return "text, header and ports"


def check_simulation(ghdl, described, stimulus, *options):
    bench = ClockedBench(described.entity, described.inputs(), described.outputs(),
                         ready="din_ready" if described.is_mac else None)
    judge = Judge(described)
    for number, outputs in bench.run(ghdl, [(line.patience, line.text()) for line in stimulus.lines], *options):
        judge.see(stimulus.lines[number], bench.fields(outputs))
    require(not judge.due, f"{len(judge.due)} outputs are missing at the end")
    return (f"{judge.output_count} outputs, {judge.edge} edges, {judge.reset_count} of them reset, "
            f"standard {ghdl.standard}")


def check_netlist(design, described, stimulus):
    """Simulates what GHDL's synthesis makes of the filter. Its wires are unknown until time has passed once."""
    ghdl = design.ghdl("93c").netlist(described.entity, design.path.parent / "netlist")
    return check_simulation(ghdl, described, stimulus, "--ieee-asserts=disable-at-0")


def check(design):
    described = Filter.from_arguments(design.ip, design.arguments)
    stimulus = Stimulus(described, design.seed, design.is_long)
    step("rules", check_rules, design, described)
    for standard in ("93c", "08") if design.is_long else ("93c",):
        step("simulation", check_simulation, design.ghdl(standard), described, stimulus)
    step("synthesis", check_structure, design.ghdl("93c"), described)
    if design.is_long or described.tap_count <= 10:
        step("netlist simulation", check_netlist, design, described, stimulus)


if __name__ == "__main__":
    sys.exit(hardware_check.main(__doc__, KINDS, parameter_sets, check))
