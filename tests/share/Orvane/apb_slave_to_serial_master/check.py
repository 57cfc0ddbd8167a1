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
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parents[1] / "support")]

import coincidences  # noqa: E402
import hdl_rules  # noqa: E402
import scenarios  # noqa: E402
import stimulus as pins  # noqa: E402
from hdl_tools import CheckFailed, Ghdl, require, run, step, yosys  # noqa: E402

IP_NAME = "APB slave to serial master"
STANDARDS = ("93", "08")
REGISTERS = {"ID": 0x00, "CTRL": 0x04, "DIV": 0x08, "CS": 0x0C, "TXDATA": 0x10, "RXDATA": 0x14, "STATUS": 0x18,
             "INT_ENABLE": 0x1C, "INT_STATUS": 0x20, "FIFO_CTRL": 0x24}
ACCESS = {"ID": "RO", "CTRL": "RW", "DIV": "RW", "CS": "RW", "TXDATA": "WO", "RXDATA": "RO", "STATUS": "RO",
          "INT_ENABLE": "RW", "INT_STATUS": "R/W1C", "FIFO_CTRL": "WO"}


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
    with step("files") as remarks:
        for path in files.all():
            require(path.is_file(), f"{path} is missing")
            name, content = path.relative_to(files.directory), path.read_bytes()
            hdl_rules.check_text(name, content)
            hdl_rules.check_header(name, content.decode(), IP_NAME, files.entity)
            if path.suffix == ".vhd":
                hdl_rules.check_vhdl(name, content.decode(), files.entity, path == files.test_bench)
        check_register_lists(files)
        remarks.append(f"{len(files.all())} files keep the common rules, register lists agree")


def check_register_lists(files):
    """Package, Verilog header and text give the offsets of the register map, and no others."""
    package = re.findall(r"constant REG_(\w+)\s*: integer := 16#(\w+)#", files.design[0].read_text())
    require({name: int(offset, 16) for name, offset in package} == REGISTERS, f"package: registers {package}")
    macro = rf"`define {files.entity.upper()}_REG_(\w+)\s+8'h(\w+)"
    header = re.findall(macro, files.header.read_text())
    require({name: int(offset, 16) for name, offset in header} == REGISTERS, f"Verilog header: registers {header}")
    rows = re.findall(r"(?m)^\| ([0-9A-F]{2}) \| (\w+) \| ([\w/]+) \|", files.text.read_text())
    require({name: (int(offset, 16), access) for offset, name, access in rows} ==
            {name: (offset, ACCESS[name]) for name, offset in REGISTERS.items()}, f"text: registers {rows}")


def check_test_bench(files, work, rng):
    top = f"tb_{files.entity}"
    for standard in STANDARDS:
        with step(f"delivered test bench, VHDL-{standard}") as remarks:
            Ghdl(work / f"ordered{standard}", standard).analyse([*files.design, files.test_bench])
            shuffled = rng.sample([*files.design, files.test_bench], 5)
            ghdl = Ghdl(work / f"shuffled{standard}", standard)
            ghdl.make(shuffled, top)
            output = ghdl.simulate(top, "20ms")
            require(f"{top}: PASSED" in output, f"{top} does not report that it passed:\n{output[-2000:]}")
            remarks.append("passed, ends by itself")


def check_behaviour(files, work, seed, is_long):
    with step(f"behaviour, seed {seed}") as remarks:
        stimulus = pins.Stimulus(seed)
        verdict = scenarios.Verdict()
        scenarios.add_all(stimulus, verdict, is_long)
        scans = [coincidences.Coincidences(stimulus, flags, bits, div)
                 for flags, bits, div in ((0, 4, 0), (pins.CPHA | pins.CPOL, 3, 1))]
        responses = simulate(files, work, stimulus)
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
        remarks.append(f"{len(stimulus.cycles)} cycles, {counts['words']} words in {counts['bursts']} bursts, "
                       f"{counts['reads']} reads")


