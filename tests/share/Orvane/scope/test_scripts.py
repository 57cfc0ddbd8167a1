#!/usr/bin/env python3
"""Tests the scopes' generator scripts themselves: errors, remarks, trigger sets, names and templates."""

import dataclasses
import pathlib
import re
import sys
import tempfile
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "support"))

# pylint: disable=wrong-import-position
import generator
from hdl_rules import check_text
from hdl_tools import Ghdl, run
from parameter_sets import KINDS, StartupForm, argument_dictionary, scope_form, scope_sets

CATALOGUE = generator.ROOT / "share/velmora/Orvane"

SCRATCH = tempfile.TemporaryDirectory()
DIRECTORY = pathlib.Path(SCRATCH.name)

FORMS = {"scope": scope_form("good_name", ["1", "Ignore", "0"]),
         "startup_scope": StartupForm("good_name", trigger_line_count=2, trigger_values=("1", "0"))}


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


def results_of(kind, dictionaries):
    """The script's result for each dictionary; their texts stand for UTF-8, as in the program."""
    as_bytes = [{key: value.encode("utf-8").decode("latin-1") for key, value in each.items()} for each in dictionaries]
    return [Result(*answer) for answer in generator.generate(DIRECTORY / f"{kind}.py", as_bytes)]


def arguments_of(kind, **keys):
    """The arguments of a good scope, some of them replaced; keys are written without their %%."""
    arguments = argument_dictionary(FORMS[kind])
    for key, value in keys.items():
        assert f"%%{key}%%" in arguments
        arguments[f"%%{key}%%"] = value
    return arguments


def condition(text, signal):
    """What is assigned to the signal of a condition, without blanks."""
    code = re.sub(r"--[^\n]*|\s", "", text)
    return re.search(rf"{signal}<=(.*?);", code).group(1)


class Errors(unittest.TestCase):
    def expect_errors(self, result, *fragments):
        """One error for each fragment, in this order, and a text that is nothing but comment."""
        self.assertEqual(len(result.errors), len(fragments), result.errors)
        for error, fragment in zip(result.errors, fragments):
            self.assertIn(fragment, error)
        check_text("the text", result.text.encode("latin-1") + b"\n")
        lines = result.text.split("\n")
        self.assertEqual(len(lines), len(fragments))
        for line in lines:
            self.assertRegex(line, "^-- Generation failed: ")
        self.assertEqual(result.remarks, [])

    def test_entity_names(self):
        names = ["", "1a", "_a", "a_", "a__b", "a-b", "a b", "\\a\\", "a`protect begin", "sc\u00f6pe", "a\tb",
                 "x" * 201, "signal", "ENTITY", "default", "work", "Std", "IEEE", "std_logic", "Integer", "string",
                 "to_unsigned", "RISING_EDGE", "numeric_std", "clk", "Reset", "DATA_IN", "trig_in", "busy",
                 "triggered", "done", "rd_addr", "RD_DATA", "capture_depth", "CAPTURE_WIDTH", "input_line_count",
                 "trigger_line_count", "pre_trigger_samples"]
        own = {"scope": ["arm", "force_trigger", "window_count", "window_capture_length", "user_data_delay",
                         "store_trigger", "store_window", "sample_width", "multiple_trigger_level", "trigger_mode",
                         "capture_mode", "boolean"],
               "startup_scope": ["first_valid", "startup_trig_value"]}
        for kind in KINDS:
            tried = names + own[kind]
            results = results_of(kind, [arguments_of(kind, ENTITY_NAME=name) for name in tried])
            for name, result in zip(tried, results):
                with self.subTest(kind=kind, name=name):
                    self.expect_errors(result, "Entity name")

    def test_trigger_sets(self):
        cases = [
            ('0 => "01" 1 => "11"', "Trigger value"),
            ('0 = "01"', "Trigger value"),
            ("0 => 01", "Trigger value"),
            ('-1 => "01"', "Trigger value"),
            ('0 => "01",', "Trigger value"),
            ('0 => "01", 3 => "01"', "Trigger line count is 3"),
            ('0 => "01", 1 => "11", 0 => "00"', "two values"),
            ('0 => "01`"\u00e9', "Trigger value"),
        ]
        for text, fragment in cases:
            with self.subTest(text=text):
                result, = results_of("scope", [arguments_of("scope", BASIC_TRIGGER_VALUES=text)])
                self.expect_errors(result, fragment)

    def test_independent_errors_are_all_told(self):
        keys = {"ENTITY_NAME": "a b", "MULTIPLE_TRIGGER_LEVEL": "true", "BASIC_TRIGGER_VALUES": "x",
                "ADVANCED_TRIGGER_VALUES": "y"}
        result, = results_of("scope", [arguments_of("scope", **keys)])
        self.expect_errors(result, "Entity name", "Trigger value: x", "First level trigger value: y")

    def test_sets_that_are_not_in_use_do_not_matter(self):
        cases = [{"EDGE_TRIGGER_VALUES": "x", "ADVANCED_TRIGGER_VALUES": "x", "ADVANCED_EDGE_TRIGGER_VALUES": "x"},
                 {"EDGE_TRIGGER_VALUES": "x", "ADVANCED_EDGE_TRIGGER_VALUES": "x", "MULTIPLE_TRIGGER_LEVEL": "true"},
                 {"BASIC_TRIGGER_VALUES": "x", "ADVANCED_TRIGGER_VALUES": "x", "TRIGGER_MODE": '"basic_and_edges"'}]
        for result in results_of("scope", [arguments_of("scope", **keys) for keys in cases]):
            self.assertEqual((result.errors, result.remarks), ([], []))


