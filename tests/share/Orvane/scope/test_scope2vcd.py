#!/usr/bin/env python3
"""Tests scope2vcd.py under Python 2.7 and 3, on captures made by hand and on those that the readout process of the
description pages writes out of simulated scopes."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import program
from described import Described
from generator import CATALOGUE
from hdl_tools import Ghdl
from pages import example
from parameter_sets import KINDS, parameter_sets

CONVERTER = CATALOGUE / "scope/scope2vcd.py"
INTERPRETERS = ("python2.7", "python3")

SCRATCH = tempfile.TemporaryDirectory()
DIRECTORY = pathlib.Path(SCRATCH.name)


def tearDownModule():  # pylint: disable=invalid-name
    SCRATCH.cleanup()


def capture_text(rows, mode="pre_trigger_enable", **header):
    """A capture text; headers given as None are left out."""
    values = {"entity": "probe", "inputs": 2, "trigger": 0, "window": 0, "mode": mode,
              "position": 1 if mode == "pre_trigger_enable" else None, "first": None, "length": None,
              "samples": len(rows), **header}
    lines = ["# velmora-scope 1"] + [f"{key} {value}" for key, value in values.items() if value is not None]
    return "\n".join(lines + rows) + "\n"


def vcd_text(names, changes, window_bits=0):
    """The VCD text of lines by these names, then trigger and window; the changes have blanks for line ends."""
    variables = [(1, name) for name in [*names, "trigger"]] + [(window_bits, "window")] * bool(window_bits)
    lines = ["$timescale 1 ns $end", "$scope module probe $end",
             *[f"$var wire {width} {code} {name} $end" for code, (width, name) in zip('!"#$', variables)],
             "$upscope $end", "$enddefinitions $end", *changes.split()]
    return re.sub(r"\n(b[01x]+)", r"\n\1 ", "\n".join(lines)) + "\n"


TWO_LINES = ["in0", "in1"]
PRE = capture_text(["00", "01", "01", "10"])
PRE_VCD = vcd_text(TWO_LINES, '#0 0! 0" 0# #10 1! 1# #20 0# #30 0! 1" #40')
STARTUP = capture_text(["?U", "--", "11", "11"], position=3, first=2)
STARTUP_VCD = vcd_text(TWO_LINES, '#14 1! 1" 0# #21 1# #28')

# Bits of a row: window, trigger, in1, in0.
WINDOWS = capture_text(["0000101", "0000010", "0001101", "0001001"], "multiple_windows", trigger=1, window=4, length=2)
WINDOWS_VCD = vcd_text(["clock_enable", "in1"], '#0 1! 0" 1# b0000$ #10 0! 1" 0# #20 x! x" x# bx$ '
                       '#30 1! 0" 1# b0001$ #40 0# #50 x! x" x# bx$', 4)
UNSTORED_WINDOWS = capture_text(["11", "11", "11", "11"], "multiple_windows", length=2)
UNSTORED_WINDOWS_VCD = vcd_text(TWO_LINES, '#0 1! 1" 1# #1 0# #2 x! x" x# #3 1! 1" 1# #4 0# #5 x! x" x#')

CONVERSIONS = {
    "pre-trigger": (PRE, [], None, PRE_VCD),
    "carriage returns": (PRE.replace("\n", "\r\n"), [], None, PRE_VCD),
    "no line feed at the end": (PRE[:-1], [], None, PRE_VCD),
    "first valid sample": (STARTUP, ["--period-ns", "7"], None, STARTUP_VCD),
    "windows": (WINDOWS, [], " clock enable\t\n   \nsurplus\n", WINDOWS_VCD),
    "nothing stored": (UNSTORED_WINDOWS, ["--period-ns", "1"], "", UNSTORED_WINDOWS_VCD),
}

# What makes the pre-trigger capture malformed when it stands for another text.
BAD_EDITS = [
    ("velmora-scope 1", "velmora-scope 2"), ("inputs 2", "inputs 2\n\u00e4\u0085 5"), ("inputs 2", "inputs 2\ninputs 2"),
    ("inputs 2", "inputs 0"), ("window 0", "window 1"), ("entity probe\n", ""), ("position 1\n", ""),
    ("position 1", "position 4"), ("position 1", "position 1\nfirst 4"), ("position 1", "position 1\nlength 1"),
    ("\n10\n", "\n"), ("\n10\n", "\n1x\n"), ("00", "0"), ("00", "000"), ("\n10\n", "\n10\n10\n"),
]
MALFORMED = [
    "", PRE.split("samples")[0], STARTUP.replace("?U", "?"), capture_text(["--", "-0"], first=1),
    capture_text(["00", "00"], "multiple_windows", length=1, first=0),
    capture_text(["00", "00", "00"], "multiple_windows", length=2), WINDOWS.replace("length 2\n", ""),
    *[PRE.replace(old, new) for old, new in BAD_EDITS],
]


class ConverterTest(unittest.TestCase):
    def convert(self, capture, *options, names=None):
        """What all interpreters agree on: exit status, standard error and the VCD text, None where no file was written."""
        source, target, name_file = DIRECTORY / "capture.txt", DIRECTORY / "out.vcd", DIRECTORY / "names.txt"
        source.write_bytes(capture.encode("utf-8"))
        if names is not None:
            name_file.write_bytes(names.encode("utf-8"))
            options += ("--names", name_file)
        answers = []
        for interpreter in INTERPRETERS:
            target.unlink(missing_ok=True)
            result = subprocess.run([interpreter, "-B", CONVERTER, source, target, *options], capture_output=True, text=True,
                                    check=False)
            vcd = target.read_text("utf-8") if target.exists() else None
            answers.append((result.returncode, result.stderr, vcd))
        self.assertEqual(*answers)
        return answers[0]


class Conversion(ConverterTest):
    def test_conversions(self):
        for title, (capture, options, names, expected) in CONVERSIONS.items():
            with self.subTest(title=title):
                self.assertEqual(self.convert(capture, *options, names=names), (0, "", expected))

    def test_names_beyond_ascii(self):
        status, errors, vcd = self.convert(PRE, names="\ufeffh\u00f6he\n\u4fe1 \u53f7")
        self.assertEqual((status, errors), (0, ""))
        self.assertIn("! h\u00f6he $end\n", vcd)
        self.assertIn('" \u4fe1_\u53f7 $end\n', vcd)

    def test_malformed_captures(self):
        for capture in MALFORMED:
            self.assertNotEqual(capture, PRE)
            with self.subTest(capture=capture):
                status, errors, vcd = self.convert(capture)
                self.assertEqual((status, vcd), (1, None))
                self.assertRegex(errors, r"\Ascope2vcd: malformed capture: [ -~]+\n\Z")

    def test_unusable_files_and_options(self):
        (DIRECTORY / "latin").write_bytes(b"h\xf6he\n")
        for options in (["--names", "missing"], ["--names", DIRECTORY / "latin"], ["--period-ns", "0"], ["--period-ns", "2.5"]):
            with self.subTest(options=options):
                status, errors, vcd = self.convert(PRE, *options)
                self.assertNotEqual(status, 0)
                self.assertIsNone(vcd)
                self.assertRegex(errors, r"scope2vcd[^\n]+\n\Z")
                self.assertNotIn("Traceback", errors)

    def test_identifier_codes_are_unique(self):
        _, _, vcd = self.convert(capture_text(["01" * 5000], inputs=10000, position=0))
        codes = re.findall(r"\$var wire 1 (\S+) ", vcd)
        self.assertEqual((len(codes), len(set(codes))), (10001, 10001))


PAGE_BENCH = """
library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

