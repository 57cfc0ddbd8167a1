"""Synthesises a filter and counts what its structure is made of."""

import collections
import json
import re

from hdl_tools import require, synthesise, synthesised_module
from model import signed_value

FORBIDDEN_CELLS = re.compile(r"\$(d?latch|adff|aldff|dffsr|sr|tribuf)")

# Adders of up to this many bits are the counters of the control.
COUNTER_WIDTH = 8


def marked_products(verilog):
    """GHDL writes a signed product as one of sign-extended operands; Yosys sees the true widths in signed ones."""
    return re.sub(r"= (\S+) \* (\S+); // smul", r"= $signed(\1) * $signed(\2); // smul", verilog)


def netlist(ghdl, described):
    """The cells of the synthesised filter, and GHDL's remarks."""
    remarks, _ = synthesise(ghdl, described.entity, [
        "proc", "flatten", "opt", "wreduce", "opt -full", "wreduce", "opt_clean", "memory_collect", "check -assert",
        "write_json netlist.json"], marked_products)
    return synthesised_module(ghdl, described.entity)["cells"].values(), remarks


def counts(cells):
    found = collections.Counter()
    for cell in cells:
        kind = cell["type"]
        require(not FORBIDDEN_CELLS.match(kind), f"the synthesised filter holds a cell {kind}")
        if kind == "$mul":
            found["multipliers"] += 1
        elif kind in ("$add", "$sub") and int(cell["parameters"]["Y_WIDTH"], 2) > COUNTER_WIDTH:
            found["adders"] += 1
    return found


def odd_part(value):
    """What a multiplication by the value shares with others, as shifts and signs cost no multiplier; 0 for 0."""
    value = abs(value)
    return value // (value & -value) if value else 0


def least_multipliers(described):
    """Multipliers that cannot vanish: one for each odd part but 0 and 1 of the coefficients.

    Where the output wraps, only the coefficients' low bits reach it.
    """
    if described.coefficients is None:
        return described.multiplier_count
    values = described.coefficients
    if not described.is_limited:
        values = [signed_value(value, described.truncation + described.output_width) for value in values]
    clocks = described.clocks_per_sample
    if clocks > 1:
        units = [values[first:first + clocks] for first in range(0, described.tap_count, clocks)]
        return sum(len(set(unit)) > 1 and any(odd_part(value) > 1 for value in unit) for unit in units)
    return len(set(map(odd_part, values)) - {0, 1})


def check_structure(ghdl, described, told_multipliers):
    """Compares the counts with what the kind promises and the program tells, and tells them."""
    cells, remarks = netlist(ghdl, described)
    found = counts(cells)
    units, is_serial = described.multiplier_count, described.clocks_per_sample > 1
    most_adders = 2 * units - 1 if is_serial else described.tap_count - 1
    for name, lowest, highest in (("multipliers", least_multipliers(described), units), ("adders", 0, most_adders)):
        require(lowest <= found[name] <= highest, f"{found[name]} {name}, not {lowest} to {highest}")
    # Those that vanish in synthesis are built in the text all the same.
    vanished = units - least_multipliers(described)
    require(found["multipliers"] <= told_multipliers <= found["multipliers"] + vanished,
            f"{told_multipliers} multipliers told, but {found['multipliers']} found")
    memory_count = remarks.count("found RAM")
    require(memory_count == (units if is_serial else 0), f"{memory_count} memories found for {units} units")
    return ", ".join(f"{count} {name}" for name, count in found.items())