def simulate(files, work, stimulus):
    """Runs the probe on the stimulus; one response line per cycle."""
    ghdl = Ghdl(work / "probe", "08")
    probe = ghdl.directory / "probe.vhd"
    probe.write_text(re.sub(r"\bapb_serial_master(?=_probe\b|\b)", files.entity, (HERE / "probe.vhd").read_text()))
    (ghdl.directory / "stimulus.txt").write_text("".join(cycle.line() + "\n" for cycle in stimulus.cycles))
    ghdl.analyse([*files.design, probe])
    output = ghdl.simulate(f"{files.entity}_probe", "10sec")
    require(output == "", f"the simulation is not silent:\n{output[:2000]}")
    responses = (ghdl.directory / "response.txt").read_text().splitlines()
    require(len(responses) == len(stimulus.cycles), "the simulation ended early")
    return responses


def check_synthesis(files, work):
    with step("synthesis") as remarks:
        ghdl = Ghdl(work / "synthesis", "08")
        ghdl.analyse(files.design)
        verilog, notes = ghdl.to_verilog(files.entity)
        require("found RAM" in notes, f"no memory is found in the FIFO:\n{notes}")
        (ghdl.directory / "netlist.v").write_text(verilog)
        report = yosys(ghdl.directory, [
            "read_verilog netlist.v", f"hierarchy -check -top {files.entity}", "proc", "opt", "memory -nomap",
            "check -assert", "select -assert-none t:$dlatch t:$adlatch t:$dlatchsr t:$sr",
            "select -assert-count 1 t:$mem_v2", "flatten", "opt", "techmap", "opt",
            "select -assert-none t:$_DLATCH* t:$_SR*", "abc -lut 4", "opt_clean", "stat"])
        cells = {name: int(count) for name, count in re.findall(r"(\$\S+)\s+(\d+)\n", report.rsplit("=== ", 1)[1])}
        flip_flops = sum(count for name, count in cells.items() if "DFF" in name)
        require(cells["$mem_v2"] == 2, f"the FIFOs are not two memories: {cells}")
        remarks.append(f"no latch, {cells['$lut']} LUT4, {flip_flops} flip-flops and 2 memories")


def check_verilog_header(files, work):
    with step("Verilog header") as remarks:
        macros = [f"{files.entity.upper()}_REG_{name}" for name in REGISTERS]
        cases = "\n".join(f"      `{macro}: index = 4'd{number};" for number, macro in enumerate(macros))
        include = f'`include "{files.header.name}"\n'
        source = work / "header.v"
        source.write_text(include * 2 + "module header(input wire [7:0] address, output reg [3:0] index);\n"
                          f"  always @*\n    case (address)\n{cases}\n      default: index = 4'd15;\n    endcase\n"
                          "endmodule\n")
        run(["iverilog", "-Wall", "-t", "null", "-I", files.header.parent, source], work)
        run(["verilator", "--lint-only", "-Wall", f"-I{files.header.parent}", source], work)
        remarks.append("accepted by Icarus Verilog and Verilator, included twice")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("directory", type=pathlib.Path, help="holds the generated files")
    parser.add_argument("entity", help="entity name that they were generated with")
    parser.add_argument("--seed", type=int, default=time.time_ns() % 1000000, help="of the random stimuli")
    parser.add_argument("--long", action="store_true", help="more of everything")
    options = parser.parse_args()
    files = Files(options.directory.resolve(), options.entity)
    try:
        with tempfile.TemporaryDirectory() as folder:
            work = pathlib.Path(folder)
            check_files(files)
            check_test_bench(files, work, random.Random(options.seed))
            check_behaviour(files, work, options.seed, options.long)
            check_synthesis(files, work)
            check_verilog_header(files, work)
    except CheckFailed as failure:
        print(f"FAIL  {options.entity}: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
