#!/usr/bin/env python3
"""Checks the filters' generator scripts themselves: errors, remarks, header and templates."""

import dataclasses
import pathlib
import re
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "support"))

# pylint: disable=wrong-import-position
import generator
from hdl_rules import check_text
from hdl_tools import run
from parameter_sets import KINDS, MacForm, StreamingForm, argument_dictionary

CATALOGUE = generator.ROOT / "share/velmora/Orvane"

SCRATCH = tempfile.TemporaryDirectory()
DIRECTORY = pathlib.Path(SCRATCH.name)


@dataclasses.dataclass
class Result:
    """What a script returned and reported."""

    text: str
    errors: list
    remarks: list


def setUpModule():  # pylint: disable=invalid-name
    for kind in KINDS:
        generator.join(CATALOGUE / kind, DIRECTORY / f"{kind}.py")


def tearDownModule():  # pylint: disable=invalid-name
    SCRATCH.cleanup()

STREAMING = StreamingForm("good_name", coefficients="1, 2, 2, 1")
MAC = MacForm("good_name", coefficients="1, 2, 2, 1")


def form_of(kind):
    return MAC if kind == "mac_fir" else STREAMING


def arguments_of(kind, **keys):
    """The arguments of a good filter with four taps, some of them replaced; keys are written without their %%."""
    arguments = argument_dictionary(form_of(kind))
    for key, value in keys.items():
        if key == "COEFS" and kind != "mac_fir":
            key = "COEFS_PKG_HEXA_CONSTANT"
        assert f"%%{key}%%" in arguments
        arguments[f"%%{key}%%"] = value
    return arguments


def results_of(kind, dictionaries):
    """The script's result for each dictionary; their texts stand for UTF-8, as in the program."""
    as_bytes = [{key: value.encode("utf-8").decode("latin-1") for key, value in each.items()} for each in dictionaries]
    return [Result(*answer) for answer in generator.generate(DIRECTORY / f"{kind}.py", as_bytes)]


def result_of(kind, **keys):
    return results_of(kind, [arguments_of(kind, **keys)])[0]


class Errors(unittest.TestCase):
    def expect_errors(self, result, *fragments):
        """One error for each fragment, in this order, and a text that is nothing but comment."""
        self.assertEqual(len(result.errors), len(fragments), result.errors)
        for error, fragment in zip(result.errors, fragments):
            self.assertIn(fragment, error)
        check_text("the text", result.text.encode("latin-1"))
        lines = result.text.splitlines()
        self.assertEqual(len(lines), len(fragments))
        for line in lines:
            self.assertRegex(line, "^-- Generation failed: ")
        self.assertEqual(result.remarks, [])

    def test_entity_names(self):
        names = ["", "1a", "_a", "a_", "a__b", "a-b", "a b", "a.b", "\\a\\", "a`protect begin", "filtr\u00e9", "a\tb",
                 "signal", "ENTITY", "default", "work", "Std", "IEEE", "std_logic", "Signed", "RISING_EDGE", "resize",
                 "positive", "std_logic_1164", "numeric_std"]
        for kind in KINDS:
            results = results_of(kind, [arguments_of(kind, ENTITY_NAME=name) for name in names])
            for name, result in zip(names, results):
                with self.subTest(kind=kind, name=name):
                    self.expect_errors(result, "Entity name")

    def test_coefficients(self):
        cases = [
            ("()", ["no hexadecimal literal"]),
            ("", ["no hexadecimal literal"]),
            ("(  )", ["no hexadecimal literal"]),
            ('(x"01", abc, x"02", x"")', ["coefficient 1 (abc)", 'coefficient 3 (x"")']),
            ('(x"01", x"0g", x"02", x"01")', ['coefficient 1 (x"0g")']),
            ('(x"01", x"02"; x"03", x"02", x"01")', ['coefficient 1 (x"02"; x"03")']),
            ('(b"01", x"02", x"02", "01")', ['coefficient 0 (b"01")', 'coefficient 3 ("01")']),
            ('(x"01", x"02", x"02", x"01`")', ['coefficient 3 (x"01?")']),
            ('(x"01", x"02", x"02", x"01"\u00e9)', ['coefficient 3 (x"01"?)']),
        ]
        for kind in KINDS:
            for aggregate, fragments in cases:
                with self.subTest(kind=kind, aggregate=aggregate):
                    self.expect_errors(result_of(kind, COEFS=aggregate), *fragments)

    def test_counts(self):
        three, five = '(x"01", x"02", x"01")', '(x"01", x"02", x"03", x"02", x"01")'
        for kind in KINDS:
            with self.subTest(kind=kind):
                self.expect_errors(result_of(kind, COEFS=five), "4")
                self.assertIn("5", result_of(kind, COEFS=five).errors[0])
                if kind != "mac_fir":
                    self.expect_errors(result_of(kind, COEFS=three), "3")

    def test_symmetry(self):
        kind = "transpose_symmetric_fir"
        cases = [
            ("4", '(x"01", x"02", x"03", x"01")', ['1 (x"02" = 2) and coefficient 2 (x"03" = 3)']),
            ("4", '(x"01", x"02", x"02", x"ff")', ['0 (x"01" = 1) and coefficient 3 (x"ff" = -1)']),
            ("3", '(x"01", x"02", x"01")', ["Coefficient count"]),
            ("3", '(x"01", x"02", x"03")', ["Coefficient count"]),
            ("5", '(x"01", x"02", x"03", x"04")', ["Coefficients: 4", "Coefficient count"]),
            ("6", '(x"01", x"02", x"03", x"04")', ["Coefficients: 4"]),
            ("4", '(x"01", x"02", x"zz", x"03")', ["coefficient 2"]),
        ]
        for tap_count, aggregate, fragments in cases:
            with self.subTest(tap_count=tap_count, aggregate=aggregate):
                self.expect_errors(result_of(kind, N_TAPS=tap_count, COEFS=aggregate), *fragments)
        self.expect_errors(result_of(kind, N_TAPS="7", COEF_ARE_INPUT_SIGNALS="true", COEFS="(others => '0')"),
                           "Coefficient count")

    def test_independent_errors_are_all_told(self):
        result = result_of("transpose_symmetric_fir", ENTITY_NAME="a b", N_TAPS="5", COEFS='(x"1", y)')
        self.expect_errors(result, "Entity name", "coefficient 1 (y)", "Coefficients: 2", "Coefficient count")


