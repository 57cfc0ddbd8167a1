#!/usr/bin/env python3
"""Makes the resource tables of the description pages: a row for each configuration beside this program that is of the page's IP.

Counts are made without a device library; for designs with multipliers, what a family with multiplier blocks makes of them stands
in place of look-up tables. The table is printed as HTML; --write puts it into the pages, between the comments that mark its
place. --check tells which pages hold another one; it measures the rows of the placed configurations only and believes the others.

    bench/hardware/resources.py --only scope --write
"""

import argparse
import collections
import difflib
import os
import pathlib
import re
import sys
import tempfile
import textwrap
from concurrent.futures import ThreadPoolExecutor

from generation import generate
from synthesis import cells_by_type, memories, to_verilog, total  # before hdl_tools, whose folder it adds
from hdl_tools import CheckFailed, run

HERE = pathlib.Path(__file__).resolve().parent
PLACED = HERE / "configurations"
CATALOGUE = HERE.parents[1] / "share/velmora/Orvane"
BEGIN, END = "<!-- begin resources -->\n", "<!-- end resources -->\n"

# Multipliers stay whole; so does a memory with one registered read port.
PASSES = ["proc", "flatten", "opt", "wreduce", "peepopt", "opt -full", "memory -nomap", "opt -full", "techmap t:* t:$mul %d",
          "opt -full"]
TABLE_PASSES = ["abc -lut 4", "abc -lut 6"]
BLOCK_PASSES = "synth_xilinx -family xc7 -noiopad"
# The parts of these passes; the mapping of memories takes longer than all the rest, also where there are none.
WITH_MEMORIES, WITHOUT_MEMORIES = ["prepare:check"], ["prepare:map_memory", "map_ffram:check"]

Row = collections.namedtuple("Row", "title flip_flops memories multipliers tables blocks")


def field(path, key):
    """What a configuration or the description of an IP gives for a key."""
    return re.search(rf"(?m)^{key}(?: *= *| )(.*)$", path.read_text()).group(1)


def pages():
    """(folder of the IP, its reference configurations), the placed ones first."""
    configurations = sorted(PLACED.glob("*.velmora")) + sorted(HERE.glob("page-configurations/*.velmora"))
    for folder in sorted(path.parent for path in CATALOGUE.glob("*/config")):
        name = field(folder / "config", "name")
        yield folder, [path for path in configurations if field(path, "name") == name]


def title_of(configuration):
    """The title of its row: the comment in its first line."""
    return configuration.read_text().splitlines()[0].lstrip("# ")


def measure(configuration, build, folder):
    """The row of one configuration."""
    entity, files = generate(build, configuration, folder / "generated")
    to_verilog(files, entity, folder)
    has_multipliers = ") * $signed(" in (folder / "netlist.v").read_text()
    common, *others = cells_by_type(entity, [*PASSES, "write_json common.json"], ["", *([] if has_multipliers else TABLE_PASSES)],
                                    folder)
    tables, blocks = [total(cells, r"\$lut") for cells in others], []
    words = memories(entity, folder / "common.json")
    if has_multipliers:
        parts = [f"{BLOCK_PASSES} -run {part}" for part in (WITH_MEMORIES if words else WITHOUT_MEMORIES)]
        family, = cells_by_type(entity, ["read_verilog -lib +/xilinx/cells_sim.v", *parts], ["flatten"], folder)
        blocks = [total(family, kind) for kind in ("DSP48E1", "LUT[1-6]", "FD[RSCP]E(_1)?")]
    return Row(title_of(configuration), total(common, r".*DFF.*"), words, total(common, r"\$mul"), tables, blocks)


def columns(rows):
    """(title, text of each row) of the columns that have something to show."""
    has_multipliers = any(row.multipliers for row in rows)
    if has_multipliers:
        yield "Multipliers", [row.multipliers for row in rows]
    else:
        yield "LUT4", [row.tables[0] for row in rows]
        yield "or LUT6", [row.tables[1] for row in rows]
    yield "Flip-flops", [row.flip_flops for row in rows]
    if any(row.memories for row in rows):
        yield "Memories", [row.memories or "none" for row in rows]
    if has_multipliers:
        for number, title in enumerate(("DSP blocks", "LUT beside", "Flip-flops beside")):
            yield title, [row.blocks[number] for row in rows]


def code(passes):
    return [f"<code>{each}</code>" for each in passes]


