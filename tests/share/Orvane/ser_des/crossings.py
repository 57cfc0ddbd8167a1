"""The paths between the clocks of a synthesised interface, and whether constraints cover them."""

import fnmatch
import re

from hdl_tools import require
from structure import FLIP_FLOP


def inputs_of(cell):
    return [bit for pin, bits in cell["connections"].items()
            if cell["port_directions"][pin] == "input" and pin not in ("CLK", "ARST") for bit in bits]


class Registers:
    """The registers of a module, each by its output bits."""

    def __init__(self, module):
        self.names, self.drivers, self.cells = {}, {}, {}
        for name, net in module["netnames"].items():
            for bit in net["bits"]:
                self.names.setdefault(bit, []).append(name)
        for cell in module["cells"].values():
            table = self.cells if FLIP_FLOP.match(cell["type"]) else self.drivers
            for pin, bits in cell["connections"].items():
                if cell["port_directions"][pin] == "output":
                    table.update((bit, cell) for bit in bits)

    def named(self, pattern):
        return {bit for bit in self.cells if fnmatch.filter(self.names[bit], pattern)}

    def sources(self, cell):
        """The bits that a register depends on."""
        seen, ahead = set(), inputs_of(cell)
        while ahead:
            bit = ahead.pop()
            if bit not in seen and bit in self.drivers:
                ahead += inputs_of(self.drivers[bit])
            seen.add(bit)
        return seen & set(self.cells)

    def crossings(self):
        """Pairs of bits of which the second one, of another clock, depends on the first one."""
        return {(source, bit) for bit, cell in self.cells.items() for source in self.sources(cell)
                if self.cells[source]["connections"]["CLK"] != cell["connections"]["CLK"]}


def check_constraints(text, module):
    """Of each kind of constraint between registers exactly one covers each path between the clocks, and none holds others."""
    registers = Registers(module)
    kinds = {"set_max_delay": [], "set_false_path": []}
    for kind, *patterns in re.findall(r"(?m)^(\w+) .*-from \[get_cells link/(\S+)\] +-to \[get_cells link/(\S+)\]$", text):
        ends = [registers.named(pattern) for pattern in patterns]
        clocks = [{registers.cells[bit]["connections"]["CLK"][0] for bit in bits} for bits in ends]
        require([len(each) for each in clocks] == [1, 1] and clocks[0] != clocks[1], f"{patterns} are of one clock")
        kinds[kind].append(ends)
    for first, second in registers.crossings():
        for kind, constraints in kinds.items():
            count = sum(first in start and second in end for start, end in constraints)
            require(count == 1, f"{count} {kind} from {registers.names[first]} to {registers.names[second]}")
