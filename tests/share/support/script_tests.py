"""Tests that the generator script of every IP has to pass."""

import pathlib
import re
import tempfile
import unittest

from generator import CATALOGUE, Script
from hdl_rules import check_text, without_attributes
from hdl_tools import Ghdl
from program import arguments_of

STANDARDS = ("93", "08")

# Entity names that no IP takes, by what the error says.
BAD_NAMES = {
    "is empty": [""],
    "not allowed": ["a b", "a\n", "a`protect begin", "caf\u00e9"],
    "begin with a letter": ["_a"],
    "underscore": ["a_", "a__b"],
    "use at most": ["x" * 201],
    "reserved word": ["Entity", "protected"],
    "library": ["Std"],
    "standard package": ["STRING", "std_logic_1164", "resize"],
}
GOOD_NAMES = ["E", "tb", "Mixed_Case_7", "x" * 200]


def without_marks(template):
    """The template without the marks of its blocks."""
    return re.sub(r"(?m)^ *-- (begin|end) [a-z ]+\n", "", template).replace("\n\n\n", "\n\n")


class NameTests(unittest.TestCase):
    """A family derives from it and tells of its IPs the arguments of a good design, and names that these use themselves."""

    good = {}
    used_names = {}

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.work = pathlib.Path(folder.name)
        cls.scripts = {ip: Script(ip, cls.work) for ip in cls.good}

    def results(self, ip, cases):
        """The results for the good design with some arguments replaced, each case told by keys without their %%."""
        dictionaries = []
        for keys in cases:
            changed = {f"%%{key}%%": value for key, value in keys.items()}
            self.assertLessEqual(set(changed), {*self.good[ip], "%%APPLICATION%%"})
            dictionaries.append({**self.good[ip], **changed})
        return self.scripts[ip].results(dictionaries)

    def named(self, ip, names):
        """(name, result) for each entity name."""
        return zip(names, self.results(ip, [{"ENTITY_NAME": name} for name in names]))

    def expect_errors(self, result, *patterns):
        """One error for each pattern, in this order, and nothing that could be taken for a design."""
        self.assertEqual(len(result.errors), len(patterns), result.errors)
        for error, pattern in zip(result.errors, patterns):
            self.assertRegex(error, rf"{pattern}.*\.$")
        if result.text != {}:
            check_text("the text", result.text.encode("latin-1") + b"\n")
            self.assertEqual(result.text.splitlines(), [f"-- Generation failed: {error}" for error in result.errors])
        self.assertEqual(result.remarks, [])

    def expect_remarks(self, result, *patterns):
        self.assertEqual((result.errors, len(result.remarks)), ([], len(patterns)), result.remarks)
        for remark, pattern in zip(result.remarks, patterns):
            self.assertRegex(remark, pattern)

    def test_bad_entity_names(self):
        for ip in self.good:
            used_names = self.used_names.get(ip, [])
            for reason, names in {**BAD_NAMES, "something else": used_names}.items():
                for name, result in self.named(ip, names):
                    with self.subTest(ip=ip, name=name):
                        self.expect_errors(result, rf"^Entity name .*{reason}")


class TextTests(NameTests):
    """The same for a script of a single text, with a form of a good design, and forms whose designs the templates are."""

    good_forms = {}
    template_forms = {}  # (IP, name of the template): form
    last_line_end = ""  # the program ends the last line itself

    @classmethod
    def setUpClass(cls):
        cls.good = {ip: arguments_of(ip, [form])[0] for ip, form in cls.good_forms.items()}
        super().setUpClass()

    def analysed(self, library, standard, *texts):
        ghdl = Ghdl(self.work / f"{library[:40]}_{standard}", standard)
        (ghdl.directory / "text.vhd").write_text("\n".join(texts))
        ghdl("-a", "-Wno-hide", "text.vhd")
        return ghdl

    def good_text(self, ip, **keys):
        result, = self.results(ip, [keys])
        self.assertEqual((result.errors, result.remarks), ([], []))
        return result.text

    def test_good_entity_names(self):
        """Names inside the architecture can name the entity, and all these designs share a library."""
        for (ip, template) in self.template_forms:
            architecture = (CATALOGUE / ip / f"templates/{template}.vhd").read_text().split("\narchitecture ")[1]
            inside = dict(re.findall(r"(?m)^ *(signal |constant |variable |function |)(\w+) +:(?!=)", architecture))
            self.assertGreater(len(inside), 2)  # one name of each kind
            names = {name for name in inside.values() if "LINK" not in name} | {template, f"my_{template}", *GOOD_NAMES}
            texts = []
            for name, result in self.named(ip, sorted(names)):
                with self.subTest(ip=ip, name=name):
                    self.expect_remarks(result)
                    texts.append(result.text)
            self.analysed(template, "93", *texts)
            ghdl = self.analysed(template, "08", *map(without_attributes, texts))
            for name in names:
                ghdl.to_verilog(name)

    def test_unusual_characters_become_question_marks(self):
        awkward = "V\u00e9lmora\t`protect begin`\u20ac\n--"
        for ip in self.good:
            with self.subTest(ip=ip):
                text = self.good_text(ip, APPLICATION=awkward, DATE=awkward)
                self.assertEqual(text, text.rstrip("\n") + self.last_line_end)
                check_text("the text", text.rstrip("\n").encode("latin-1") + b"\n")
                self.assertIn("V?lmora??protect begin???--\n", text)

    def test_templates_are_the_designs_of_their_parameters(self):
        """Whatever was generated before."""
        for (ip, template), form in self.template_forms.items():
            with self.subTest(template=template):
                _, result = self.scripts[ip].results([self.good[ip], *arguments_of(ip, [form])])
                lines = (CATALOGUE / ip / f"templates/{template}.vhd").read_text()
                self.assertEqual(result.text.split(f"-- {'=' * 70}\n")[2].strip("\n"), without_marks(lines).strip("\n"))