class Remarks(unittest.TestCase):
    def test_remarks(self):
        cases = [
            ("systolic_fir", {"COEFS": '(x"1f2", x"e", x"ffe", X"7F")'},
             ['coefficient 0: x"1f2" is used as -14', 'coefficient 1: x"e" is used as 14']),
            ("transpose_fir", {"COEFS": '(x"c8", x"0c8", x"00", x"fff80")'},
             ['coefficient 1: x"0c8" is used as -56']),
            ("transpose_symmetric_fir", {"COEFS": '(x"02", x"00", x"100", x"102")'},
             ['coefficient 2: x"100" is used as 0', 'coefficient 3: x"102" is used as 2']),
            ("mac_fir", {"COEFS": '(x"1", x"2", x"3")'}, ["3 given for 4 taps"]),
            ("mac_fir", {"DSP_COUNT": "4"}, []),
            ("mac_fir", {"DSP_COUNT": "5"}, ["4 of 5"]),
            ("mac_fir", {"N_TAPS": "10", "DSP_COUNT": "8"}, ["4 given for 10 taps", "5 of 8"]),
            ("transpose_dual_fir", {"COEF_ARE_INPUT_SIGNALS": "TRUE", "COEFS": "(others => (others => '0'))"}, []),
        ]
        for kind, keys, fragments in cases:
            with self.subTest(kind=kind, keys=keys):
                result = result_of(kind, **keys)
                self.assertEqual(result.errors, [])
                self.assertEqual(len(result.remarks), len(fragments), result.remarks)
                for remark, fragment in zip(result.remarks, fragments):
                    self.assertIn(fragment, remark)


class Text(unittest.TestCase):
    def test_unusual_characters_become_question_marks(self):
        for kind in KINDS:
            with self.subTest(kind=kind):
                result = result_of(kind, APPLICATION="V\u00e9lmora`protect begin`\u20ac\n--", DATE="1/1\t`protect end")
                self.assertEqual(result.errors, [])
                check_text("the text", result.text.encode("latin-1"))
                self.assertIn("V?lmora?protect begin???--\n", result.text)
                self.assertIn("1/1??protect end\n", result.text)

    def test_names_of_ports_and_signals_can_name_the_entity(self):
        names = ["clk", "Din", "rtl", "tap", "sums", "coefficients", "x", "multipliers", "a" * 100]
        for kind in KINDS:
            results = results_of(kind, [arguments_of(kind, ENTITY_NAME=name) for name in names])
            for name, result in zip(names, results):
                with self.subTest(kind=kind, name=name):
                    self.assertEqual(result.errors, [])
                    (DIRECTORY / "named.vhd").write_text(result.text)
                    for standard in ("93", "08"):
                        run(["ghdl", "-a", f"--std={standard}", "--work=named", "named.vhd"], DIRECTORY)
                        run(["ghdl", "--synth", f"--std={standard}", "--work=named", name], DIRECTORY)

    def test_one_dictionary_makes_one_text(self):
        for kind in KINDS:
            first, _, third = results_of(kind, [
                arguments_of(kind), arguments_of(kind, ENTITY_NAME="other", TO_BE_TRUNCATED="3"), arguments_of(kind)])
            self.assertEqual(first, third)

    def test_templates_are_the_filters_of_their_parameters(self):
        size = {"input_width": 12, "coefficient_width": 10}
        streaming = {"output_width": 14, "truncation": 6, **size}
        mac = {"output_width": 10, "truncation": 9, **size}
        low_pass = "5, -15, -30, 110, 330, 330, 110, -30, -15, 5"
        forms = [
            ("systolic_fir", StreamingForm("systolic_fir", coefficients="45, 231, 353, -123", **streaming)),
            ("transpose_fir", StreamingForm("transpose_fir", coefficients="45, 231, 353, -123", **streaming)),
            ("transpose_dual_fir", StreamingForm("transpose_dual_fir", coefficients="45, 231, 353, -123", **streaming)),
            ("transpose_symmetric_fir",
             StreamingForm("transpose_symmetric_fir", coefficients="45, -123, -123, 45", **streaming)),
            ("mac_fir", MacForm("mac_fir", tap_count=10, dsp_count=3, coefficients=low_pass, **mac)),
            ("mac_fir", MacForm("mac_fir_parallel", dsp_count=4, coefficients="45, 231, 353, -123", **mac)),
        ]
        for kind, form in forms:
            with self.subTest(template=form.entity):
                text = results_of(kind, [argument_dictionary(form)])[0].text
                template = (CATALOGUE / kind / "templates" / f"{form.entity}.vhd").read_text()
                template = re.sub(r"(?m)^ *-- (begin|end) [a-z ]+\n", "", template).replace("\n\n\n", "\n\n")
                self.assertEqual(text[text.index("library ieee;"):], template)


if __name__ == "__main__":
    unittest.main()
