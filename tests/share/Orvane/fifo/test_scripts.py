#!/usr/bin/env python3
"""Tests the FIFO's generator script itself: errors, names, template, and the example of its page."""

import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import script_tests
from pages import check_instance, example
from parameter_sets import REGISTERED, FifoForm


class FifoTests(script_tests.TextTests):
    good_forms = {"fifo": FifoForm("good_name")}
    used_names = {"fifo": ["clk", "RD_DATA", "level"]}
    template_forms = {("fifo", "fifo"): FifoForm("fifo", 8, 100, REGISTERED, 80, 20)}

    def test_levels_that_no_flag_can_have(self):
        cases = [({"ALMOST_FULL": "17"}, "Almost full from 17 is never reached .* 16 at most"),
                 ({"ALMOST_EMPTY": "16"}, "Almost empty up to 16 is always reached .* 15 at most")]
        for (_, pattern), result in zip(cases, self.results("fifo", [keys for keys, _ in cases])):
            self.expect_errors(result, pattern)

    def test_example_of_the_page(self):
        text = self.good_text("fifo")
        check_instance(self.analysed("page", "08", text), example("fifo", "instance").replace("work.E", "work.good_name")
                       .replace("W - 1", "7"), text)


if __name__ == "__main__":
    unittest.main()
