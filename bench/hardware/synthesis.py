"""Synthesises VHDL with GHDL and Yosys."""

import json
import re
import subprocess


class ToolFailed(Exception):
    """A tool ended with an error; the text holds what it printed last."""


def run(command, folder):
    """Runs a tool in a folder and returns what it wrote to standard output."""
    result = subprocess.run([str(word) for word in command], cwd=folder, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        raise ToolFailed(f"{command[0]} failed:\n{(result.stdout + result.stderr)[-3000:]}")
    return result.stdout


def to_verilog(files, entity, folder):
    """Writes netlist.v, what GHDL makes of the entity.

    GHDL writes products and sums of sign-extended operands without saying that they are signed. Marked, Yosys sees the true
    widths: one multiplier for a product, and sums that fit the multiplier's block. Operands and results have one width, so the
    values stay. Attributes of ports make GHDL fail and mean nothing here.
    """
    folder.mkdir(parents=True, exist_ok=True)
    copies = []
    for path in files:
        copies.append(path.name)
        (folder / path.name).write_text(re.sub(r"(?m)^ *attribute [^\n]*\n", "", path.read_text()))
    run(["ghdl", "-i", "--std=08", *copies], folder)
    run(["ghdl", "-m", "--std=08", entity], folder)
    netlist = run(["ghdl", "--synth", "--std=08", "--out=verilog", entity], folder)
    netlist = re.sub(r"= (\S+) \* (\S+); // smul", r"= $signed(\1) * $signed(\2);", netlist)
    (folder / "netlist.v").write_text(re.sub(r"= (\w+) \+ (\w+);", r"= $signed(\1) + $signed(\2);", netlist))


def yosys(passes, folder):
    """Runs Yosys passes in the folder."""
    run(["yosys", "-q", "-p", "; ".join(passes)], folder)


def cell_counts(entity, passes, folder):
    """Cells by type after the passes have made one module of netlist.v."""
    yosys(["read_verilog netlist.v", f"hierarchy -check -top {entity}", *passes, "flatten", "tee -q -o cells.json stat -json"],
          folder)
    return json.loads((folder / "cells.json").read_text())["design"]["num_cells_by_type"]


# Cells that take the place of several.
WEIGHTS = {"CCU2C": 2}


def total(cells, pattern):
    """How many cells have a type that the pattern describes as a whole."""
    return sum(WEIGHTS.get(kind, 1) * count for kind, count in cells.items() if re.fullmatch(pattern, kind))