def versions():
    """GHDL's and Yosys's version."""
    texts = run(["ghdl", "--version"], HERE), run(["yosys", "-V"], HERE)
    return [re.search(r"\d+\.\d+", text).group(0) for text in texts]


def row_texts(rows):
    """The HTML of the rows by their titles, behind that of the titles of the columns."""
    shown = list(columns(rows))
    texts = {None: "\n".join(["<tr><th>Configuration</th>", *(f'<th class="number">{title}</th>' for title, _ in shown)])}
    for number, row in enumerate(rows):
        cells = [f'<td class="number">{column[number]}</td>' for _, column in shown]
        texts[row.title] = "\n".join([f"<tr><td>{row.title}</td>", *cells])
    return texts


def remark(rows):
    """How the rows were measured."""
    ghdl, yosys = versions()
    words = [f"Measured without a device library: GHDL {ghdl} (<code>ghdl --synth</code>), then Yosys {yosys} with",
             ", ".join(code(PASSES))]
    if any(row.multipliers for row in rows):
        words += ["(products and sums marked as signed). The columns on the right are those of", *code([BLOCK_PASSES]),
                  "as an example of a family with DSP blocks: the blocks, and what is left beside them."]
    else:
        words += ["and then", " or ".join(code(TABLE_PASSES)) + ".",
                  "A device's own tools use carry chains and wide multiplexers, so their counts differ."]
    if any(row.memories for row in rows):
        words += ["Memories are words x bits; the register of the read port counts with them."]
    return "<p>" + " ".join([*words, "Nothing was placed or timed.</p>"])


def html(rows, titles, believed):
    """The table of a page and how it was measured, in short lines; rows that were not measured come from 'believed'."""
    measured = row_texts(rows)
    texts = [measured.get(title, believed.get(title, "")) for title in (None, *titles)]
    wrapped = textwrap.wrap(remark(rows), 120, break_long_words=False, break_on_hyphens=False)
    return "\n</tr>\n".join(["<table>\n" + texts[0], *texts[1:], "</table>"]) + "\n" + "\n".join(wrapped) + "\n"


def rows_of(page):
    """The HTML of the rows that stand in a page, by their titles."""
    table = page.read_text().split(BEGIN)[1].split(END)[0]
    return {title: f"<tr><td>{title}</td>{cells}" for title, cells in re.findall(r"(?s)<tr><td>(.*?)</td>(.*?)\n</tr>", table)}


def replaced(page, table):
    """The page's text with this table."""
    before, rest = page.read_text().split(BEGIN)
    return before + BEGIN + table + END + rest.split(END)[1]


def made_table(page, configurations, measured, build):
    """The page's table, of which these configurations are measured, two at once."""
    with tempfile.TemporaryDirectory(prefix="velmora-resources-") as scratch, ThreadPoolExecutor(2) as pool:
        rows = list(pool.map(lambda path: measure(path, build, pathlib.Path(scratch) / path.stem), measured))
    return html(rows, [title_of(path) for path in configurations], rows_of(page))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--only", metavar="FOLDER", action="append", help="the IP in this folder of the catalogue")
    parser.add_argument("--build", type=pathlib.Path, default=HERE.parents[1] / "build/release", help="the build folder")
    action = parser.add_mutually_exclusive_group()
    action.add_argument("--write", action="store_true", help="put the tables into the pages")
    action.add_argument("--check", action="store_true", help="fail when a page holds another table")
    options = parser.parse_args()
    os.nice(10)
    is_good = True
    for folder, configurations in pages():
        if options.only and folder.name not in options.only:
            continue
        page = folder / "description.html"
        measured = [path for path in configurations if not options.check or path.parent == PLACED]
        table = made_table(page, configurations, measured, options.build)
        if options.write:
            page.write_text(replaced(page, table))
        elif options.check:
            expected = replaced(page, table)
            for line in difflib.unified_diff(page.read_text().split("\n"), expected.split("\n"), "page", "measured", lineterm=""):
                is_good = False
                print(f"{folder.name}: {line}")
        else:
            print(f"{folder.name}:\n{table}")
    if not is_good:
        sys.exit("resources: the pages above hold other tables; call bench/hardware/resources.py --write")


if __name__ == "__main__":
    try:
        main()
    except CheckFailed as failure:
        sys.exit(f"resources: {failure}")
