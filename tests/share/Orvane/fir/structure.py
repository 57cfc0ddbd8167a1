"""Synthesises a filter and counts what its structure is made of."""

import collections
import json
import re

from hdl_tools import require, synthesise, synthesised_module
from model import ceiling_log2, signed_value

REGISTER_CELLS = re.compile(r"\$s?dff")
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


def parameter(cell, name):
    return int(cell["parameters"][name], 2)


def counts(cells):
    found = collections.Counter()
    for cell in cells:
        kind = cell["type"]
        require(not FORBIDDEN_CELLS.match(kind), f"the synthesised filter holds a cell {kind}")
        if kind == "$mul":
            found["multipliers"] += 1
        elif kind in ("$add", "$sub") and parameter(cell, "Y_WIDTH") > COUNTER_WIDTH:
            found["adders"] += 1
        elif REGISTER_CELLS.match(kind):
            found["register_bits"] += parameter(cell, "WIDTH")
        elif kind == "$mem_v2" and parameter(cell, "WR_PORTS"):
            found["memory_bits"] += parameter(cell, "WIDTH") * parameter(cell, "SIZE")
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


def most_adders(described):
    if described.clocks_per_sample > 1:
        return 2 * described.multiplier_count - 1
    return described.tap_count - 1


def most_register_bits(described):
    """Registers of the structure with sums of full width; memories count as registers."""
    taps, width, clocks = described.tap_count, described.input_width, described.clocks_per_sample
    product, total = width + described.coefficient_width, described.sum_width
    coefficient_bits = 0
    if described.coefficients is None:
        coefficient_bits = 2 * described.port_coefficient_count * described.coefficient_width
    if clocks > 1:
        units = described.multiplier_count
        levels = ceiling_log2(units)
        tree = sum(-(-units // 2**level) for level in range(1, levels + 1))
        control = 16 + 3 * ceiling_log2(clocks) + 2 + 4 + levels + 6
        store = units * (clocks + 1) * width
        return store + 3 * units * product + (units + tree) * total + described.output_width + control
    if described.is_symmetric:
        half = taps // 2
        return coefficient_bits + taps * width + 4 + half * (width + 1) + half * (product + 1) + half * total
    if described.is_dual:
        return coefficient_bits + width + 3 + taps * product + (2 * taps - 1) * total + 5
    if described.kind == "systolic_fir":
        return coefficient_bits + (2 * taps - 1) * width + taps + 2 + taps * product + taps * total
    output_stage = described.output_width + 1 + 16 if described.is_mac else 0
    return coefficient_bits + width + 3 + taps * product + taps * total + output_stage


def check_structure(ghdl, described):
    """Compares the counts with what the kind promises and tells them."""
    cells, remarks = netlist(ghdl, described)
    found = counts(cells)
    least, most = least_multipliers(described), described.multiplier_count
    bits = found["register_bits"] + found["memory_bits"]
    for name, count, lowest, highest in (("multipliers", found["multipliers"], least, most),
                                         ("wide adders", found["adders"], 0, most_adders(described)),
                                         ("register bits", bits, 0, most_register_bits(described))):
        require(lowest <= count <= highest, f"{count} {name}, not {lowest} to {highest}")
    if described.clocks_per_sample > 1:
        memory_count = remarks.count("found RAM")
        require(memory_count == most, f"{memory_count} memories found for {most} units")
    return ", ".join(f"{count} {name}" for name, count in found.items())
