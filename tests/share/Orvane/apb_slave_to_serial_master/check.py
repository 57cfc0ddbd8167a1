#!/usr/bin/env python3
"""Checks the generated files of the IP "APB slave to serial master" against its rules.

The delivered test bench is run on the design, on what synthesis makes of it, and on altered designs, which show that it can
fail; the files are read, analysed and synthesised. The exit status is 0 when everything holds.
"""

import argparse
import pathlib
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import delivered_bench
import hdl_rules
from hdl_tools import CheckFailed, Ghdl, cell_counts, require, run, step, synthesise

IP_NAME = "APB slave to serial master"
STANDARDS = ("93", "08")
REGISTERS = ("ID", "CTRL", "DIV", "CS", "TXDATA", "RXDATA", "STATUS", "INT_ENABLE", "INT_STATUS", "FIFO_CTRL")

ALTERATIONS = {
    "(int_sticky and not int_clear) or int_set": "(int_sticky or int_set) and not int_clear", "and int_enable(i) = '1'": "",
    "rx_push and rx_full": "rx_push and rx_full and not rx_pop", "tx_push and tx_full;": "tx_push and tx_full and not tx_take;",
    "flush or (": "(flush and not push) or (", "use_bypass  <= push and is_empty": "use_bypass  <= '0'",
    "memory(next_read_index)": "memory(read_index)", "is_full &": "'0' &", "(divider) = 0": "(divider) <= 1",
    "begin_burst or shifting": "shifting", "<= not idle;": "<= not idle or begin_burst;", "(sclk_rests or not cs_n(i))": "'1'",
    "recovering and half_over;": "holding and half_over;", "rx_push <= last_edge": "rx_push <= last_edge and not take"}


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


def check_bench(files, work, standard):
    ghdl = Ghdl(work / standard, standard)
    ghdl.analyse(files.design)
    return ghdl.run_bench(files.test_bench)


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
    """The delivered test bench passes on what GHDL's synthesis makes of the design, too."""
    ghdl = Ghdl(work / "synthesis", "08").netlist(files.entity, work / "netlist")
    ghdl.analyse([files.design[0]])
    return ghdl.run_bench(files.test_bench, "--ieee-asserts=disable-at-0")


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
    options = parser.parse_args()
    files = Files(options.directory.resolve(), options.entity)
    try:
        with tempfile.TemporaryDirectory() as folder:
            work = pathlib.Path(folder)
            step("files", check_files, files)
            for standard in STANDARDS:
                step("bench", check_bench, files, work, standard)
            step("altered", delivered_bench.check_altered, files.design, files.test_bench, ALTERATIONS, work)
            step("synthesis", check_synthesis, files, work)
            step("bench on the netlist", check_netlist, files, work)
            step("Verilog header", check_verilog_header, files, work)
    except CheckFailed as failure:
        print(f"FAIL  {options.entity}: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
