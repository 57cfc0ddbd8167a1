#!/usr/bin/env python3
"""Checks the generated files of the IP "APB slave to serial master" against its rules.

The design is simulated on random pin stimuli and compared with a model that knows only the rules, the delivered
test bench is run, and the files are analysed, synthesised and read. The exit status is 0 when everything holds.
"""

import argparse
import pathlib
import random
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import hdl_rules
import scenarios
import stimulus as pins
from clocked_bench import ClockedBench
from hdl_tools import CheckFailed, Ghdl, cell_counts, require, run, step, synthesise
from model import Model

IP_NAME = "APB slave to serial master"
STANDARDS = ("93", "08")
REGISTERS = ("ID", "CTRL", "DIV", "CS", "TXDATA", "RXDATA", "STATUS", "INT_ENABLE", "INT_STATUS", "FIFO_CTRL")


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
    return f"{len(files.all())} files keep the common rules"


def check_test_bench(files, work, standard, shuffled):
    top = f"tb_{files.entity}"
    Ghdl(work / f"ordered{standard}", standard).analyse([*files.design, files.test_bench])
    ghdl = Ghdl(work / f"shuffled{standard}", standard)
    ghdl.make(shuffled, top)
    output = ghdl.simulate(top, "20ms")
    require(f"{top}: PASSED" in output, f"{top} does not report that it passed:\n{output[-2000:]}")
    return "passed, ends by itself"


def check_behaviour(files, work, seed, is_long):
    stimulus, model = pins.Stimulus(seed), Model()
    scenarios.add_all(stimulus, is_long)
    ghdl = Ghdl(work / "simulation", "08")
    ghdl.analyse(files.design)
    bench = ClockedBench(files.entity, pins.INPUTS, pins.OUTPUTS, clock="pclk")
    responses = [outputs for _, outputs in bench.run(ghdl, [(1, cycle.line()) for cycle in stimulus.cycles])]
    for number, (cycle, response) in enumerate(zip(stimulus.cycles, responses, strict=True)):
        expected = model.outputs(cycle)
        if response[32 if expected[0] == "-" else 0:] != expected.lstrip("-"):
            begin, name = max(each for each in stimulus.scenarios if each[0] <= number)
            raise CheckFailed(f"{name}, cycle {number - begin}: {cycle}\n{bench.fields(response)}\nis not\n{bench.fields(expected)}")
        model.edge(cycle)
    require(model.counts["words"] > 500 and model.counts["bursts"] > 200, f"too little was sent: {dict(model.counts)}")
    return f"{len(stimulus.cycles)} cycles, " + ", ".join(f"{count} {what}" for what, count in model.counts.items())


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


def check_netlist(files, work):
    """What GHDL's synthesis makes of the design passes the delivered test bench, too."""
    top = f"tb_{files.entity}"
    ghdl = Ghdl(work / "synthesis", "08").netlist(files.entity, work / "netlist")
    ghdl.make([files.design[0], "netlist.vhd", files.test_bench], top)
    output = ghdl("-r", top, "--stop-time=20ms", "--ieee-asserts=disable-at-0")
    require(f"{top}: PASSED" in output, f"the netlist does not pass:\n{output[-2000:]}")
    return "passes the delivered test bench"


def check_verilog_header(files, work):
    """The header gives the registers the offsets of the register map, included twice, and two tools take it."""
    names = [f"{files.entity.upper()}_REG_{name}" for name in REGISTERS]
    differences = " | ".join(f"`{name} ^ 8'd{4 * number}" for number, name in enumerate(names))
    include = f'`include "{files.header.name}"\n'
    source = work / "header.v"
    source.write_text(f"{include * 2}module header(output wire [7:0] difference);\n"
                      f"  assign difference = {differences};\nendmodule\n")
    run(["verilator", "--lint-only", "-Wall", f"-I{files.header.parent}", source], work)
    source.write_text(source.read_text().replace("endmodule", "  initial #1 $display(\"%d\", difference);\nendmodule"))
    run(["iverilog", "-Wall", "-o", "header", "-I", files.header.parent, source], work)
    require(run(["vvp", "header"], work).split() == ["0"], "the header gives other offsets")
    return "right in Icarus Verilog, accepted by Verilator"


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
            step("netlist", check_netlist, files, work)
            step("Verilog header", check_verilog_header, files, work)
    except CheckFailed as failure:
        print(f"FAIL  {options.entity}: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
