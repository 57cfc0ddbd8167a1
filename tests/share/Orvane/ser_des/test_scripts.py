#!/usr/bin/env python3
"""Checks the generator script of the IP "SER/DES" itself: errors, remarks, names and template."""

import pathlib
import random
import re
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "support"))

# pylint: disable=wrong-import-position
import generator
from hdl_rules import check_text
from hdl_tools import Ghdl
from parameter_sets import Form, argument_dictionary, equals_own_rotation, filled_form
from structure import without_attributes

IP_DIRECTORY = generator.ROOT / "share/velmora/Orvane/ser_des"
GOOD = Form("good_name", prefix="P", data_size=4, ser_count=2, des_count=2, ser_training="0001", des_training="0011",
            ser_locations=("01P", "01N"), des_locations=("02P", "02N"), ser_output_delays=(5, 63))


class ScriptTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.work = pathlib.Path(folder.name)
        cls.script = cls.work / "joined.py"
        generator.join(IP_DIRECTORY, cls.script)

    def results(self, dictionaries):
        """The script's result for each dictionary; their texts stand for UTF-8, as in the program."""
        as_bytes = [{key: value.encode("utf-8").decode("latin-1") for key, value in each.items()}
                    for each in dictionaries]
        return generator.generate(self.script, as_bytes)

    def result(self, **keys):
        """The result for the good form with some keys of its dictionary replaced, written without their %%."""
        arguments = argument_dictionary(GOOD)
        for key, value in keys.items():
            self.assertIn(f"%%{key}%%", arguments)
            arguments[f"%%{key}%%"] = value
        return self.results([arguments])[0]

    def expect_errors(self, result, *patterns):
        """One error for each pattern, in this order, and a text that is nothing but comment."""
        text, errors, remarks = result
        self.assertEqual(len(errors), len(patterns), errors)
        for error, pattern in zip(errors, patterns):
            self.assertRegex(error, rf"^{pattern}")
            self.assertTrue(error.endswith("."))
        check_text("the text", text.encode("latin-1") + b"\n")
        self.assertEqual(text.split("\n"), [f"-- Generation failed: {error}" for error in errors])
        self.assertEqual(remarks, [])

    def test_entity_names(self):
        names = ["", "1a", "_a", "a_", "a__b", "a-b", "a b", "\\a\\", "a`protect begin", "\u00e9t\u00e9", "a\tb",
                 "a" * 201,
                 "signal", "ENTITY", "vunit", "work", "Std", "IEEE", "integer", "String", "std_logic", "rising_edge",
                 "std_logic_1164", "numeric_std", "unsigned", "reset", "Word_Clk", "BIT_CLK", "ser_data", "des_locked",
                 "des_in", "pad_bank", "PAD_INPUT_DELAY", "P_data_size", "p_location_array", "P_DES_TURBO"]
        for name in names:
            with self.subTest(name=name):
                self.expect_errors(self.result(ENTITY_NAME=name), "Entity name ")

    def test_prefixes(self):
        for prefix in ["1a", "_a", "a_", "a__b", "a-b", "a b", "", "\u00e9", "P\t", "P`protect end"]:
            with self.subTest(prefix=prefix):
                self.expect_errors(self.result(PREFIX=prefix), "Parameter's prefix ")
        for prefix in ["signal", "std_logic", "work", "x" * 200, "good_name", "ser", "des", "PAD", "LINK", "ser_des"]:
            with self.subTest(prefix=prefix):
                text, errors, _ = self.result(PREFIX=prefix)
                self.assertEqual(errors, [])
                self.analyse("prefix", text)

    def test_training_values(self):
        for value, pattern in [("01x1", "character other"), ("012 ", "character other"), ("\u00e90", "character other"),
                               ("HL01", "character other"), ('0"01', "character other"),
                               ("011", "has 3 digits: write 4"), ("01101", "has 5 digits: write 4"),
                               ("", "has 0 digits: write 4")]:
            des = rf"Training value \(DES parameters\) .*{pattern}"
            with self.subTest(value=value):
                both = {"SER_TRAINING_VALUE": f'"{value}"', "DES_TRAINING_VALUE": f'"{value}"'}
                self.expect_errors(self.result(**both), des)
                self.expect_errors(self.result(DES_TRAINING_VALUE=f'"{value}"'), des)
                self.expect_errors(self.result(SER_TRAINING_VALUE=f'"{value}"'), des.replace("DES", "SER"))
                absent = {"DES_COUNT": "0", "DES_LOCATIONS": '(others => "XXX")', "DES_INPUT_DELAY_LINE": "()"}
                self.expect_errors(self.result(**both, **absent), des)

    def test_each_side_has_its_own_training_value(self):
        text, errors, _ = self.result(SER_TRAINING_VALUE='"0001"', DES_TRAINING_VALUE='"0111"')
        self.assertEqual(errors, [])
        self.assertRegex(text, r'constant P_SER_TRAINING_VALUE .*"0001";')
        self.assertRegex(text, r'constant P_DES_TRAINING_VALUE .*"0111";')

    def test_aggregates(self):
        location, delay = "01P", "00"
        keys = {"SER_LOCATIONS": (r"Location \(SER parameters\) ", location),
                "DES_LOCATIONS": (r"Location \(DES parameters\) ", location),
                "SER_OUTPUT_DELAY_LINE": (r"Output delay line \(SER parameters\) ", delay),
                "DES_INPUT_DELAY_LINE": (r"Input delay line \(DES parameters\) ", delay)}
        for key, (label, good) in keys.items():
            for aggregate in [
                    f'(0 => "{good}")', f'(1 => "{good}", 2 => "{good}")', f'(0 => "{good}", 0 => "{good}")',
                    f'(0 => "{good}", 1 => "{good}", 2 => "{good}")', f'(0 => "{good}", 1 => "{good}x")',
                    f'(0 => "{good}", 1 => "{good[1:]}")', f'(0 => "{good}"; 1 => "{good}")', f'(others => "{good}")',
                    '(others => "XXX")', "()", "", f'(0 => "{good}", 1 => "{good}"); constant x : integer := 0',
                    f'(0 => "{good}", 1 => "{good}"\u00e9)', f'(0 => "{good}", others => "{good}")']:
                with self.subTest(key=key, aggregate=aggregate):
                    self.expect_errors(self.result(**{key: aggregate}), label)
            count = key[:3] + "_COUNT"
            with self.subTest(key=key, count=0):
                other = next(each for each in keys if each[:3] == key[:3] and each != key)
                self.expect_errors(self.result(**{count: "0", other: "()"}), label)

    def test_entries_in_another_order_go_to_their_lines(self):
        text, errors, _ = self.result(SER_LOCATIONS='(1 => "07N", 0 => "15P")')
        self.assertEqual(errors, [])
        self.assertIn('attribute pad_location of ser_out : signal is "15P,07N";', text)
        self.assertIn('0 => "15P", 1 => "07N"', text)

    def test_every_problem_is_reported(self):
        result = self.result(PREFIX="P_", ENTITY_NAME="in", DES_TRAINING_VALUE='"01"', SER_TRAINING_VALUE='"01"',
                             SER_LOCATIONS="()")
        self.expect_errors(result, 'Entity name "in"', "Parameter's prefix", "Training value", "Location")

    def test_missing_location_is_remarked(self):
        for key, line in (("SER_LOCATIONS", "SER1"), ("DES_LOCATIONS", "DES1")):
            with self.subTest(key=key):
                text, errors, remarks = self.result(**{key: '(0 => "01P", 1 => "")'})
                self.assertEqual((errors, len(remarks)), ([], 1))
                self.assertRegex(remarks[0], rf"^{line} has no location")
                self.assertRegex(text, r'attribute pad_location of \w+ : signal is "01P,XXX";')

    def test_training_value_that_cannot_align_is_remarked_once(self):
        for size in (3, 4, 6):
            for number in range(2**size):
                training = format(number, f"0{size}b")
                keys = {"DATA_SIZE": str(size)}
                keys.update((f"{side}_TRAINING_VALUE", f'"{training}"') for side in ("SER", "DES"))
                absent = {"DES_COUNT": "0", "DES_LOCATIONS": '(others => "XXX")', "DES_INPUT_DELAY_LINE": "()"}
                arguments = argument_dictionary(GOOD)
                arguments.update((f"%%{key}%%", value) for key, value in keys.items())
                without_des = {**arguments, **{f"%%{key}%%": value for key, value in absent.items()}}
                (_, errors, remarks), (_, _, no_remarks) = self.results([arguments, without_des])
                with self.subTest(training=training):
                    self.assertEqual((errors, no_remarks), ([], []))
                    self.assertEqual(len(remarks), int(equals_own_rotation(training)))

    def test_awkward_texts_stay_in_their_strings(self):
        text, errors, _ = self.result(DES_PADTYPE='"A"B`protect begin"', SER_PADTYPE='"LINK ser_des"',
                                      DATE="1/1\n`protect end\u20ac")
        self.assertEqual(errors, [])
        check_text("the text", text.encode("latin-1") + b"\n")
        self.assertIn('attribute pad_type of des_in : signal is "A""B?protect begin";', text)
        self.assertIn('attribute pad_type of ser_out : signal is "LINK ser_des";', text)
        self.analyse("awkward", text)

    def analyse(self, library, text):
        for standard in ("93", "08"):
            ghdl = Ghdl(self.work / f"{library}_{standard}", standard)
            (ghdl.directory / "interface.vhd").write_text(text + "\n")
            ghdl.analyse(["-Wno-hide", "interface.vhd"])
        return ghdl

    def test_names_inside_the_architecture_can_name_the_entity(self):
        template = (IP_DIRECTORY / "templates/ser_des.vhd").read_text()
        names = sorted(set(re.findall(r"(?m)^ *(?:signal|constant|variable) ([a-z_]+|[A-Z_]+) +:", template)
                           + re.findall(r"(?m)^ *(\w+) : (?:process|for) ", template))
                       - set(re.findall(r"LINK_\w+", template)))
        self.assertGreater(len(names), 20)
        names += ["i", "rtl", "LINK", "ser_des", "my_ser_des_link", "a" * 200, "P", "E"]
        for name, (text, errors, _) in zip(names, self.results(
                [{**argument_dictionary(GOOD), "%%ENTITY_NAME%%": name} for name in names])):
            with self.subTest(name=name):
                self.assertEqual(errors, [])
                self.assertFalse(text.endswith("\n"))
                ghdl = self.analyse(f"named_{name[:40]}", text)
                (ghdl.directory / "plain.vhd").write_text(without_attributes(text))
                ghdl.analyse(["-Wno-hide", "-Wno-library", "plain.vhd"])
                ghdl.to_verilog(name)

    def test_two_interfaces_share_a_library_and_a_scope(self):
        texts = self.results([{**argument_dictionary(GOOD), "%%ENTITY_NAME%%": name, "%%PREFIX%%": prefix}
                              for name, prefix in (("first", "A"), ("second", "B"))])
        user = ("use work.first_pkg.all;\nuse work.second_pkg.all;\npackage user is\n"
                "  constant bits : integer := A_DATA_SIZE + B_DATA_SIZE;\n"
                "  constant pads : A_LOCATION_ARRAY(0 to 1) := A_LOCATION_ARRAY(B_SER_LOCATIONS);\nend package user;")
        self.analyse("shared", "\n".join([text for text, _, _ in texts] + [user]))

    def test_template_is_the_interface_of_its_parameters(self):
        form = Form("ser_des", prefix="LINK", word_clock=125, data_size=8, ser_count=2, des_count=2,
                    des_training="11010000", ser_locations=("01P", "02P"), ser_output_delays=(0, 7),
                    des_locations=("03P", "04P"))
        (text, _, _), = self.results([argument_dictionary(form)])
        template = (IP_DIRECTORY / "templates/ser_des.vhd").read_text()
        template = re.sub(r"(?m)^ *-- (begin|end) [a-z ]+\n", "", template)
        self.assertEqual(text[text.index("library ieee;"):] + "\n", template)

    def test_description_page_names_what_the_text_offers(self):
        (text, _, _), = self.results([argument_dictionary(GOOD)])
        page = (IP_DIRECTORY / "description.html").read_text()
        entity = re.search(r"(?ms)^entity .*?^end entity", text).group(0)
        offered = (re.findall(r"(?m)^ *(?:constant|type) (\w+)", text.split("end package")[0])
                   + re.findall(r"(?m)^ *(\w+) *: (?:in|out) ", entity) + re.findall(r"attribute (\w+) :", entity))
        self.assertGreater(len(offered), 40)
        self.assertEqual([name for name in offered if f"<code>{name}</code>" not in page], [])

    def test_one_dictionary_makes_one_text(self):
        other = argument_dictionary(filled_form(random.Random(1), "other", 7, 30, 0))
        first, _, third = self.results([argument_dictionary(GOOD), other, argument_dictionary(GOOD)])
        self.assertEqual(first, third)


if __name__ == "__main__":
    unittest.main()
