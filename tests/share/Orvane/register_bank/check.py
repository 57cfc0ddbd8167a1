#!/usr/bin/env python3
"""Generates register banks, and checks that the three files of each agree with its table: the C header is compiled, the page
is read, and the bus of the design is. Runs the test bench delivered with it, also on what synthesis makes of it; altered banks
show that the bench can fail."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import delivered_bench
import hardware_check
from hdl_rules import check_design, check_header, check_text
from hdl_tools import require, step, synthesise
from maps import from_header, from_page, from_simulation
from parameter_sets import parameter_sets

ALTERED_SETS = {"reference"}
ALTERATIONS = {
    "psel = '1' and penable = '0'": "penable = '0'", "refused            := pwrite": "refused := '0'",
    "refused := '1'": "refused := '0'",
    'x"08"': 'x"09"', "or control_reg": "or not control_reg", "events_reg or events_set": "events_set",
    "pwdata(3 downto 0)) or events_set": "pwdata(3 downto 0))", "not pwdata": "pwdata",
    "'0';\n      command_write <= '0';\n      if": "'0';\n      if",
    '"01011010"': '"01011011"', 'command_reg <= "00";\n      if': 'if', "presetn = '0'": "rising_edge(pclk) and presetn = '0'"}

PORTS = {"RW": [("out", "out")], "RO": [("in", "in")], "W1C": [("set", "in"), ("out", "out")], "Pulse": [("pulse", "out")]}
BUS = {"in": {"pclk": None, "presetn": None, "psel": None, "penable": None, "pwrite": None, "paddr": 8, "pwdata": 32},
       "out": {"prdata": 32, "pready": None, "pslverr": None}}


def check_rules(design):
    registers = design.origin.form.registers
    names = {f"rtl/{design.entity}.vhd", f"include/{design.entity}_regs.h", f"doc/{design.entity}.md"}
    files = {str(path.relative_to(design.path)): path.read_bytes() for path in design.path.rglob("*.*")}
    require(set(files) == names, f"the files are {sorted(files)}")
    for name, content in files.items():
        check_text(name, content)
        check_header(name, content.decode().replace("/* ", "// "), "Register bank", design.entity)
    ports = {way: {**BUS[way], **{f"{each.name}_{suffix}": each.width for each in registers
                                  for suffix, direction in PORTS[each.access] if direction == way}} for way in BUS}
    check_design(design.vhdl.read_bytes(), "Register bank", design.entity, [len(registers)], ["entity", "architecture"],
                 ports["in"], ports["out"])
    stored = sum(each.width for each in registers if each.access != "RO")
    told = list(design.facts.items())[:4]
    require(told == [("Registers", len(registers)), ("Address space", 256), ("Storage", stored), ("Files", 3)], f"told is {told}")
    return "text, headers, ports and facts"


def check_agreement(design):
    registers = design.origin.form.registers
    wanted = {each.name: (4 * number, 2**each.width - 1, int(each.reset, 0)) for number, each in enumerate(registers)}
    for source, found in (("header", from_header(design, registers)), ("page", from_page(design))):
        require(found == wanted, f"the {source} has {found}")
    for each in registers:
        if each.access == "Pulse":
            wanted[each.name] = (*wanted[each.name][:1], 0, 0)
    found = from_simulation(design, registers)
    require(found == wanted, f"the bus has {found}")
    return f"{len(registers)} registers"


def check_synthesis(design):
    synthesise(design.ghdl("08"), design.entity, [
        "proc", "opt", "check -assert", "select -assert-none t:$dlatch t:$adlatch t:$mem*"])
    return "no latch, no memory"


def check(design):
    bench = delivered_bench.write(design)
    step("rules", check_rules, design)
    step("agreement", check_agreement, design)
    step("synthesis", check_synthesis, design)
    for standard in ("93", "08"):
        step("bench", design.ghdl(standard).run_bench, bench)
    if min(each.width for each in design.origin.form.registers) > 1:  # the VHDL netlists of GHDL are wrong at vectors of one bit
        netlist = design.ghdl("08").netlist(design.entity, design.path.parent / "netlist")
        step("bench on the netlist", netlist.run_bench, bench)
    if design.origin.name in ALTERED_SETS:
        step("altered", delivered_bench.check_altered, [design.vhdl], bench, ALTERATIONS, design.path.parent)


if __name__ == "__main__":
    sys.exit(hardware_check.main(__doc__, ["register_bank"], parameter_sets, check))
