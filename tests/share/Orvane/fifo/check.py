#!/usr/bin/env python3
"""Generates parameter sets of the FIFO, and checks every one: it reads the text, runs the test bench delivered with it, also on
what synthesis makes of it, and looks at that. Altered FIFOs show that the bench can fail."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import delivered_bench
import hardware_check
from hdl_rules import check_design
from hdl_tools import check_one_memory, require, step
from parameter_sets import REGISTERED, parameter_sets

ALTERED_SETS = {"uneven", "three", "power"}
ALTERATIONS = {
    "words = DEPTH - 1": "words = DEPTH - 2", "words = ALMOST_FULL_FROM then": "words = ALMOST_FULL_FROM + 1 then",
    "words = ALMOST_EMPTY_UPTO then": "words = ALMOST_EMPTY_UPTO + 1 then", "read and not reset": "rd_en and not reset",
    "to_level(words = 1)": "'1'", "words > 2": "words > 1", "read_index = DEPTH - 2": "read_index = DEPTH - 3",
    "write_at_end <= '0';\n": "\n", "has_next and (is_empty or rd_en)": "has_next and is_empty",
    "read_index + 1) mod DEPTH": "read_index + 1) mod (DEPTH - 1)",
    "      if fetch = '1' then\n        rd_data": "      if true then\n        rd_data",
    "        words           <= 0;\n": ""}


def check_rules(design):
    form = design.origin.form
    outputs = {"full": None, "almost_full": None, "rd_data": form.width, "empty": None, "almost_empty": None,
               "level": form.depth.bit_length(), **({"rd_valid": None} if form.mode == REGISTERED else {})}
    check_design(design.path.read_bytes(), "Synchronous FIFO", form.entity,
                 [form.width, form.depth, form.mode, form.almost_full, form.almost_empty], ["entity", "architecture"],
                 {"clk": None, "reset": None, "wr_en": None, "wr_data": form.width, "rd_en": None}, outputs)
    told = list(design.facts.items())[:4]
    require(told == [("Depth", form.depth), ("Word width", form.width), ("Memory", form.depth * form.width),
                     ("Read mode", form.mode)], f"told is {told}")
    return "text, header, ports and facts"


def check(design):
    form, bench = design.origin.form, delivered_bench.write(design)
    step("rules", check_rules, design)
    step("synthesis", check_one_memory, design.ghdl("08"), design.entity, form.width, form.depth)
    for standard in ("93", "08"):
        step("bench", design.ghdl(standard).run_bench, bench)
    if form.width > 1 and form.depth <= 128:  # the VHDL netlists of GHDL are wrong at vectors of one bit
        netlist = design.ghdl("08").netlist(design.entity, design.path.parent / "netlist")
        step("bench on the netlist", netlist.run_bench, bench, "--ieee-asserts=disable")
    if design.origin.name in ALTERED_SETS:
        step("altered", delivered_bench.check_altered, [design.vhdl], bench, ALTERATIONS, design.path.parent)


if __name__ == "__main__":
    sys.exit(hardware_check.main(__doc__, ["fifo"], parameter_sets, check))
