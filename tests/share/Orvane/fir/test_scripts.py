#!/usr/bin/env python3
"""Checks the filters' generator scripts themselves: errors, remarks, names and templates."""

import dataclasses
import pathlib
import re
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import pages
import script_tests
from parameter_sets import KINDS, MacForm, StreamingForm
from program import arguments_of

FOUR_TAPS = "45, 231, 353, -123"
STREAMING_SIZE = {"input_width": 12, "output_width": 14, "coefficient_width": 10, "truncation": 6}
MAC_SIZE = {"input_width": 12, "output_width": 10, "coefficient_width": 10, "truncation": 9}
SYMMETRIC = "transpose_symmetric_fir"
PORT = {"COEF_ARE_INPUT_SIGNALS": "TRUE", "COEFS": "(others => (others => '0'))"}

# What the errors of a filter with four taps hold: (IPs, arguments, parts of the errors).
ERRORS = [
    (KINDS, {"COEFS": "(  )"}, ["no hexadecimal literal"]),
    (KINDS, {"COEFS": '(b"01", x"0g", x"02"; x"", x"01"\u00e9`)'},
     ['coefficient 0 (b"01")', 'coefficient 1 (x"0g")', 'coefficient 2 (x"02"; x"")', 'coefficient 3 (x"01"??)']),
    (KINDS[:-1], {"COEFS": '(x"01", x"02", x"03", x"02", x"01")'}, ["5 given for a filter of 4 taps"]),
    (KINDS[:-1], {"COEFS": '(x"01", x"02", x"01")'}, ["3 given for a filter of 4 taps"]),
    (["mac_fir"], {"COEFS": '(x"01", x"02", x"03", x"02", x"01")'}, ["4 is less than the 5 coefficients given"]),
    ([SYMMETRIC], {"COEFS": '(x"01", x"02", x"03", x"01")'}, ['1 (x"02" = 2) and coefficient 2 (x"03" = 3)']),
    ([SYMMETRIC], {"COEFS": '(x"01", x"02", x"zz", x"03")'}, ["coefficient 2"]),
    ([SYMMETRIC], {"COEFS": '(x"01", x"02", x"03", x"04")', "N_TAPS": "6"}, ["Coefficients: 4"]),
    ([SYMMETRIC], {**PORT, "N_TAPS": "7"}, ["Coefficient count"]),
    ([SYMMETRIC], {"ENTITY_NAME": "a b", "N_TAPS": "5", "COEFS": '(x"1", y)'},
     ["Entity name", "coefficient 1 (y)", "Coefficients: 2", "Coefficient count"]),
]
REMARKS = [
    (["systolic_fir"], {"COEFS": '(x"1f2", x"e", x"ffe", X"7F")'},
     ['coefficient 0: x"1f2" is used as -14', 'coefficient 1: x"e" is used as 14']),
    ([SYMMETRIC], {"COEFS": '(x"02", x"00", x"100", x"102")'},
     ['coefficient 2: x"100" is used as 0', 'coefficient 3: x"102" is used as 2']),
    ([SYMMETRIC], {"COEF_WIDTH": "18", "INPUT_DATA_WIDTH": "17"}, []),
    ([SYMMETRIC], {"COEF_WIDTH": "18", "INPUT_DATA_WIDTH": "18"}, ["Input Data width: with 18 bits"]),
    ([SYMMETRIC], {"COEF_WIDTH": "19", "INPUT_DATA_WIDTH": "18"}, ["Coefficient width: with 19 bits"]),
    (["mac_fir"], {"DSP_COUNT": "4"}, []),
    (["mac_fir"], {"N_TAPS": "10", "DSP_COUNT": "8"}, ["4 given for 10 taps", "5 of 8"]),
]


def good_form(kind):
    return (MacForm if kind == "mac_fir" else StreamingForm)("good_name", coefficients="1, 2, 2, 1")


class FirTests(script_tests.TextTests):
    last_line_end = "\n"
    good_forms = {kind: good_form(kind) for kind in KINDS}
    template_forms = {
        **{(kind, kind): StreamingForm(kind, coefficients=FOUR_TAPS, **STREAMING_SIZE) for kind in KINDS[:3]},
        (SYMMETRIC, SYMMETRIC): StreamingForm(SYMMETRIC, coefficients="45, -123, -123, 45", **STREAMING_SIZE),
        ("mac_fir", "mac_fir"): MacForm("mac_fir", tap_count=10, dsp_count=3, **MAC_SIZE,
                                        coefficients="5, -15, -30, 110, 330, 330, 110, -30, -15, 5"),
        ("mac_fir", "mac_fir_parallel"): MacForm("mac_fir_parallel", dsp_count=4, coefficients=FOUR_TAPS, **MAC_SIZE),
    }

    def expect(self, cases, expectation):
        for kind in KINDS:
            chosen = [(keys, parts) for kinds, keys, parts in cases if kind in kinds]
            aggregate = "COEFS" if kind == "mac_fir" else "COEFS_PKG_HEXA_CONSTANT"
            results = self.results(kind, [{aggregate if key == "COEFS" else key: value for key, value in keys.items()}
                                          for keys, _ in chosen])
            for (keys, parts), result in zip(chosen, results):
                with self.subTest(kind=kind, keys=keys):
                    expectation(result, *map(re.escape, parts))

    def test_instances_of_the_pages(self):
        """They are of the designs that the templates are."""
        for kind in KINDS:
            instance = pages.example(kind, "instance")
            name = re.search(r"work\.(\w+)", instance).group(1)
            form = dataclasses.replace(self.template_forms[kind, kind], entity=name)
            result, = self.scripts[kind].results(arguments_of(kind, [form]))
            for standard in script_tests.STANDARDS:
                pages.check_instance(self.analysed(f"page_{kind}", standard, result.text), instance, result.text)

    def test_errors(self):
        self.expect(ERRORS, self.expect_errors)

    def test_remarks(self):
        self.expect(REMARKS, self.expect_remarks)


if __name__ == "__main__":
    unittest.main()
