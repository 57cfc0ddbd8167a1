"""The test bench that the program delivers with a design."""

import pathlib
import re

import program
from hdl_rules import check_text
from hdl_tools import CheckFailed, Ghdl, require

DIFFERENCE = r"\w: at \d+ ns \w[\w() ]* is [01UX]+, expected [01UX]+\n"


def write(design):
    """The bench of a generated design, in a file beside it."""
    told, = program.tell(program.BUILD / "prefix", "bench", [design.path.parent / "design.velmora"])
    bench = pathlib.Path(told["output"])
    check_text(bench.name, bench.read_bytes())
    return bench


def check_altered(sources, bench, alterations, work):
    """Every alteration that the sources have a place for stops the bench with a message that tells what differs."""
    texts, stopped = {path.name: path.read_text() for path in sources}, 0
    for old, new in alterations.items():
        altered = {name: text.replace(old, new) for name, text in texts.items()}
        if altered == texts:
            continue
        ghdl = Ghdl(work / "altered", "08")
        for name, text in altered.items():
            (ghdl.directory / name).write_text(text)
        ghdl.analyse(altered)
        try:
            ghdl.run_bench(bench, "--ieee-asserts=disable-at-0")
        except CheckFailed as fault:
            require(re.search(DIFFERENCE, str(fault)), f"{old} as {new}: {fault}")
            stopped += 1
        else:
            raise CheckFailed(f"the bench lets {new} pass in place of {old}")
    require(stopped, "nothing was altered")
    return f"{stopped} stopped"
