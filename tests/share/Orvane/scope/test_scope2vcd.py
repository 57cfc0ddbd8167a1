#!/usr/bin/env python3
"""Tests scope2vcd.py under Python 2.7 and 3, on captures made by hand and on captures out of simulated scopes.

Among the latter are those that the readout process of the description pages writes.
"""

import dataclasses
import html
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "support"))

# pylint: disable=wrong-import-position
import generator
import stimulus as inputs
from bench import output_fields, simulate
from hdl_tools import Ghdl
from model import MODELS, Pins
from parameter_sets import KINDS, parameter_sets

CATALOGUE = generator.ROOT / "share/velmora/Orvane"
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


PRE = capture_text(["00", "01", "01", "10"])
PRE_VCD = """\
$timescale 1 ns $end
$scope module probe $end
$var wire 1 ! in0 $end
$var wire 1 " in1 $end
$var wire 1 # trigger $end
$upscope $end
$enddefinitions $end
#0
0!
0"
0#
#10
1!
1#
#20
0#
#30
0!
1"
#40
"""

STARTUP = capture_text(["?U", "--", "11", "11"], position=3, first=2)
STARTUP_VCD = PRE_VCD[:PRE_VCD.index("#0\n")] + """\
#14
1!
1"
0#
#21
1#
#28
"""

# Bits of a row: window, trigger, in1, in0.
WINDOWS = capture_text(["0000101", "0000010", "0001101", "0001001"], "multiple_windows", trigger=1, window=4, length=2)
WINDOWS_VCD = """\
$timescale 1 ns $end
$scope module probe $end
$var wire 1 ! clock_enable $end
$var wire 1 " in1 $end
$var wire 1 # trigger $end
$var wire 4 $ window $end
$upscope $end
$enddefinitions $end
#0
1!
0"
1#
b0000 $
#10
0!
1"
0#
#20
x!
x"
x#
bx $
#30
1!
0"
1#
b0001 $
#40
0#
#50
x!
x"
x#
bx $
"""

UNSTORED_WINDOWS = capture_text(["11", "11", "11", "11"], "multiple_windows", length=2)
UNSTORED_WINDOWS_VCD = PRE_VCD[:PRE_VCD.index("#0\n")] + """\
#0
1!
1"
1#
#1
0#
#2
x!
x"
x#
#3
1!
1"
1#
#4
0#
#5
x!
x"
x#
"""

CONVERSIONS = {
    "pre-trigger": (PRE, [], None, PRE_VCD),
    "carriage returns": (PRE.replace("\n", "\r\n"), [], None, PRE_VCD),
    "no line feed at the end": (PRE[:-1], [], None, PRE_VCD),
    "first valid sample": (STARTUP, ["--period-ns", "7"], None, STARTUP_VCD),
    "windows": (WINDOWS, [], " clock enable\t\n   \nsurplus\n", WINDOWS_VCD),
    "nothing stored": (UNSTORED_WINDOWS, ["--period-ns", "1"], "", UNSTORED_WINDOWS_VCD),
}

MALFORMED = {
    "empty": "",
    "no first line": PRE.split("\n", 1)[1],
    "other version": PRE.replace("velmora-scope 1", "velmora-scope 2"),
    "unknown line": PRE.replace("inputs 2", "inputs 2\nrate 5"),
    "unknown line that is no ASCII": PRE.replace("inputs 2", "inputs 2\n\u00e4\u0085 5"),
    "empty line": PRE.replace("inputs 2", "inputs 2\n"),
    "repeated line": PRE.replace("inputs 2", "inputs 2\ninputs 2"),
    "no value": PRE.replace("entity probe", "entity"),
    "no number": PRE.replace("inputs 2", "inputs two"),
    "no inputs": PRE.replace("inputs 2", "inputs 0"),
    "trigger width": PRE.replace("trigger 0", "trigger 2"),
    "window width": PRE.replace("window 0", "window 1"),
    "unknown mode": PRE.replace("pre_trigger_enable", "pre_trigger"),
    "length in pre-trigger mode": capture_text(["00", "00"], length=1),
    "position in windows mode": capture_text(["00", "00"], "multiple_windows", length=1, position=0),
    "first in windows mode": capture_text(["00", "00"], "multiple_windows", length=1, first=0),
    "part of a window": capture_text(["00", "00", "00"], "multiple_windows", length=2),
    "position behind the samples": capture_text(["00", "00"], position=2),
    "first behind the samples": capture_text(["00", "00"], first=2),
    "header only": PRE.split("samples")[0],
    "more rows": PRE + "00\n",
    "empty row at the end": PRE + "\n",
    "fewer rows": PRE.rsplit("10", 1)[0],
    "long row": PRE.replace("00", "000"),
    "short row": PRE.replace("00", "0"),
    "other character": PRE.replace("10", "1x"),
    "blank in a row": PRE.replace("10", "1 "),
    "wrong row width in front of first": STARTUP.replace("?U", "?"),
    "other character behind first": capture_text(["--", "-0"], first=1),
    **{f"no {keyword}": re.sub(rf"(?m)^{keyword} .*\n", "", WINDOWS)
       for keyword in ("entity", "inputs", "trigger", "window", "mode", "length", "samples")},
    "no position": PRE.replace("position 1\n", ""),
}


