#!/usr/bin/env python3
"""Tests the generator script of the IP "APB slave to serial master" and the joiner."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "support"))

import generator  # noqa: E402
from hdl_tools import Ghdl, require  # noqa: E402

IP_DIRECTORY = generator.ROOT / "share/velmora/Orvane/apb_slave_to_serial_master"

BAD_NAMES = {
    "is empty": [""],
    "not allowed": ["spi master", " spi", "spi\t", "spi\n", "spi-0", "spi.0", "spi/0", "../spi", "\\spi\\", "spi;",
                    "caf\xc3\xa9", "x" * 300 + "!"],
    "begin with a letter": ["0spi", "_spi", "9"],
    "underscore": ["spi_", "spi__0"],
    "use at most": ["x" * 201],
    "reserved word": ["signal", "Entity", "PROTECTED", "context", "vunit", "xnor"],
    "library": ["work", "std", "IEEE"],
    "standard package": ["integer", "STRING", "std_logic", "rising_edge", "unsigned", "Boolean", "ns"],
    "something else": ["pclk", "spi_cs_n", "PADDR", "ctrl_enable", "reg_id", "REG_FIFO_CTRL", "fifo_depth", "dut",
                       "state", "shifting", "clk"],
}
GOOD_NAMES = ["a", "x", "E", "tb", "rtl", "sim", "doc", "include", "fifo", "engine", "pkg", "tx", "rx", "vhd", "spi0",
              "Mixed_Case_7", "UPPER", "apb_serial_master", "my_apb_serial_master", "apb_serial_master_fifo", "regs",
              "tb_tb", "x" * 200]
FILE_PATTERNS = ["rtl/%s_pkg.vhd", "rtl/%s_fifo.vhd", "rtl/%s_engine.vhd", "rtl/%s.vhd", "include/%s_regs.vh",
                 "sim/tb_%s.vhd", "doc/%s.md"]


class GeneratorTest(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.work = pathlib.Path(cls.folder.name)
        cls.script = cls.work / "joined.py"
        generator.join(IP_DIRECTORY, cls.script)

    def generate(self, names):
        return zip(names, generator.generate(self.script, [{"%%ENTITY_NAME%%": name} for name in names]))

    def test_bad_name_gives_one_error_that_tells_why_and_no_file(self):
        for reason, names in BAD_NAMES.items():
            for name, (result, errors, notes) in self.generate(names):
                with self.subTest(name=name):
                    self.assertEqual(result, {})
                    self.assertEqual(notes, [])
                    self.assertEqual(len(errors), 1)
                    self.assertRegex(errors[0], rf"^Entity name .*{reason}.*[a-z0-9]\.$")

    def test_good_name_gives_all_files_under_that_name(self):
        for name, (result, errors, notes) in self.generate(GOOD_NAMES):
            with self.subTest(name=name):
                self.assertEqual((errors, notes), ([], []))
                self.assertEqual(sorted(result), sorted(pattern % name for pattern in FILE_PATTERNS))
                for path, content in result.items():
                    folder, last = path.rsplit("/", 1)
                    self.assertNotIn(last, folder)
                    self.assertFalse(content.endswith("\n"))
                    if "apb_serial_master" not in name:
                        self.assertNotIn("apb_serial_master", content.lower())

    def test_awkward_names_give_a_design_that_passes_its_test_bench(self):
        for number, (name, (result, _, _)) in enumerate(self.generate(GOOD_NAMES)):
            directory = self.work / str(number)
            generator.write_files(result, directory)
            for standard in ("93", "08"):
                with self.subTest(name=name, standard=standard):
                    ghdl = Ghdl(directory / standard, standard)
                    ghdl.make(sorted(directory.glob("*/*.vhd")), f"tb_{name}")
                    require(f"tb_{name}: PASSED" in ghdl.simulate(f"tb_{name}", "20ms"), "the test bench does not pass")

    def test_two_designs_share_a_library(self):
        files = []
        for name, (result, _, _) in self.generate(["first", "second"]):
            generator.write_files(result, self.work / "shared" / name)
            files += sorted((self.work / "shared" / name).glob("*/*.vhd"))
        ghdl = Ghdl(self.work / "shared", "08")
        for name in ("first", "second"):
            ghdl.make(files, f"tb_{name}")
            require(f"tb_{name}: PASSED" in ghdl.simulate(f"tb_{name}", "20ms"), f"{name} does not pass")

    def test_description_page_shows_the_same_registers_as_the_generated_text(self):
        (_, (result, _, _)), = self.generate(["spi0"])
        page = re.sub(r"</?code>", "", (IP_DIRECTORY / "description.html").read_text())
        for row, cells in (("([0-9A-F]{2}) (\\w+) ([RWO/1C]+) ([0-9A-F]{8}|) ", "offset, name, access, reset value"),
                           ("(\\d+(?::\\d+)?) ([A-Z_]+) ", "bits, field")):
            in_text = re.findall(row.replace(" ", " *\\| *"), result["doc/spi0.md"])
            in_page = re.findall(row.replace(" ", "</td><td>"), page)
            with self.subTest(cells=cells):
                self.assertGreater(len(in_text), 9)
                self.assertEqual(in_text, in_page)

    def test_shared_support(self):
        """What other scripts of the catalogue take from the support files."""
        space = {}
        for name in ("identifiers.py", "templates.py", "comments.py"):
            exec((generator.ROOT / "share/generator-support" / name).read_text(), space)  # pylint: disable=exec-used
        prefix_problem = space["basicIdentifierProblem"]
        for prefix in ("P", "signal", "std_logic"):
            self.assertIsNone(prefix_problem("Prefix", prefix))
        for prefix in ("", "1P", "P_", "P__Q", "P-Q"):
            self.assertRegex(prefix_problem("Prefix", prefix), r"^Prefix .*\.$")
        vhdl = "architecture rtl of top is -- no\nx\"0F\" 'a' 16#AB# Y'event \"text\""
        self.assertEqual(space["vhdlIdentifiers"](vhdl), {"architecture", "of", "top", "is", "y", "event"})
        self.assertEqual(space["renameEntity"]("top top_pkg tb_top stop topper TOP_X", "top", "My"),
                         "My My_pkg tb_My stop topper MY_X")
        self.assertEqual(space["failureComment"]("Prefix is empty."), "-- Generation failed: Prefix is empty.\n")


class JoinerTest(unittest.TestCase):

    FILES = {
        "support.py": b"def double(word):\n    return word * 2\n",
        "generator.py": b"def generate(argDict):\n    return double(TEMPLATES['rtl/a.vhd'])\n",
        "templates/rtl/a.vhd": b"-- 'quoted' \"\"\" \\ %%KEY%%\n",
        "templates/.a.vhd.swp": b"\xff",
    }

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = pathlib.Path(folder.name)
        for name, content in self.FILES.items():
            self.write(name, content)

    def write(self, name, content):
        path = self.work / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)

    def join(self, output="joined.py"):
        return subprocess.run([generator.JOINER, "generator.py", "-o", output, "--support", "support.py", "--templates",
                               "templates"], cwd=self.work, capture_output=True, text=True, check=False)

    def test_joined_text_is_the_same_each_time_and_stands_alone(self):
        self.assertEqual((self.join("one.py").returncode, self.join("two.py").returncode), (0, 0))
        self.assertEqual((self.work / "one.py").read_bytes(), (self.work / "two.py").read_bytes())
        (result, _, _), = generator.generate(self.work / "one.py", [{}])
        self.assertEqual(result, (self.work / "templates/rtl/a.vhd").read_text() * 2)

    def test_bad_input_fails_with_one_line_and_without_output(self):
        for name, content, message in (
                ("generator.py", b"def generate(argDict)\n    return ''\n", "invalid syntax"),
                ("templates/rtl/a.vhd", b"-- \xe9\n", "a.vhd:1: only ASCII"),
                ("templates/rtl/a.vhd", b"--\n--\r\n", "a.vhd:2: only ASCII")):
            with self.subTest(message=message):
                self.write(name, content)
                result = self.join()
                self.write(name, self.FILES[name])
                self.assertEqual(result.returncode, 1)
                self.assertRegex(result.stderr, rf"^join-generator: .*{message}.*\n$")
                self.assertFalse((self.work / "joined.py").exists())


if __name__ == "__main__":
    unittest.main()
