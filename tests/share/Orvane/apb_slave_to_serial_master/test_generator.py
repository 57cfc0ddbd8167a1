#!/usr/bin/env python3
"""Tests the generator script of the IP "APB slave to serial master" and the joiner."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import generator
import pages
import script_tests
from hdl_tools import Ghdl

IP = "apb_slave_to_serial_master"
GOOD_NAMES = ["E", "x" * 200, "sim", "fifo", "tb_tb", "my_apb_serial_master"]
FILE_PATTERNS = ["rtl/%s_pkg.vhd", "rtl/%s_fifo.vhd", "rtl/%s_engine.vhd", "rtl/%s.vhd", "include/%s_regs.vh",
                 "sim/tb_%s.vhd", "doc/%s.md"]


class BridgeTests(script_tests.NameTests):
    good = {IP: {"%%ENTITY_NAME%%": "good_name"}}
    used_names = {IP: ["pclk", "spi_cs_n", "PADDR", "ctrl_enable", "reg_id", "REG_FIFO_CTRL", "fifo_depth", "clk"]}

    def elaborate(self, ghdl, name, directory):
        ghdl.make(sorted(directory.glob("**/*.vhd")), f"tb_{name}")

    def test_good_name_gives_a_design_and_its_test_bench(self):
        for number, (name, result) in enumerate(self.named(IP, GOOD_NAMES)):
            directory = self.work / str(number)
            generator.write_files(result, directory)
            with self.subTest(name=name):
                self.expect_remarks(result)
                self.assertEqual(sorted(result.text), sorted(pattern % name for pattern in FILE_PATTERNS))
                for path, content in result.text.items():
                    folder, last = path.rsplit("/", 1)
                    self.assertNotIn(last, folder)
                    self.assertFalse(content.endswith("\n"))
                    if "apb_serial_master" not in name:
                        self.assertNotIn("apb_serial_master", content.lower())
                for standard in script_tests.STANDARDS:
                    self.elaborate(Ghdl(directory / standard, standard), name, directory)

    def test_two_designs_share_a_library(self):
        ghdl = Ghdl(self.work / "shared", "08")
        for name, result in self.named(IP, ["first", "second"]):
            generator.write_files(result, ghdl.directory / name)
        for name in ("first", "second"):
            self.elaborate(ghdl, name, ghdl.directory)

    def test_description_page_shows_the_same_registers_as_the_generated_text(self):
        (_, result), = self.named(IP, ["spi0"])
        page = re.sub(r"</?code>", "", (generator.CATALOGUE / IP / "description.html").read_text())
        for row, cells in (("([0-9A-F]{2}) (\\w+) ([RWO/1C]+) ([0-9A-F]{8}|) ", "offset, name, access, reset value"),
                           ("(\\d+(?::\\d+)?) ([A-Z_]+) ", "bits, field")):
            in_text = re.findall(row.replace(" ", " *\\| *"), result.text["doc/spi0.md"])
            with self.subTest(cells=cells):
                self.assertGreater(len(in_text), 9)
                self.assertEqual(in_text, re.findall(row.replace(" ", "</td><td>"), page))

    def test_port_map_of_the_description_page_analyses(self):
        (_, result), = self.named(IP, ["spi0"])
        for standard in script_tests.STANDARDS:
            ghdl = Ghdl(self.work / f"page{standard}", standard)
            generator.write_files(result, ghdl.directory)
            ghdl.analyse(f"rtl/spi0{part}.vhd" for part in ("_pkg", "_fifo", "_engine", ""))
            pages.check_instance(ghdl, pages.example(IP, "port-map").replace("work.E", "work.spi0"), result.text["rtl/spi0.vhd"])

    def test_names_in_a_text(self):
        """Names that an entity name must not be, and those that become it, are found among their like."""
        space = {}
        for name in ("identifiers.py", "templates.py"):
            exec((generator.ROOT / "share/generator-support" / name).read_text(), space)  # pylint: disable=exec-used
        vhdl = "entity top is -- no\nx\"0F\" 'a' 16#AB# Y'event \"text\"\narchitecture rtl of top is"
        self.assertEqual(space["interfaceIdentifiers"](vhdl), {"entity", "top", "is", "y", "event"})
        self.assertEqual(space["renameEntity"]("top top_pkg tb_top stop topper TOP_X", "top", "My"),
                         "My My_pkg tb_My stop topper MY_X")


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
