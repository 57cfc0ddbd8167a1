#!/usr/bin/env python3
"""Tests the scopes' generator scripts themselves: errors, remarks, trigger sets, names and templates."""

import pathlib
import re
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import script_tests
from parameter_sets import StartupForm, scope_form

TABLE = ["1", "0", "Rising edge", "Both edges"], ["Ignore", "1", "Ignore", "Ignore"]
EDGE_MODE = {"TRIGGER_MODE": '"basic_and_edges"'}
TWO_LEVELS = {"MULTIPLE_TRIGGER_LEVEL": "true"}

BAD_SETS = [
    ('0 => "01" 1 => "11"', "^Trigger value: .* is not of the form"),
    ('0 => "01`"\u00e9', "^Trigger value: .* is not of the form"),
    ('0 => "01", 3 => "01"', "Trigger line count is 3"),
    ('0 => "01", 1 => "11", 0 => "00"', "two values for line 0"),
]
RISING, FALLING = "(trig_now(0)andnottrig_before(0))", "(nottrig_now(1)andtrig_before(1))"
BASIC_SETS = [
    ('0 => "01", 1 => "11", 2 => "00"', ["trig_now(0)", "nottrig_now(2)"]),
    ('(OTHERS => "01", 1 => "00")', ["trig_now(0)", "nottrig_now(1)", "trig_now(2)"]),
    ('0 => "10", 1 => "001", 2 => ""', []),
    ("", []),
]
EDGE_SETS = [
    ('2 => "111", 1 => "100", 0 => "110"', [RISING, FALLING, "(trig_now(2)xortrig_before(2))"]),
    ('0 => "01", 1 => "101", 2 => "001"', ["trig_now(2)"]),
    ('(others => "010")', []),
]


def condition(text, signal):
    """What is assigned to the signal of a condition, without blanks."""
    return re.search(rf"{signal}<=(.*?);", re.sub(r"--[^\n]*|\s", "", text)).group(1)


class ScopeTests(script_tests.TextTests):
    good_forms = {"scope": scope_form("good_name", ["1", "Ignore", "0"]),
                  "startup_scope": StartupForm("good_name", trigger_line_count=2, trigger_values=("1", "0"))}
    used_names = {"scope": ["clk", "RD_DATA", "capture_mode"], "startup_scope": ["first_valid", "startup_trig_value"]}
    template_forms = {
        ("scope", "scope"): scope_form("scope", *TABLE, input_line_count=8, pre_trigger_samples=1024,
                                       trigger_mode="Basic & Edges", store_trigger_pulse="Enable"),
        ("startup_scope", "startup_scope"): StartupForm("startup_scope", 8, "2K", 100, 3, ("1", "0", "0"))}

    def test_bad_trigger_sets(self):
        for (text, pattern), result in zip(BAD_SETS, self.results("scope", [{"BASIC_TRIGGER_VALUES": text}
                                                                            for text, _ in BAD_SETS])):
            with self.subTest(text=text):
                self.expect_errors(result, pattern)

    def test_independent_errors_are_all_told(self):
        result, = self.results("scope", [{"ENTITY_NAME": "a b", "BASIC_TRIGGER_VALUES": "x", "ADVANCED_TRIGGER_VALUES": "y",
                                          **TWO_LEVELS}])
        self.expect_errors(result, "Entity name", "Trigger value: x", "First level trigger value: y")

    def test_sets_that_are_not_in_use_do_not_matter(self):
        basic, edge, first, first_edge = ({f"{key}_TRIGGER_VALUES": "x"}
                                          for key in ("BASIC", "EDGE", "ADVANCED", "ADVANCED_EDGE"))
        for keys in ({**edge, **first, **first_edge}, {**edge, **first_edge, **TWO_LEVELS}, {**basic, **first, **EDGE_MODE}):
            self.good_text("scope", **keys)

    def test_conditions(self):
        cases = [({"BASIC_TRIGGER_VALUES": text}, terms) for text, terms in BASIC_SETS]
        cases += [({"EDGE_TRIGGER_VALUES": text, **EDGE_MODE}, terms) for text, terms in EDGE_SETS]
        for (keys, terms), result in zip(cases, self.results("scope", [keys for keys, _ in cases])):
            with self.subTest(keys=keys):
                self.expect_remarks(result)
                self.assertEqual(condition(result.text, "trigger_condition"), "and".join(terms) or "'1'")

    def test_first_level_has_its_own_set(self):
        text = self.good_text("scope", ADVANCED_TRIGGER_VALUES='1 => "00"', **TWO_LEVELS)
        self.assertEqual(condition(text, "first_condition"), "nottrig_now(1)")
        text = self.good_text("scope", ADVANCED_TRIGGER_VALUES='1 => "00"')
        self.assertNotRegex(text, "first_(condition|seen|level)")

    def test_reduced_pre_trigger_is_remarked(self):
        for samples, mode, remarks in (("2048", "pre_trigger_enable", ["Pre-trigger samples: 2047 taken"]),
                                       ("2047", "pre_trigger_enable", []), ("2048", "multiple_windows", [])):
            with self.subTest(samples=samples, mode=mode):
                result, = self.results("scope", [{"PRE_TRIGGER_SAMPLES": samples, "CAPTURE_MODE": f'"{mode}"'}])
                self.expect_remarks(result, *remarks)


if __name__ == "__main__":
    unittest.main()
