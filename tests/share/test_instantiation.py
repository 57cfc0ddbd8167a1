#!/usr/bin/env python3
"""Compiles what "velmora-generate instantiate" gives, pasted into a design, with GHDL in VHDL-93 and VHDL-2008: for each example,
for entities written in all ways that the language has, and for a module, whose component a design declares."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

# pylint: disable=wrong-import-position
import program
from generator import ROOT
from hdl_tools import Ghdl

EXAMPLES = sorted((ROOT / "docs/examples").glob("*.velmora"))
STANDARDS = ("93c", "08")

CONTEXT = "library ieee; use ieee.std_logic_1164.all; -- entity a is\n"
ENTITIES = {
    "generics without defaults": CONTEXT + """
        entity THING is generic (a, b : positive; c : std_logic; d : string; e : time; f : natural range 3 to 5;
          g : std_logic_vector(3 downto 0); h : work.kinds.kind; i : boolean := 1 > 0); port (x : in std_logic); end;""",
    "several names, comments, arithmetic and defaults": CONTEXT + """
        ENTITY thing IS -- port (a : in bit);
          generic (WIDTH : integer := 2 ** 3; -- bits
                   TEXT  : string := "a;b"")"; MARK : character := ')'; BASED : natural := 16#F#);
          port (
            signal a, b,  -- two
                   c : in  std_logic := '0';
            d          : out std_logic_vector ( (WIDTH - 1) * 2 + 1
                                                downto 0 );
            e          : inout std_logic_vector(0 to WIDTH) bus;
            f          : std_logic_vector(7 downto 0) := (others => '0')
          );
          constant unused : character := '(';
        begin
        END ENTITY thing;""",
    "open widths and a package": """package kinds_of_thing is subtype word is integer range 0 to 9; end;
        use work.kinds_of_thing.all; """ + CONTEXT + """
        entity thing is port (a : in std_logic_vector; b : out word; thing_instance : in bit); end thing;""",
    "no ports": "entity thing is end;",
    "extended names": r"entity thing is port (\a b\ : in bit; \signal\ : out bit_vector(1 downto 0)); end;",
}
KINDS = "package kinds is type kind is (one, two); end;\n"

MODULE = """`timescale 1ns / 1ps
`ifndef GUARD
`define GUARD 8
module thing #(parameter WIDTH = 8, parameter integer DEPTH = WIDTH * 2, parameter NAME = "a", localparam L = 1)
  (input wire clk, input [WIDTH-1:0] in, output reg signed [0:7] q, r, inout \\odd! /* module x; */, (* keep *) input _s);
`else
module other (input a);
`endif
endmodule
"""
HEADLESS = """module thing (clk, in, q); // input x;
  parameter WIDTH = 4;
  input clk; input [WIDTH-1:0] in; output q; reg q;
  function f; input g; f = g; endfunction
endmodule
"""


def instantiate(prefix, configuration, directory):
    """The three parts, by their names."""
    environment = {**program.ENVIRONMENT, "ORVANE_PREFIX": str(prefix)}
    answer = subprocess.run([program.BUILD / "bin/velmora-generate", "instantiate", configuration], env=environment, cwd=directory,
                            stdout=subprocess.PIPE, text=True, check=True).stdout
    parts = {}
    for line in answer.splitlines(keepends=True):
        if line in ("-- context\n", "-- declarations\n", "-- statements\n"):
            parts[line.split()[1]] = ""
        else:
            parts[list(parts)[-1]] += line
    return parts


class InstantiationTests(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = pathlib.Path(folder.name)

    def compile(self, parts, files):
        """A design of an entity of its own and the parts."""
        self.assertEqual(list(parts), ["context", "declarations", "statements"])
        top = self.work / "paste.vhd"
        top.write_text(f"{parts['context']}entity paste is\nend entity paste;\n\narchitecture test of paste is\n"
                       f"{parts['declarations']}begin\n{parts['statements']}end architecture test;\n")
        for standard in STANDARDS:
            with tempfile.TemporaryDirectory() as library:
                ghdl = Ghdl(pathlib.Path(library), standard)
                if files:
                    ghdl.make([*files, top], "paste")
                else:
                    ghdl.analyse([top])

    def test_examples(self):
        self.assertTrue(EXAMPLES)
        program.tell(program.BUILD / "prefix", "run", ["-o", self.work, *EXAMPLES])
        for example in EXAMPLES:
            with self.subTest(example=example.stem):
                files = [self.work / f"{example.stem}.vhd", *(self.work / example.stem).glob("rtl/*.vhd")]
                self.compile(instantiate(program.BUILD / "prefix", example, self.work), [each for each in files if each.exists()])

    def instantiated(self, script, ip, configuration):
        """The parts for what a script returns."""
        prefix = pathlib.Path(tempfile.mkdtemp(dir=self.work)) / "prefix"
        program.make_installation(ip, prefix, f"def generate(argDict):\n    return {script}\n")
        return instantiate(prefix, configuration, self.work)

    def test_entities(self):
        for name, text in ENTITIES.items():
            with self.subTest(name):
                parts = self.instantiated(repr(text), "systolic_fir", ROOT / "docs/examples/fir_systolic.velmora")
                (self.work / "kinds.vhd").write_text(KINDS)
                (self.work / "thing.vhd").write_text(f"{text}\narchitecture rtl of thing is begin end;\n")
                self.compile(parts, [self.work / "kinds.vhd", self.work / "thing.vhd"])

    def test_modules(self):
        for text in (MODULE, HEADLESS):
            with self.subTest(text):
                files = repr({"rtl/thing.v": text, "README.md": "module"})
                parts = self.instantiated(files, "apb_slave_to_serial_master", ROOT / "docs/examples/spi_bridge.velmora")
                self.compile(parts, [])
                names = "clk in q r odd! _s".split() if text == MODULE else "clk in q".split()
                mapped = [line.split("=>")[0].strip(" \\") for line in parts["statements"].split("port map")[1].splitlines()]
                self.assertEqual([name for name in mapped if name.strip("();")], names)


if __name__ == "__main__":
    unittest.main()
