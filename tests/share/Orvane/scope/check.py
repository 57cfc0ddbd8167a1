#!/usr/bin/env python3
"""Generates parameter sets of both scopes, and checks every scope: it reads the text, runs the test bench delivered with it, also
on what synthesis makes of it, and looks at that. Altered scopes show that the benches can fail."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import delivered_bench
import hardware_check
from described import Described, bench_values, form_values
from hdl_rules import check_constants, check_design
from hdl_tools import check_one_memory, require, step
from parameter_sets import KINDS, parameter_sets

IP_NAMES = {"scope": "Scope", "startup_scope": "Startup Scope"}
LARGEST_SIMULATED = 24576
LARGEST_NETLIST = {False: 2048, True: 6144}  # by whether the run is a long one: GHDL is slow where it is no power of two

# One set for each block of the templates, whose scopes are altered: a text is replaced wherever it stands.
ALTERED_SETS = {"reference", "first_also", "windows_uneven"}
ALTERATIONS = {
    "capturing & live(0)": "capturing & '1'", "= TRIGGER_POSITION - 1": "= TRIGGER_POSITION", "not capturing": "'1'",
    "= LAST_POSITION - 1": "= LAST_POSITION - 2", "and first_seen": "and (first_seen or first_condition)", "<= forced or": "<=",
    "accepted &": "trigger &", "window mod 16": "window mod 8", "<= trig_now;": "<= trig_in;",
    "<= PRE_TRIGGER_SAMPLES;": "<= PRE_TRIGGER_SAMPLES - 1;", "missing /= 1": "missing /= 2", "+ number)": "+ number + 1)",
    "      else\n        rd_data": "      end if;\n      if true then\n        rd_data"}


def check_rules(design, described, bench):
    content = design.path.read_bytes()
    shown = [design.arguments[f"%%{key}%%"] for key in ("APPLICATION", "DATE", "INPUT_LINE_COUNT", "CAPTURE_DEPTH")]
    check_design(content, IP_NAMES[design.ip], design.entity, shown, ["package", "entity", "architecture"], described.inputs(),
                 described.outputs())
    check_constants(content.decode(), described.constants())
    told = [design.facts[label] for label in ("Sample width", "Samples", "Memory", "Trigger lines")]
    width, depth = described.sample_width, described.depth
    require(told == [width, depth, width * depth, described.line_count], f"told is {told}")
    values = bench_values(bench.read_text())
    require(values == form_values(design.origin.form), f"the bench has the trigger values {values}")
    return "text, header, ports, constants, facts and values"


def check(design):
    described = Described(design.ip, design.arguments)
    bench = delivered_bench.write(design)
    step("rules", check_rules, design, described, bench)
    step("synthesis", check_one_memory, design.ghdl("08"), design.entity, described.sample_width, described.depth)
    if described.depth > LARGEST_SIMULATED and not design.is_long:
        return
    for standard in ("93", "08"):
        step("bench", design.ghdl(standard).run_bench, bench, "--ieee-asserts=disable-at-0")
    if described.depth <= LARGEST_NETLIST[design.is_long] and (design.is_long or design.origin.name in ALTERED_SETS):
        # Numbers are vectors there, unknown until the capture.
        netlist = design.ghdl("08").netlist(design.entity, design.path.parent / "netlist")
        step("bench on the netlist", netlist.run_bench, bench, "--ieee-asserts=disable")
    if design.origin.name in ALTERED_SETS:
        step("altered", delivered_bench.check_altered, [design.path], bench, ALTERATIONS, design.path.parent)


if __name__ == "__main__":
    sys.exit(hardware_check.main(__doc__, KINDS, parameter_sets, check))
