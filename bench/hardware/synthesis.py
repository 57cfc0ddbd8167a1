"""Synthesises VHDL with GHDL and Yosys, by what the tests run these tools with."""

import json
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests/share/support"))

# pylint: disable=wrong-import-position
from hdl_tools import Ghdl, run_yosys


def to_verilog(files, entity, folder):
    """Writes netlist.v, what GHDL makes of the entity.

    GHDL writes products and sums of sign-extended operands without saying that they are signed. Marked, Yosys sees the true
    widths: one multiplier for a product, and sums that fit the multiplier's block. Operands and results have one width, so the
    values stay. Attributes of ports make GHDL fail and mean nothing here.
    """
    ghdl = Ghdl(folder, "08")
    for path in files:
        (folder / path.name).write_text(re.sub(r"(?m)^ *attribute [^\n]*\n", "", path.read_text()))
    ghdl.make([path.name for path in files], entity)
    netlist, _ = ghdl.to_verilog(entity)
    netlist = re.sub(r"= (\S+) \* (\S+); // smul", r"= $signed(\1) * $signed(\2);", netlist)
    (folder / "netlist.v").write_text(re.sub(r"= (\w+) \+ (\w+);", r"= $signed(\1) + $signed(\2);", netlist))


def cells_by_type(entity, passes, endings, folder):
    """The cells by type after the passes have made one module of netlist.v, once with each ending of the passes."""
    commands = ["read_verilog netlist.v", f"hierarchy -check -top {entity}", *passes, "design -save common"]
    reports = [f"cells{number}.json" for number, _ in enumerate(endings)]
    for ending, report in zip(endings, reports):
        commands += ["design -load common", ending, "opt_clean", f"tee -q -o {report} stat -json"]
    run_yosys(commands, folder)
    return [json.loads((folder / report).read_text())["design"]["num_cells_by_type"] for report in reports]


def memories(entity, netlist):
    """The memories of the entity in a netlist that Yosys wrote as JSON, as text "words x bits"."""
    texts = []
    for cell in json.loads(netlist.read_text())["modules"][entity]["cells"].values():
        if cell["type"] == "$mem_v2":
            size, width, write_ports = (int(cell["parameters"][name], 2) for name in ("SIZE", "WIDTH", "WR_PORTS"))
            texts.append(f"{size} x {width}" + ("" if write_ports else " constant"))
    return ", ".join(texts)


# Cells that take the place of several.
WEIGHTS = {"CCU2C": 2}


def total(cells, pattern):
    """How many cells have a type that the pattern describes as a whole."""
    return sum(WEIGHTS.get(kind, 1) * count for kind, count in cells.items() if re.fullmatch(pattern, kind))
