#!/usr/bin/env python3
"""Gives a catalogue IPs whose form.json is wrong or odd, and compares what the program and the schema say of each.

    described_forms.py VELMORA_GENERATE SCHEMA CATALOGUE
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile

import jsonschema

PROGRAM, SCHEMA, CATALOGUE = sys.argv[1:]
VALIDATOR = jsonschema.Draft202012Validator(json.loads(pathlib.Path(SCHEMA).read_text(encoding='utf-8')))

GOOD = r'''{
  "$schema": "../../form.schema.json",
  "title": "Generating",
  "result": "files",
  "rows": [
    {"key": "Entity", "kind": "text", "label": "Entity name", "argument": "%%ENTITY_NAME%%", "required": "No name!"},
    {"key": "Almost", "kind": "number", "label": "Almost", "minimum": -2147483648, "maximum": 2147483647, "argument": "%%ALMOST%%",
      "enabled": {"key": "Mode", "is": ["R & D"]}},
    {"section": "Storage", "rows": [
      {"key": "Mode", "kind": "choice", "label": "Mode", "items": [{"text": "R & D", "value": "'1'"}, {"text": "<b>", "value": ""}],
        "reset": 1.0, "argument": "%%MODE%%"},
      {"key": "Rate", "kind": "decimal", "label": "Rate", "minimum": 1, "maximum": 5e2, "decimals": 1, "step": 0.5, "argument": "%%RATE-1%%",
        "help": "Two\nlines."},
      {"key": "Width", "kind": "number", "label": "Width", "minimum": 1, "maximum": 32, "argument": "%%WIDTH%%"},
      {"key": "List", "kind": "coefficients", "label": "List", "width": "Width", "reset": "1, 2", "required": "None!", "argument": "%%LIST%%"}
    ]},
    {"key": "Lines", "kind": "table", "count": "Width", "argument": "%%LINES%%", "columns": [
      {"title": "Name", "kind": "text", "reset": "\u00e9", "required": "No name!"},
      {"title": "Access", "kind": "choice", "items": [{"text": "RW", "value": "rw"}]},
      {"title": "Share", "kind": "decimal", "minimum": 0, "maximum": 1, "decimals": 2}
    ]}
  ]
}
'''

# What is replaced by what in the good form, and what the error says; it stands where the replacement begins unless a line is given.
# The schema refuses the same, except for what is behind: what only the whole form or the text of the file tells.
SCHEMA_CASES = [
    ('"title": "Generating",', '', "Member 'title' of the form is missing", 1),
    ('"title": "Generating"', '"title": ""', 'not empty'),
    ('"title": "Generating"', '"title": 5', "'title' of the form should be a text"),
    ('"files"', '"file "', "'result' of the form should be file or files"),
    ('"result"', '"extra": null, "result"', "Unknown member 'extra' of the form"),
    ('"key": "Almost", "kind"', '"kind"', "Member 'key'"),
    ('"key": "Almost"', '"key": "2nd"', "'key' of the row should be"),
    ('"key": "Almost"', '"key": "name"', "'key' of the row should be"),
    ('"key": "Almost"', '"key": "Almost\\n"', "'key' of the row should be"),
    ('"key": "Almost"', '"key": "' + 65 * 'A' + '"', "'key' of the row should be"),
    ('"kind": "text", "label"', '"kind": "choice", "items": [{"text": "a", "value": "b"}], "label"', "'kind' of the row 'Entity'"),
    ('"kind": "decimal", "label"', '"kind": "float", "label"', "'kind' of the row 'Rate' should be text, number"),
    ('"label": "Almost", ', '', "'label' of the row 'Almost' is missing"),
    ('"label": "Almost"', '"lable": "Almost"', "'label' of the row 'Almost' is missing"),
    ('"minimum": -2147483648', '"minimum": -2147483649', 'a whole number from -2147483648'),
    ('"maximum": 2147483647', '"maximum": 1.5', 'a whole number from -2147483648'),
    ('"maximum": 2147483647', '"maximum": true', 'a whole number from'),
    ('"argument": "%%ALMOST%%"', '"argument": "%%A\'%%"', "'argument' of the row 'Almost' should be"),
    ('"argument": "%%ALMOST%%"', '"argument": "%%DATE%%"', "'argument' of the row 'Almost' should be"),
    ('"argument": "%%ALMOST%%"', '"required": "No!", "argument": "%%ALMOST%%"', "Unknown member 'required' of the row 'Almost'"),
    ('"enabled": {"key": "Mode", ', '"enabled": {', "Member 'key' of 'enabled' of the row 'Almost' is missing"),
    ('["R & D"]', '[]', 'a list of 1 to 1000 elements'),
    ('"section": "Storage", ', '"section": "Storage", "key": "Storage", ', "Unknown member 'key' of the section 'Storage'"),
    ('{"text": "<b>", "value": ""}', '"<b>"', 'An object should stand here: an item of'),
    (', "value": ""', '', "Member 'value'"),
    ('"reset": 1.0', '"reset": -1', 'a whole number from 0 to 1'),
    ('"decimals": 1, "step"', '"step"', "Member 'decimals' of the row 'Rate' is missing"),
    ('"maximum": 5e2', '"maximum": 5e9', 'a number from 1.0 to 1000000000.0'),
    ('"Two\\nlines."', '"Two\\tparts."', 'a text without control characters'),
    ('"label": "Width"', '"label": "' + 1001 * '\u00e9' + '"', 'at most 1000 characters'),
    ('"width": "Width", ', '', "Member 'width' of the row 'List' is missing"),
    ('"key": "Lines", ', '"key": "Lines", "label": "Lines", ', "Unknown member 'label' of the row 'Lines'"),
    ('"title": "Access", ', '', "Member 'title'"),
    ('"kind": "choice", "items": [{"text": "RW", "value": "rw"}]', '"kind": "table"', "'kind' of the column 'Access' should be"),
    ('"title": "Share"', '"title": "Share", "label": "Share"', "Unknown member 'label' of the column 'Share'"),
]
WHOLE_CASES = [
    ('"title": "Generating",', '"title": "a", "title": "b",', "Member 'title' is given in line 3 already"),
    ('"key": "Entity"', '"key": "Name"', "No row has the key 'Entity'", 1),
    ('"key": "Width"', '"key": "Rate"', "Key 'Rate' is given in line 12 already"),
    ('"argument": "%%WIDTH%%"', '"argument": "%%LIST%%"', "Argument '%%LIST%%' is given in line 14 already", 15),
    ('"minimum": 1, "maximum": 32', '"minimum": 1, "maximum": 0', "a whole number from 1 to 2147483647"),
    ('"minimum": 1, "maximum": 32', '"minimum": 1, "maximum": 33', "a number from 1 to 32 at most", 15),
    ('"count": "Width"', '"count": "Mode"', "'count' of the row 'Lines' should be the key of a number"),
    ('"key": "Mode", "is"', '"key": "Rate", "is"', "another row, a choice", 7),
    ('["R & D"]', '["r & d"]', "no text of the choice 'Mode'", 7),
    ('{"text": "<b>"', '{"text": "R & D"', "there is a 'R & D' already"),
    ('"reset": 1.0', '"reset": 2', 'a whole number from 0 to 1'),
    ('"reset": 1.0', '"enabled": {"key": "Mode", "is": ["<b>"]}, "reset": 1.0', 'another row, a choice', 10),
    ('"maximum": 5e2', '"maximum": 1e-999', "Number '1e-999' cannot be held"),
    ('"step": 0.5', '"step": 0.25', 'a multiple of 0.1'),
    ('"title": "Access"', '"title": "Name"', 'another one than those before'),
    ('"Two\\nlines."', '"\\ud800"', 'No JSON'),
    ('"files",', '"files"', 'No JSON', 5),
    ('"files",', '"files", // a comment', 'No JSON'),
    ('"label": "Width"', '"label": "\udcff"', 'No JSON'),
    ('"label": "Width"', '"label": ' + 12 * '[', 'nested deeper than 16'),
    ('"label": "Width"', '"label": "\0"', 'NUL byte'),
    (GOOD, '\ufeff' + GOOD, 'byte order mark', 1),
    (GOOD, '', 'No JSON', 1),
    (GOOD, 200000 * '[', 'nested deeper than 16', 1),
    (GOOD, GOOD + 1048576 * ' ', 'larger than 1 MiB', None),
]
ODD_FILES = {'pipe': os.mkfifo, 'folder': os.mkdir, 'device': lambda path: os.symlink('/dev/zero', path),
             'terminal': lambda path: os.symlink('/dev/tty', path), 'nothing': lambda path: os.symlink('nowhere', path)}


def add_ip(prefix, uid, company='Test'):
    folder = prefix / 'share/velmora/Test' / uid
    folder.mkdir(parents=True)
    (folder / 'config').write_text(f'name {uid}\ncategory Test\nuid {uid}\ncompany {company}\nvariants V\nscript g.py\n', encoding='utf-8')
    return folder / 'form.json'


def call(prefix, *arguments):
    return subprocess.run([PROGRAM, *arguments], env={**os.environ, 'ORVANE_PREFIX': str(prefix)}, timeout=60, check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding='utf-8', errors='surrogateescape')


def line_of(old):
    assert GOOD.count(old) == 1, old
    return GOOD[:GOOD.index(old)].count('\n') + 1


def main():
    faults = []

    def expect(holds, *what):
        if not holds:
            faults.append(' '.join(map(str, what)))

    with tempfile.TemporaryDirectory() as directory:
        prefix = pathlib.Path(directory)
        add_ip(prefix, 'GOOD').write_text(GOOD, encoding='utf-8')
        add_ip(prefix, 'Scope', 'Orvane').write_text('{', encoding='utf-8')  # which the program knows
        shipped = list(pathlib.Path(CATALOGUE).glob('*/*/form.json'))
        for text in [GOOD, *(path.read_text(encoding='utf-8') for path in shipped)]:
            expect(VALIDATOR.is_valid(json.loads(text)), 'the schema refuses', text[:60])
        told = {}
        for number, (old, new, message, *line) in enumerate(SCHEMA_CASES + WHOLE_CASES):
            path = add_ip(prefix, f'WRONG{number}')
            text = GOOD.replace(old, new)
            path.write_text(text, encoding='utf-8', errors='surrogateescape')
            told[str(path)] = (message, line[0] if line else line_of(old))
            if number < len(SCHEMA_CASES):
                expect(not VALIDATOR.is_valid(json.loads(text)), 'the schema takes', new)
        for name, make in ODD_FILES.items():
            path = add_ip(prefix, name.upper())
            make(path)
            told[str(path)] = ('Unable to open form description', None)

        listed = call(prefix, 'list', '--json')
        expect(listed.returncode == 1 and len(json.loads(listed.stdout)) == 2 + len(told), 'the list is not whole')
        errors = [line.split(' [src/')[0] for line in listed.stderr.splitlines()]  # without where, which builds for debugging tell
        expect(len(errors) == len(told), len(errors), 'errors for', len(told), 'wrong forms')
        for path, (message, line) in told.items():
            found = [error for error in errors if path in error]
            expect(len(found) == 1 and message in found[0] and ('line' not in found[0].split(path)[1] if line is None else f'line: {line}' in found[0]
                   or f'line={line}' in found[0]), path, message, line, found)
        expect(call(prefix, 'describe', 'GOOD').returncode == 0, 'the good form is refused')
        shown = call(prefix, 'template', 'WRONG0')
        expect(shown.returncode == 1 and len(shown.stderr.splitlines()) == 1, 'a wrong form:', shown)
    print('\n'.join(faults))
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main())
