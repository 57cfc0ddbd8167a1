#!/usr/bin/env python3
"""Tests the register bank's generator script itself: what it refuses and which lines it names, names, template, page's example."""

import json
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import program
import script_tests
from generator import CATALOGUE
from hdl_tools import Ghdl
from pages import check_instance, example
from parameter_sets import REFERENCE, BankForm, Register

# The registers of a table, what the message says, and the lines whose cells it marks.
REFUSED = [
    ([Register("2a")], "does not begin with a letter", [0]),
    ([Register("a b")], "not allowed", [0]),
    ([Register("Signal")], "reserved word of VHDL", [0]),
    ([Register("int")], "reserved word or a macro of C", [0]),
    ([Register("UINT32_MAX")], "reserved word or a macro of C", [0]),
    ([Register("a"), Register("b"), Register("A")], "line 2 \"A\" stands in line 0", [2, 0]),
    ([Register("a", width=4, reset="16")], "needs 5 bits, the register has 4", [0]),
    ([Register("a"), Register("b", reset="0x")], "is no number", [1]),
    ([Register("a", reset="-1")], "is no number", [0]),
    ([Register("a", reset="")], "is no number", [0]),
    ([Register("a", "RO", reset="1")], "no meaning for the access RO", [0]),
    ([Register("a", "Pulse", reset="1")], "no meaning for the access Pulse", [0]),
]


class BankTests(script_tests.NameTests):
    good = {"register_bank": {"%%ENTITY_NAME%%": "good_name", "%%APPLICATION%%": "Velmora", "%%DATE%%": "today",
                              "%%REGISTER_COUNT%%": "1", "%%REGISTERS%%": '[("a", "rw", 8, "0", "")]'}}
    used_names = {"register_bank": ["pclk", "PRDATA", "a_out"]}

    def test_refused_tables(self):
        """By the program, with the lines that it marks."""
        forms = [BankForm("e", tuple(registers)) for registers, _, _ in REFUSED]
        with tempfile.TemporaryDirectory() as folder:
            files = [pathlib.Path(folder) / f"{number}.velmora" for number in range(len(forms))]
            for form, file in zip(forms, files):
                file.write_text(program.configuration("register_bank", form))
            for (_, pattern, rows), told in zip(REFUSED, program.tell(program.BUILD / "prefix", "preview", files)):
                with self.subTest(pattern=pattern):
                    self.assertIn(pattern, told["checked"]["message"])
                    self.assertEqual(told["checked"]["fields"], [f"Registers/{row}" for row in rows])
                    self.assertEqual(told["remarks"], [])  # it remarks titles of columns that it does not know

    def test_template_and_example_are_the_design_of_the_reference(self):
        """Whatever was generated before."""
        table = json.dumps([(each.name, each.access.lower(), each.width, each.reset, "") for each in REFERENCE])
        _, result = self.results("register_bank", [{}, {
            "ENTITY_NAME": "register_bank", "REGISTERS": table}])
        text = result.text["rtl/register_bank.vhd"].split(f"-- {'=' * 70}\n")[2].strip("\n")
        self.assertEqual(text, script_tests.without_marks(
            (CATALOGUE / "register_bank/templates/rtl/register_bank.vhd").read_text()).strip("\n"))
        ghdl = Ghdl(self.work / "page", "08")
        (ghdl.directory / "bank.vhd").write_text(text)
        ghdl.analyse(["bank.vhd"])
        check_instance(ghdl, example("register_bank", "instance").replace("work.E", "work.register_bank"), text)


if __name__ == "__main__":
    unittest.main()