def convert(interpreter, capture, *options, names=None):
    """Exit status, standard error and the VCD text, None where no file was written."""
    source, target, name_file = DIRECTORY / "capture.txt", DIRECTORY / "out.vcd", DIRECTORY / "names.txt"
    target.unlink(missing_ok=True)
    source.write_bytes(capture.encode("utf-8"))
    words = [interpreter, "-B", CONVERTER, source, target, *options]
    if names is not None:
        name_file.write_bytes(names.encode("utf-8"))
        words += ["--names", name_file]
    result = subprocess.run(words, capture_output=True, text=True, check=False)
    return result.returncode, result.stderr, target.read_text("utf-8") if target.exists() else None


def generated(kind, name):
    """Entity name, model and VHDL file of a scope with the parameter set of that name."""
    chosen, = [each for each in parameter_sets(kind, 1, 0) if each.name == name]
    script, design = DIRECTORY / f"{kind}.py", DIRECTORY / f"{kind}_{name}.vhd"
    generator.join(CATALOGUE / kind, script)
    (text, _, _), = generator.generate(script, [chosen.arguments()])
    design.write_text(text + "\n")
    return chosen.form.entity, MODELS[kind](chosen.arguments()), design


@dataclasses.dataclass
class Wave:
    """Value changes of a VCD file: time and value, by variable name."""

    module: str
    changes: dict
    end: int

    def at(self, name, time):
        return [value for moment, value in self.changes[name] if moment <= time][-1]


def read_vcd(text):
    head, body = text.split("$enddefinitions $end\n")
    names = {code: name for _, code, name in re.findall(r"\$var wire (\d+) (\S+) (\S+) \$end", head)}
    wave = Wave(re.search(r"\$scope module (\S+) \$end", head).group(1), {name: [] for name in names.values()}, -1)
    for line in body.splitlines():
        if line.startswith("#"):
            assert int(line[1:]) > wave.end
            wave.end = int(line[1:])
        else:
            value, code = line[1:].split() if line.startswith("b") else (line[0], line[1:])
            wave.changes[names[code]].append((wave.end, value))
    return wave


