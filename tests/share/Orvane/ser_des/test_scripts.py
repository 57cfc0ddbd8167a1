#!/usr/bin/env python3
"""Checks the generator script of the IP "SER/DES" itself: errors, remarks, names and template."""

import pathlib
import re
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import script_tests
from generator import CATALOGUE
from hdl_rules import without_attributes
from hdl_tools import synthesise, synthesised_module
from pages import example
from parameter_sets import SerDesForm, equals_own_rotation
from structure import check_constraints

IP = "ser_des"
GOOD = SerDesForm("good_name", prefix="P", data_size=4, ser_count=2, des_count=2, ser_training_value="0011",
            des_training_value="0011", ser_locations=("01P", "02N"), des_locations=("03P", "04N"), ser_output_delays=(5, 63))
NO_DES = {"DES_COUNT": "0", "DES_LOCATIONS": '(others => "XXX")', "DES_INPUT_DELAY_LINE": "()"}
LABELS = {"SER_LOCATIONS": r"Location \(SER parameters\) ", "DES_LOCATIONS": r"Location \(DES parameters\) ",
          "SER_OUTPUT_DELAY_LINE": r"Output delay line \(SER parameters\) ",
          "DES_INPUT_DELAY_LINE": r"Input delay line \(DES parameters\) "}
BAD_AGGREGATES = [
    '(0 => "{0}")', '(1 => "{0}", 2 => "{0}")', '(0 => "{0}", 0 => "{0}")', '(0 => "{0}", 1 => "0")', '(others => "{0}")',
    "()", "",
    '(0 => "{0}", 1 => "{0}"); constant x : integer := 0', '(0 => "{0}", 1 => "{0}"\u00e9)']

PAGE_BENCH = """
library ieee;
use ieee.std_logic_1164.all;

use work.E_pkg.all;
{uses}

entity page is
end entity page;

architecture test of page is
  {signals}

  signal reset, ser_training, des_training : std_logic := '1';
  signal word_clk, bit_clk, des_locked     : std_logic := '0';
  signal words_to_send   : std_logic_vector(P_SER_COUNT * P_DATA_SIZE - 1 downto 0) := "10100101";
  signal received_words  : std_logic_vector(P_DES_COUNT * P_DATA_SIZE - 1 downto 0);
  signal ser_out, des_in : std_logic_vector(P_SER_COUNT - 1 downto 0);
begin
  {instance}

  bit_clk      <= not bit_clk after 1 ns when now < 1 us;
  word_clk     <= not word_clk after P_DATA_SIZE * 1 ns when now < 1 us;
  reset        <= '0' after 30 ns;
  des_in       <= transport ser_out after 3.5 ns;
  des_training <= '0' when des_locked = '1' and rising_edge(word_clk);
  ser_training <= des_training;

  check : process
  begin
    wait for 990 ns;
    assert des_training = '0' and received_words = words_to_send report "the words do not arrive" severity failure;
    wait;
  end process check;
end architecture test;
"""


def both_trainings(value):
    return {f"{side}_TRAINING_VALUE": f'"{value}"' for side in ("SER", "DES")}


