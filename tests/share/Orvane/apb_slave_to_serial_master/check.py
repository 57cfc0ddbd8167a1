#!/usr/bin/env python3
"""Checks the generated files of the IP "APB slave to serial master" against its rules.

The design is simulated on random pin stimuli and compared with models that know only the rules, the delivered
test bench is run, and the files are analysed, synthesised and read. The exit status is 0 when everything holds.
"""

import argparse
import pathlib
import random
import re
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import coincidences
import hdl_rules
import scenarios
import stimulus as pins
from clocked_bench import ClockedBench
from hdl_tools import CheckFailed, Ghdl, cell_counts, require, run, step, synthesise

IP_NAME = "APB slave to serial master"
STANDARDS = ("93", "08")
REGISTERS = [("ID", "00", "RO"), ("CTRL", "04", "RW"), ("DIV", "08", "RW"), ("CS", "0C", "RW"), ("TXDATA", "10", "WO"),
             ("RXDATA", "14", "RO"), ("STATUS", "18", "RO"), ("INT_ENABLE", "1C", "RW"), ("INT_STATUS", "20", "R/W1C"),
             ("FIFO_CTRL", "24", "WO")]


class Files:
    """The generated files below a directory."""

    def __init__(self, directory, entity):
        self.directory = directory
        self.entity = entity
        self.design = [directory / f"rtl/{entity}{part}.vhd" for part in ("_pkg", "_fifo", "_engine", "")]
        self.test_bench = directory / f"sim/tb_{entity}.vhd"
        self.header = directory / f"include/{entity}_regs.vh"
        self.text = directory / f"doc/{entity}.md"

    def all(self):
        return [*self.design, self.test_bench, self.header, self.text]


def check_files(files):
    for path in files.all():
        require(path.is_file(), f"{path} is missing")
        name, content = path.relative_to(files.directory), path.read_bytes()
        hdl_rules.check_text(name, content)
        hdl_rules.check_header(name, content.decode(), IP_NAME, files.entity)
        if path.suffix == ".vhd":
            hdl_rules.check_vhdl(name, content.decode(), files.entity, path == files.test_bench)
    check_register_lists(files)
    return f"{len(files.all())} files keep the common rules, register lists agree"


def check_register_lists(files):
    """Package, Verilog header and text give the offsets of the register map, and no others."""
    offsets = [(name, offset) for name, offset, _ in REGISTERS]
    rows = [(offset, name, access) for name, offset, access in REGISTERS]
    macro = rf"`define {files.entity.upper()}_REG_(\w+)\s+8'h(\w+)"
    for path, pattern, expected in ((files.design[0], r"constant REG_(\w+)\s*: integer := 16#(\w+)#", offsets),
                                    (files.header, macro, offsets),
                                    (files.text, r"(?m)^\| ([0-9A-F]{2}) \| (\w+) \| ([\w/]+) \|", rows)):
        found = re.findall(pattern, path.read_text())
        require(found == expected, f"{path.name}: registers {found}")


def check_test_bench(files, work, standard, shuffled):
    top = f"tb_{files.entity}"
    Ghdl(work / f"ordered{standard}", standard).analyse([*files.design, files.test_bench])
    ghdl = Ghdl(work / f"shuffled{standard}", standard)
    ghdl.make(shuffled, top)
    output = ghdl.simulate(top, "20ms")
    require(f"{top}: PASSED" in output, f"{top} does not report that it passed:\n{output[-2000:]}")
    return "passed, ends by itself"


def check_behaviour(files, work, seed, is_long):
    stimulus = pins.Stimulus(seed)
    verdict = scenarios.Verdict()
    scenarios.add_all(stimulus, verdict, is_long)
    scans = [coincidences.Coincidences(stimulus, flags, bits, div)
             for flags, bits, div in ((0, 4, 0), (pins.CPHA | pins.CPOL, 3, 1))]
    ghdl = Ghdl(work / "simulation", "08")
    ghdl.analyse(files.design)
    bench = ClockedBench(files.entity, pins.INPUTS, pins.OUTPUTS, clock="pclk")
    responses = [outputs for _, outputs in bench.run(ghdl, [(1, cycle.line()) for cycle in stimulus.cycles])]
    starts = [begin for _, _, begin in stimulus.scenarios] + [len(stimulus.cycles)]
    for (name, checker, begin), end in zip(stimulus.scenarios, starts[1:]):
        try:
            checker(stimulus.cycles[begin:end], responses[begin:end])
        except CheckFailed as failure:
            raise CheckFailed(f"scenario '{name}' (cycle {begin} of the run): {failure}") from failure
    for scan in scans:
        scan.check()
    counts = verdict.counts
    require(counts["words"] > 1000 and counts["bursts"] > 200, f"too little was sent: {dict(counts)}")
    return f"{len(stimulus.cycles)} cycles, {counts['words']} words in {counts['bursts']} bursts, {counts['reads']} reads"


def check_synthesis(files, work):
    ghdl = Ghdl(work / "synthesis", "08")
    ghdl.analyse(files.design)
    notes, report = synthesise(ghdl, files.entity, [
        "proc", "opt", "memory -nomap", "check -assert", "select -assert-none t:$dlatch t:$adlatch t:$dlatchsr t:$sr",
        "select -assert-count 1 t:$mem_v2", "flatten", "opt", "techmap", "opt", "select -assert-none t:$_DLATCH* t:$_SR*",
        "abc -lut 4", "opt_clean", "stat"])
    require("found RAM" in notes, f"no memory is found in the FIFO:\n{notes}")
    tables, flip_flops, memories = cell_counts(report)
    require(memories == 2, f"the FIFOs are not two memories, but {memories}")
    return f"no latch, {tables} LUT4, {flip_flops} flip-flops and 2 memories"


def check_verilog_header(files, work):
    macros = [f"{files.entity.upper()}_REG_{name}" for name, _, _ in REGISTERS]
    cases = "\n".join(f"      `{macro}: index = 4'd{number};" for number, macro in enumerate(macros))
    include = f'`include "{files.header.name}"\n'
    source = work / "header.v"
    source.write_text(include * 2 + "module header(input wire [7:0] address, output reg [3:0] index);\n"
                      f"  always @*\n    case (address)\n{cases}\n      default: index = 4'd15;\n    endcase\n"
                      "endmodule\n")
    run(["iverilog", "-Wall", "-t", "null", "-I", files.header.parent, source], work)
    run(["verilator", "--lint-only", "-Wall", f"-I{files.header.parent}", source], work)
    return "accepted by Icarus Verilog and Verilator, included twice"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("directory", type=pathlib.Path, help="holds the generated files")
    parser.add_argument("entity", help="entity name that they were generated with")
    parser.add_argument("--seed", type=int, default=1, help="of the random stimuli")
    parser.add_argument("--long", action="store_true", help="more of everything")
    options = parser.parse_args()
    files = Files(options.directory.resolve(), options.entity)
    try:
        with tempfile.TemporaryDirectory() as folder:
            work = pathlib.Path(folder)
            step("files", check_files, files)
            shuffled = random.Random(options.seed).sample([*files.design, files.test_bench], 5)
            for standard in STANDARDS:
                step(f"delivered test bench, VHDL-{standard}", check_test_bench, files, work, standard, shuffled)
            step(f"behaviour, seed {options.seed}", check_behaviour, files, work, options.seed, options.long)
            step("synthesis", check_synthesis, files, work)
            step("Verilog header", check_verilog_header, files, work)
    except CheckFailed as failure:
        print(f"FAIL  {options.entity}: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
