"""Synthesises a filter and counts what its structure is made of."""

import collections
import re

from hdl_tools import require, synthesise, synthesised_module

FORBIDDEN_CELLS = re.compile(r"\$(d?latch|adff|aldff|dffsr|sr|tribuf)")

# Adders of up to this many bits are the counters of the control.
COUNTER_WIDTH = 8


def marked_products(verilog):
    """GHDL writes a signed product as one of sign-extended operands; Yosys sees the true widths in signed ones."""
    return re.sub(r"= (\S+) \* (\S+); // smul", r"= $signed(\1) * $signed(\2); // smul", verilog)


def check_structure(ghdl, entity, described):
    """Compares the counts with what the kind promises and tells them."""
    remarks, _ = synthesise(ghdl, entity, [
        "proc", "flatten", "opt", "wreduce", "opt -full", "wreduce", "opt_clean", "memory_collect", "check -assert",
        "write_json netlist.json"], marked_products)
    found = collections.Counter(memories=remarks.count("found RAM"))
    for cell in synthesised_module(ghdl, entity)["cells"].values():
        kind, width = cell["type"], int(cell["parameters"].get("Y_WIDTH", "0"), 2)
        require(not FORBIDDEN_CELLS.match(kind), f"the synthesised filter holds a cell {kind}")
        found["multipliers"] += kind == "$mul"
        found["adders"] += kind in ("$add", "$sub") and width > COUNTER_WIDTH
    # Products with the same or a simple coefficient may vanish, but turn into no adders.
    is_serial = described.clocks > 1
    most = {"multipliers": described.multipliers, "memories": described.multipliers if is_serial else 0,
            "adders": 2 * described.multipliers - 1 if is_serial else described.tap_count - 1}
    for name, count in found.items():
        require(count <= most[name], f"{count} {name}, not at most {most[name]}")
    require(found["memories"] == most["memories"], f"{found['memories']} memories, not {most['memories']}")
    return ", ".join(f"{count} {name}" for name, count in found.items())
