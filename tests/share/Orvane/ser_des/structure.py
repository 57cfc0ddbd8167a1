"""Synthesises an interface and looks at its registers and clocks."""

import fnmatch
import re

from hdl_tools import require, synthesise, synthesised_module

FLIP_FLOP = re.compile(r"\$(a?dffe?|adffe?)")
FORBIDDEN_CELLS = re.compile(r"\$(d?latch|adlatch|aldff|dffsr|sr|tribuf|mem)")


def check_structure(ghdl, interface):
    """The number of registers, as text; the design without attributes is analysed already."""
    synthesise(ghdl, interface.entity, ["proc", "flatten", "opt", "opt_clean", "check -assert", "write_json netlist.json"])
    return f"{check_cells(synthesised_module(ghdl, interface.entity), interface)} flip-flops"


def check_cells(module, interface):
    """No latch, no clock but the two inputs, serial ports directly at registers of the bit clock."""
    ports = {name: port["bits"] for name, port in module["ports"].items()}
    clocks = {ports[name][0]: name for name in ("word_clk", "bit_clk")}
    registered, sampled, others, count = set(), set(), set(), 0
    for cell in module["cells"].values():
        require(not FORBIDDEN_CELLS.match(cell["type"]), f"the synthesised interface holds a cell {cell['type']}")
        pins = cell["connections"]
        if not FLIP_FLOP.match(cell["type"]):
            others |= {bit for name, bits in pins.items() if cell["port_directions"][name] == "input" for bit in bits}
            continue
        clock = clocks.get(pins["CLK"][0])
        require(clock, "a register is clocked by neither word_clk nor bit_clk")
        require("ARST" in pins, "a register has no asynchronous reset")
        count += len(pins["Q"])
        if clock == "bit_clk":
            registered |= set(pins["Q"])
            sampled |= set(pins["D"])
    require(not others & set(clocks), "a clock is used as a signal")
    if interface.counts["ser"]:
        require(set(ports["ser_out"]) <= registered, "ser_out does not come from registers of bit_clk")
    if interface.counts["des"]:
        require(set(ports["des_in"]) <= sampled - others, "des_in does not go to registers of bit_clk alone")
    return count


def check_constraints(text, module):
    """Registers that a constraint names are of one clock at each end, and of the other one at the other end."""
    clocks = {}
    for cell in module["cells"].values():
        if FLIP_FLOP.match(cell["type"]):
            clocks.update((bit, cell["connections"]["CLK"][0]) for bit in cell["connections"]["Q"])
    kinds = []
    for kind, *ends in re.findall(r"(?m)^(\w+) .*-from \[get_cells link/(\S+)\] +-to \[get_cells link/(\S+)\]$", text):
        found = [{clocks[bit] for name, net in module["netnames"].items() if fnmatch.fnmatch(name, pattern)
                  for bit in net["bits"] if bit in clocks} for pattern in ends]
        require([len(each) for each in found] == [1, 1] and found[0] != found[1], f"{kind} {ends} holds other paths")
        kinds.append((kind, *ends))
    crossings = {tuple(ends) for _, *ends in kinds}
    require(len(crossings) == 3 and len(kinds) == 6, f"the constraints between registers are {kinds}")