class SerDesTests(script_tests.TextTests):
    good_forms = {IP: GOOD}
    used_names = {IP: ["Word_Clk", "PAD_INPUT_DELAY", "P_data_size", "p_location_array"]}
    template_forms = {(IP, IP): SerDesForm(
        IP, prefix="LINK", word_clock=125, data_size=8, ser_count=2, des_count=2, ser_training_value="11010000",
        des_training_value="11010000",
        ser_locations=("01P", "02P"), ser_output_delays=(0, 7), des_locations=("03P", "04P"))}

    def expect_all(self, cases):
        """The errors' patterns for each case, a pair of arguments and patterns."""
        for (keys, patterns), result in zip(cases, self.results(IP, [keys for keys, _ in cases])):
            with self.subTest(keys=keys):
                self.expect_errors(result, *patterns)

    def test_prefixes(self):
        self.expect_all([({"PREFIX": prefix}, ["^Parameter's prefix "])
                         for prefix in ["1a", "a__b", "a-b", "", "P`protect end"]])
        for prefix in ["signal", "work", "x" * 200, "good_name", "LINK", "ser_des"]:
            with self.subTest(prefix=prefix):
                self.analysed("prefix", "93", self.good_text(IP, PREFIX=prefix))

    def test_training_values(self):
        cases = []
        for value, pattern in [("01x1", "character other"), ("\u00e90", "character other"), ("01101", "has 5 digits: write 4"),
                               ("", "has 0 digits: write 4")]:
            des = [rf"^Training value \(DES parameters\) .*{pattern}"]
            both = both_trainings(value)
            cases += [(both, des), ({**both, **NO_DES}, des), ({"DES_TRAINING_VALUE": f'"{value}"'}, des),
                      ({"SER_TRAINING_VALUE": f'"{value}"'}, [des[0].replace("DES", "SER")])]
        self.expect_all(cases)

    def test_each_side_has_its_own_training_value(self):
        text = self.good_text(IP, SER_TRAINING_VALUE='"0001"', DES_TRAINING_VALUE='"0111"')
        for side, value in (("SER", "0001"), ("DES", "0111")):
            self.assertRegex(text, rf'constant P_{side}_TRAINING_VALUE .*"{value}";')

    def test_aggregates(self):
        for key, label in LABELS.items():
            good = "01P" if "LOCATION" in key else "00"
            other = next(each for each in LABELS if each[:3] == key[:3] and each != key)
            self.expect_all([({key: aggregate.replace("{0}", good)}, [f"^{label}"]) for aggregate in BAD_AGGREGATES]
                            + [({f"{key[:3]}_COUNT": "0", other: "()"}, [f"^{label}"])])

    def test_entries_in_another_order_go_to_their_lines(self):
        text = self.good_text(IP, SER_LOCATIONS='(1 => "07N", 0 => "15P")')
        self.assertIn('attribute pad_location of ser_out : signal is "15P,07N";', text)
        self.assertIn('0 => "15P", 1 => "07N"', text)

    def test_every_problem_is_reported(self):
        self.expect_all([({"PREFIX": "P_", "ENTITY_NAME": "in", "SER_LOCATIONS": "()", **both_trainings("01")},
                          ['^Entity name "in"', "^Parameter's prefix", "^Training value", "^Location"])])

    def test_missing_location_is_remarked(self):
        for side in ("SER", "DES"):
            result, = self.results(IP, [{f"{side}_LOCATIONS": '(0 => "05P", 1 => "")'}])
            self.expect_remarks(result, rf"^Location \({side} parameters\): {side}1 has none")
            self.assertRegex(result.text, r'attribute pad_location of \w+ : signal is "05P,XXX";')

    def test_pads_that_differential_lines_cannot_have_are_remarked(self):
        both, single = {"SER_LOCATIONS": '(0 => "01P", 1 => "01N")'}, {"SER_DIFFERENTIAL": '"False"'}
        pair = r"^Location \(SER parameters\): SER0 and SER1 lie on the pads of the pair 01"
        across = r"^Location \(DES parameters\): SER0 and DES1 lie on the pads of the pair 01"
        cases = [
            (both, [pair]), ({**both, **single}, []), ({"DES_LOCATIONS": '(0 => "03P", 1 => "01N")'}, [across]),
            ({"DES_LOCATIONS": '(0 => "03P", 1 => "01N")', **single}, [across]),
            ({"DES_LOCATIONS": '(0 => "03P", 1 => "")', "SER_LOCATIONS": '(0 => "", 1 => "01N")'},
             ["^Location .SER parameters.: SER0 has none", "^Location .DES parameters.: DES1 has none"]),
            ({"SER_PADTYPE": '"SSTL_2.5V_II"'}, [r"^Pad type \(SER parameters\): SSTL_2.5V_II has one pin"]),
            ({"SER_PADTYPE": '"BLVDS_2.5V"'}, []), ({"DES_PADTYPE": '"LVTTL_3.3V"', **NO_DES}, []),
            ({"SER_PADTYPE": '"LVCMOS_2.5V"', **single}, [])]
        for (keys, patterns), result in zip(cases, self.results(IP, [keys for keys, _ in cases])):
            with self.subTest(keys=keys):
                self.expect_remarks(result, *patterns)

    def test_training_value_that_cannot_align_is_remarked_once(self):
        for size in (3, 4):
            trainings = [format(number, f"0{size}b") for number in range(2**size)]
            cases = [{"DATA_SIZE": str(size), **both_trainings(training)} for training in trainings]
            with_des, without_des = self.results(IP, cases), self.results(IP, [{**each, **NO_DES} for each in cases])
            for training, result, no_remark in zip(trainings, with_des, without_des):
                with self.subTest(training=training):
                    self.expect_remarks(result, *["^Training value"] * equals_own_rotation(training))
                    self.expect_remarks(no_remark)

    def test_awkward_texts_stay_in_their_strings(self):
        text = self.good_text(IP, DES_PADTYPE='"A"B`protect begin"', SER_PADTYPE='"LINK ser_des"')
        self.assertIn('attribute pad_type of des_in : signal is "A""B?protect begin";', text)
        self.assertIn('attribute pad_type of ser_out : signal is "LINK ser_des";', text)
        self.analysed("awkward", "93", text)

    def test_examples_of_the_page_run(self):
        """Both interfaces of the package example, in a bench around the one that the page instantiates, train a link."""
        texts = [self.good_text(IP, ENTITY_NAME=name, PREFIX=prefix)
                 for name, prefix in (("E", "P"), ("camera", "CAM"), ("display", "DISP"))]
        uses, signals = example(IP, "packages").split("\n\n")
        bench = PAGE_BENCH.format(uses=uses, signals=signals, instance=example(IP, "instance"))
        ghdl = self.analysed("page", "08", *texts, bench)
        self.assertEqual(ghdl("-r", "page", "--ieee-asserts=disable-at-0"), "")

    def test_constraints_of_the_page_cover_what_crosses(self):
        ghdl = self.analysed("constraints", "08", without_attributes(self.good_text(IP)))
        synthesise(ghdl, "good_name", ["proc", "flatten", "opt", "opt_clean", "write_json netlist.json"])
        check_constraints(example(IP, "constraints"), synthesised_module(ghdl, "good_name"))

    def test_description_page_names_what_the_text_offers(self):
        text = self.good_text(IP)
        page = (CATALOGUE / IP / "description.html").read_text()
        entity = re.search(r"(?ms)^entity .*?^end entity", text).group(0)
        offered = (re.findall(r"(?m)^ *(?:constant|type) (\w+)", text.split("end package")[0])
                   + re.findall(r"(?m)^ *(\w+) *: (?:in|out) ", entity) + re.findall(r"attribute (\w+) :", entity))
        self.assertGreater(len(offered), 40)
        self.assertEqual([name for name in offered if f"<code>{name}</code>" not in page], [])


if __name__ == "__main__":
    unittest.main()