class Sets(unittest.TestCase):
    def test_conditions(self):
        edge = {"TRIGGER_MODE": '"basic_and_edges"'}
        rising, falling = "(trig_now(0)andnottrig_before(0))", "(nottrig_now(1)andtrig_before(1))"
        cases = [
            ({"BASIC_TRIGGER_VALUES": '0 => "01", 1 => "11", 2 => "00"'}, ["trig_now(0)", "nottrig_now(2)"]),
            ({"BASIC_TRIGGER_VALUES": '(2=>"01")'}, ["trig_now(2)"]),
            ({"BASIC_TRIGGER_VALUES": '( OTHERS => "00" )'}, ["nottrig_now(0)", "nottrig_now(1)", "nottrig_now(2)"]),
            ({"BASIC_TRIGGER_VALUES": 'others => "01", 1 => "00"'}, ["trig_now(0)", "nottrig_now(1)", "trig_now(2)"]),
            ({"BASIC_TRIGGER_VALUES": '0 => "10", 1 => "001", 2 => ""'}, []),
            ({"BASIC_TRIGGER_VALUES": ""}, []),
            ({"BASIC_TRIGGER_VALUES": "()"}, []),
            ({"EDGE_TRIGGER_VALUES": '(others => "010")', **edge}, []),
            ({"EDGE_TRIGGER_VALUES": '0 => "110"', **edge}, [rising]),
            ({"EDGE_TRIGGER_VALUES": 'others => "000", 1 => "001"', **edge},
             ["nottrig_now(0)", "trig_now(1)", "nottrig_now(2)"]),
            ({"EDGE_TRIGGER_VALUES": '2 => "111", 1 => "100", 0 => "110"', **edge},
             [rising, falling, "(trig_now(2)xortrig_before(2))"]),
            ({"EDGE_TRIGGER_VALUES": '0 => "01", 1 => "101", 2 => "001"', **edge}, ["trig_now(2)"]),
        ]
        for keys, terms in cases:
            with self.subTest(keys=keys):
                result, = results_of("scope", [arguments_of("scope", **keys)])
                self.assertEqual((result.errors, result.remarks), ([], []))
                self.assertEqual(condition(result.text, "trigger_condition"), "and".join(terms) or "'1'")

    def test_first_level_has_its_own_set(self):
        keys = {"MULTIPLE_TRIGGER_LEVEL": "true", "ADVANCED_TRIGGER_VALUES": '1 => "00"'}
        result, = results_of("scope", [arguments_of("scope", **keys)])
        self.assertEqual(condition(result.text, "first_condition"), "nottrig_now(1)")
        result, = results_of("scope", [arguments_of("scope", ADVANCED_TRIGGER_VALUES='1 => "00"')])
        self.assertNotRegex(result.text, "first_(condition|seen|level)")


