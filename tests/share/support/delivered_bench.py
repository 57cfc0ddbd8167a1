"""The test bench that the program delivers with a design."""

import pathlib
import re

import program
from hdl_rules import check_text
from hdl_tools import CheckFailed, Ghdl, require

DIFFERENCE = r"_tb: at \d+ ns \w[\w() ]* is [01UX]+, expected [01UX]+\n"


def write(design):
    """The bench of a generated design, in a file beside it."""
    told, = program.tell(program.BUILD / "prefix", "bench", [design.path.parent / "design.velmora"])
    bench = pathlib.Path(told["output"])
    check_text(bench.name, bench.read_bytes())
    return bench


def check_altered(design, bench, alterations):
    """Every alteration that the text has a place for stops the bench with a message that tells what differs."""
    text, stopped = design.vhdl.read_text(), 0
    for old, new in alterations.items():
        if old not in text:
            continue
        ghdl = Ghdl(design.path.parent / "altered", "08")
        (ghdl.directory / "altered.vhd").write_text(text.replace(old, new))
        ghdl.analyse(["altered.vhd"])
        try:
            ghdl.run_bench(bench, design.entity, "--ieee-asserts=disable-at-0")
        except CheckFailed as fault:
            require(re.search(DIFFERENCE, str(fault)), f"{old} as {new}: {fault}")
            stopped += 1
        else:
            raise CheckFailed(f"the bench lets {new} pass in place of {old}")
    require(stopped, "nothing was altered")
    return f"{stopped} stopped"