class Conversion(unittest.TestCase):
    def test_conversions(self):
        for interpreter in INTERPRETERS:
            for title, (capture, options, names, expected) in CONVERSIONS.items():
                with self.subTest(interpreter=interpreter, title=title):
                    self.assertEqual(convert(interpreter, capture, *options, names=names), (0, "", expected))

    def test_names_beyond_ascii(self):
        for interpreter in INTERPRETERS:
            status, errors, vcd = convert(interpreter, PRE, names="\ufeffh\u00f6he\n\u4fe1 \u53f7")
            self.assertEqual((status, errors), (0, ""))
            self.assertIn("! h\u00f6he $end\n", vcd)
            self.assertIn('" \u4fe1_\u53f7 $end\n', vcd)

    def test_malformed_captures(self):
        for interpreter in INTERPRETERS:
            for title, capture in MALFORMED.items():
                with self.subTest(interpreter=interpreter, title=title):
                    status, errors, vcd = convert(interpreter, capture)
                    self.assertEqual((status, vcd), (1, None))
                    self.assertRegex(errors, r"\Ascope2vcd: malformed capture: [ -~]+\n\Z")

    def test_unusable_files_and_options(self):
        for interpreter in INTERPRETERS:
            for options in (["--names", "missing"], ["--period-ns", "0"], ["--period-ns", "2.5"]):
                with self.subTest(interpreter=interpreter, options=options):
                    status, errors, vcd = convert(interpreter, PRE, *options)
                    self.assertNotEqual(status, 0)
                    self.assertIsNone(vcd)
                    self.assertNotIn("Traceback", errors)
            (DIRECTORY / "latin").write_bytes(b"h\xf6he\n")
            status, errors, vcd = convert(interpreter, PRE, "--names", DIRECTORY / "latin")
            self.assertEqual((status, vcd, errors.count("\n")), (1, None, 1))

    def test_identifier_codes_are_unique(self):
        row = "01" * 120
        _, _, vcd = convert("python3", capture_text([row, row], inputs=240))
        wave = read_vcd(vcd)
        self.assertEqual(len(wave.changes), 241)
        for line in range(240):
            self.assertEqual(wave.changes[f"in{line}"], [(0, row[239 - line])])


class SimulatedCaptures(unittest.TestCase):
    """A capture is read out of a simulated scope, converted, and compared with what its inputs were."""

    def read_out(self, kind, name):
        """The model and the samples of the last capture, read from the scope's port in order."""
        entity, model, design = generated(kind, name)
        stimulus = inputs.KINDS[kind](model, 3)
        inputs.REAL[kind](stimulus, 1)
        begin = model.now()
        for address in range(model.depth + 2):
            model.step(Pins(address=address % model.depth))
        lines = simulate(Ghdl(DIRECTORY / f"{kind}_{name}", "08"), kind, entity, model, design)
        self.assertEqual(output_fields(kind, model, lines[-1])[2], "1", "the capture is not done")
        rows = [output_fields(kind, model, line)[4] for line in lines[begin + 2:begin + 2 + model.depth]]
        return entity, model, rows

    def check_inputs(self, wave, model, tick, index):
        """The waves at a tick are the inputs at an index."""
        data = model.pins[index].data
        for line in range(model.input_count):
            self.assertEqual(wave.at(f"in{line}", tick), str(data >> line & 1), (tick, index, line))

    def convert(self, text):
        for interpreter in INTERPRETERS:
            status, errors, vcd = convert(interpreter, text, "--period-ns", "1")
            self.assertEqual((status, errors), (0, ""))
        return read_vcd(vcd)

    def test_pre_trigger_with_stored_pulse(self):
        entity, model, rows = self.read_out("scope", "reference")
        wave = self.convert(capture_text(rows, entity=entity, inputs=model.input_count, trigger=1,
                                         position=model.before))
        self.assertEqual((wave.module, wave.end), (entity, model.depth))
        self.assertEqual(wave.changes["trigger"], [(0, "0"), (model.before, "1"), (model.before + 1, "0")])
        for number in range(0, model.depth, 7):
            self.check_inputs(wave, model, number, model.trigger_index - model.before + number)

    def test_windows(self):
        entity, model, rows = self.read_out("scope", "windows_contiguous")
        count, length = model.window_total, model.window_length
        wave = self.convert(capture_text(rows[:count * length], "multiple_windows", entity=entity,
                                         inputs=model.input_count, trigger=1, window=4, length=length))
        self.assertEqual(wave.end, count * (length + 1) - 1)
        start = model.trigger_index - (count - 1) * length  # all windows follow each other
        for window in range(count):
            begin = window * (length + 1)
            self.assertEqual(wave.at("window", begin), format(window % 16, "04b"))
            self.assertEqual([wave.at("trigger", begin + offset) for offset in (0, 1, length - 1)], ["1", "0", "0"])
            self.assertEqual(wave.at("in0", begin + length), "x")
            for offset in (0, 1, length - 1):
                self.check_inputs(wave, model, begin + offset, start + window * length + offset)

    def test_startup_with_missing_samples(self):
        entity, model, rows = self.read_out("startup_scope", "reference")
        first = model.status.count
        self.assertGreater(first, 0)
        wave = self.convert(capture_text(rows, entity=entity, inputs=model.input_count, position=model.before,
                                         first=first))
        self.assertEqual((wave.changes["in0"][0][0], wave.end), (first, model.depth))
        self.assertEqual(wave.changes["trigger"][1], (model.before, "1"))
        for number in range(first, model.depth, 5):
            self.check_inputs(wave, model, number, model.trigger_index - model.before + number)