use std.textio.all;

use work.{entity}_pkg.all;

entity page is
end entity page;

architecture test of page is
  signal clk, arm, done : std_logic := '0';
  signal reset          : std_logic := '1';
  signal bus_lines      : std_logic_vector(INPUT_LINE_COUNT - 1 downto 0) := (others => '0');
  signal control_lines  : std_logic_vector(TRIGGER_LINE_COUNT - 1 downto 0) := (others => '0');
  signal first_valid    : std_logic_vector(CAPTURE_WIDTH - 1 downto 0);
  signal rd_addr        : std_logic_vector(CAPTURE_WIDTH - 1 downto 0);
  signal rd_data        : std_logic_vector({sample_width} - 1 downto 0);
begin
  clk              <= not clk after 5 ns;
  reset            <= '0' after 42 ns;
  arm              <= '1', '0' after 60 ns;
  bus_lines        <= std_logic_vector(unsigned(bus_lines) + 1) when rising_edge(clk);
  control_lines(0) <= '1' after 3400 ns;

{instance}

{process}
end architecture test;
"""


class Pages(ConverterTest):
    def test_files_that_a_page_names_exist(self):
        for kind in KINDS:
            page = CATALOGUE / kind / "description.html"
            for name in re.findall(r'(?:href|src)="([^"]+)"', page.read_text("utf-8")):
                self.assertTrue((page.parent / name).is_file(), name)

    def test_ring_is_read_out(self):
        """Of the reference scope, as the page instantiates it, by the page's process."""
        for kind in KINDS:
            chosen, = [each for each in parameter_sets(kind, 1, False) if each.name == "reference"]
            ghdl, entity = Ghdl(DIRECTORY / kind, "08"), chosen.form.entity
            design, = program.generate(kind, [chosen.form], ghdl.directory)
            described = Described(kind, design.arguments)
            (ghdl.directory / "page.vhd").write_text(PAGE_BENCH.format(
                entity=entity, sample_width=described.sample_width,
                instance=example(kind, "instance").replace("work.E", f"work.{entity}"),
                process=example(kind, "read-out").replace("entity E", f"entity {entity}")))
            ghdl.analyse([design.path, "page.vhd"])
            self.assertNotIn("warning", ghdl("-r", "page", "--stop-time=60us", "--ieee-asserts=disable-at-0"))
            capture = (ghdl.directory / "capture.txt").read_text()
            self.assertEqual(self.convert(capture)[:2], (0, ""))
            header = dict(line.split() for line in capture.splitlines()[1:] if " " in line)
            first = int(header.get("first", "0"))
            with self.subTest(kind=kind):
                self.assertEqual((first > 0, int(header["samples"])), (kind == "startup_scope", described.depth))
                self.assertEqual(int(header["position"]), described.before)
                # The scope's data count up at each clock, so that each sample follows from the one before.
                numbers = [int(row[-described.input_count:], 2) for row in capture.splitlines()[-described.depth + first:]]
                steps = {(after - before) % 2**described.input_count for before, after in zip(numbers, numbers[1:])}
                self.assertEqual(steps, {1})


if __name__ == "__main__":
    unittest.main()