class Remarks(unittest.TestCase):
    def test_reduced_pre_trigger(self):
        for samples, depth, mode, is_told in (("2048", "2048", "pre_trigger_enable", True),
                                              ("2047", "2048", "pre_trigger_enable", False),
                                              ("2048", "4096", "pre_trigger_enable", False),
                                              ("2048", "2048", "multiple_windows", False)):
            with self.subTest(samples=samples, depth=depth, mode=mode):
                result, = results_of("scope", [arguments_of("scope", PRE_TRIGGER_SAMPLES=samples, CAPTURE_DEPTH=depth,
                                                            CAPTURE_MODE=f'"{mode}"')])
                self.assertEqual(result.errors, [])
                self.assertEqual(len(result.remarks), int(is_told))
                self.assertTrue(all("Pre-trigger samples" in remark and "2047" in remark for remark in result.remarks))


class Text(unittest.TestCase):
    def test_unusual_characters_become_question_marks(self):
        for kind in KINDS:
            with self.subTest(kind=kind):
                keys = {"APPLICATION": "V\u00e9lmora`protect begin`\u20ac\n--", "DATE": "1/1\t`protect end"}
                result, = results_of(kind, [arguments_of(kind, **keys)])
                self.assertEqual(result.errors, [])
                check_text("the text", result.text.encode("latin-1") + b"\n")
                self.assertIn("V?lmora?protect begin???--\n", result.text)
                self.assertFalse(result.text.endswith("\n"))

    def test_names_inside_the_architecture_can_name_the_entity(self):
        names = ["rtl", "memory", "position", "sample_t", "index_after", "control", "storage", "live", "scope",
                 "startup_scope", "my_scope", "scope_pkg", "Mixed_Case_7", "a", "x" * 200]
        for kind in KINDS:
            results = results_of(kind, [arguments_of(kind, ENTITY_NAME=name) for name in names])
            for name, result in zip(names, results):
                with self.subTest(kind=kind, name=name):
                    self.assertEqual(result.errors, [])
                    (DIRECTORY / "named.vhd").write_text(result.text)
                    for standard in ("93", "08"):
                        run(["ghdl", "-a", f"--std={standard}", "--work=named", "named.vhd"], DIRECTORY)
                        run(["ghdl", "--synth", f"--std={standard}", "--work=named", name], DIRECTORY)

    def test_two_scopes_share_a_library(self):
        for standard in ("93", "08"):
            ghdl = Ghdl(DIRECTORY / f"shared{standard}", standard)
            for kind in KINDS:
                for name in ("first", "second"):
                    result, = results_of(kind, [arguments_of(kind, ENTITY_NAME=f"{name}_{kind}")])
                    (ghdl.directory / f"{name}_{kind}.vhd").write_text(result.text)
                    ghdl.analyse([f"{name}_{kind}.vhd"])
            for kind in KINDS:
                self.assertIn("found RAM", ghdl.to_verilog(f"first_{kind}")[1])

    def test_one_dictionary_makes_one_text(self):
        for kind in KINDS:
            first, _, third = results_of(kind, [
                arguments_of(kind), arguments_of(kind, ENTITY_NAME="other", CAPTURE_DEPTH="4096"), arguments_of(kind)])
            self.assertEqual(first, third)

    def test_templates_are_the_scopes_of_their_parameters(self):
        table = ["1", "0", "Rising edge", "Both edges"], ["Ignore", "1", "Ignore", "Ignore"]
        forms = {
            "scope": scope_form("scope", *table, input_line_count=8, pre_trigger_samples=1024,
                                trigger_mode="Basic & Edges", store_trigger_pulse="Enable"),
            "startup_scope": StartupForm("startup_scope", 8, "2K", 100, 3, ("1", "0", "0")),
        }
        for kind, form in forms.items():
            with self.subTest(kind=kind):
                result, = results_of(kind, [argument_dictionary(form)])
                template = (CATALOGUE / kind / "templates" / f"{kind}.vhd").read_text()
                template = re.sub(r"(?m)^ *-- (begin|end) [a-z ]+\n", "", template).rstrip("\n")
                self.assertEqual(result.text[result.text.index("-- The parameters as constants."):], template)

    def test_largest_scope_is_quick(self):
        largest, = [each for each in scope_sets() if each.name == "largest"]
        start = time.monotonic()
        results_of("scope", [largest.arguments()] * 3)
        self.assertLess(time.monotonic() - start, 3.0)


if __name__ == "__main__":
    unittest.main()