PAGE_BENCH = """
library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

use std.textio.all;

use work.{entity}_pkg.all;

entity page is
end entity page;

architecture test of page is
  signal clk     : std_logic := '0';
  signal reset   : std_logic := '1';
  signal done    : std_logic;
  signal data_in : std_logic_vector(INPUT_LINE_COUNT - 1 downto 0) := (others => '0');
  signal trig_in : std_logic_vector(TRIGGER_LINE_COUNT - 1 downto 0) := (others => '0');
  signal rd_addr : std_logic_vector(CAPTURE_WIDTH - 1 downto 0) := (others => '0');
  signal rd_data : std_logic_vector({sample_width} - 1 downto 0);
  {signals}
begin
{statements}
  clk     <= not clk after 5 ns;
  reset   <= '0' after 42 ns;
  data_in <= std_logic_vector(unsigned(data_in) + 1) when rising_edge(clk);
  trig_in(0) <= '1' after 3400 ns;

  dut : entity work.{entity}
    port map (clk => clk, reset => reset, done => done, data_in => data_in, trig_in => trig_in, rd_addr => rd_addr,
              rd_data => rd_data, busy => open, triggered => open, {ports});

{process}
end architecture test;
"""
PAGE_PORTS = {
    "scope": {"signals": "signal arm : std_logic;", "statements": "  arm <= '1', '0' after 60 ns;",
              "ports": "arm => arm, force_trigger => '0', window_count => open"},
    "startup_scope": {"signals": "signal first_valid : std_logic_vector(CAPTURE_WIDTH - 1 downto 0);",
                      "statements": "", "ports": "first_valid => first_valid"},
}


class Pages(unittest.TestCase):
    def test_files_that_a_page_names_exist(self):
        for kind in KINDS:
            page = CATALOGUE / kind / "description.html"
            for name in re.findall(r'(?:href|src)="([^"]+)"', page.read_text("utf-8")):
                self.assertTrue((page.parent / name).is_file(), name)

    def test_process_of_the_page_reads_out_a_capture(self):
        """The scope's data count up at each clock, so that each sample follows from the one before."""
        for kind in KINDS:
            page = (CATALOGUE / kind / "description.html").read_text("utf-8")
            process = html.unescape(re.search(r'(?s)<pre id="read-out">(.*?)</pre>', page).group(1))
            entity, model, design = generated(kind, "reference")
            ghdl = Ghdl(DIRECTORY / f"page_{kind}", "08")
            (ghdl.directory / "page.vhd").write_text(PAGE_BENCH.format(
                entity=entity, sample_width=model.sample_width, process=process.replace("entity E", f"entity {entity}"),
                **PAGE_PORTS[kind]))
            ghdl.analyse([design, "page.vhd"])
            ghdl("-r", "page", "--stop-time=60us", "--ieee-asserts=disable-at-0")
            capture = (ghdl.directory / "capture.txt").read_text()
            rows = capture.splitlines()[-model.depth:]
            first = int((re.findall(r"(?m)^first (\d+)$", capture) or ["0"])[0])
            with self.subTest(kind=kind):
                self.assertEqual(first > 0, kind == "startup_scope")
                data = [int(row[-model.input_count:], 2) for row in rows[first:]]
                self.assertEqual({(after - before) % 256 for before, after in zip(data, data[1:])}, {1})
                for interpreter in INTERPRETERS:
                    status, errors, vcd = convert(interpreter, capture)
                    self.assertEqual((status, errors), (0, ""))
                    wave = read_vcd(vcd)
                    self.assertEqual((wave.module, wave.at("trigger", 10 * model.before)), (entity, "1"))


if __name__ == "__main__":
    unittest.main()
