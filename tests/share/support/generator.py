"""Joins a generator script and runs it under Python 2.7 as the program does, without the program."""

import json
import pathlib
import subprocess
import typing

ROOT = pathlib.Path(__file__).resolve().parents[3]
CATALOGUE = ROOT / "share/velmora/Orvane"
JOINER = ROOT / "scripts/join-generator"
SUPPORT = ROOT / "share/generator-support"
SUPPORT_FILES = sorted(SUPPORT.glob("*.py"))

# The script's texts come back as Latin-1, one character a byte, so that JSON carries any byte string.
DRIVER = r"""
import json, sys, types

calls = {'printError': [], 'printText': []}
quarnel = types.ModuleType('quarnel')
for name in calls:
    setattr(quarnel, name, calls[name].append)
sys.modules['quarnel'] = quarnel

request = json.load(sys.stdin)
space = {'__name__': ''}
exec 'from quarnel import *' in space
exec open(request['script']).read() in space
answers = []
for arguments in request['arguments']:
    for name in calls:
        del calls[name][:]
    result = space['generate'](dict((key.encode('utf-8'), value.encode('utf-8')) for key, value in arguments.items()))
    parts = result.items() if type(result) is dict else [(result, '')]
    assert all(type(part) is str for pair in parts for part in pair), 'not exactly str'
    decoded = [[part.decode('latin-1') for part in pair] for pair in parts]
    answers.append([dict(decoded) if type(result) is dict else decoded[0][0],
                    [text.decode('latin-1') for text in calls['printError']],
                    [text.decode('latin-1') for text in calls['printText']]])
json.dump(answers, sys.stdout)
"""


class Result(typing.NamedTuple):
    """What a script returned, a text or a dictionary of files, and what it reported."""

    text: object
    errors: list
    remarks: list


class Script:
    """The joined generator script of an IP."""

    def __init__(self, ip, directory):
        self.path = directory / f"{ip}.py"
        subprocess.run([JOINER, CATALOGUE / ip / "generator.py", "-o", self.path, "--support", *SUPPORT_FILES,
                        "--templates", CATALOGUE / ip / "templates", "--shared-templates", SUPPORT / "templates"], check=True)

    def results(self, dictionaries):
        """Calls the script once for each argument dictionary."""
        return generate(self.path, dictionaries)


def generate(script, dictionaries):
    answer = subprocess.run(["python2.7", "-c", DRIVER], stdout=subprocess.PIPE, text=True, check=True,
                            input=json.dumps({"script": str(script), "arguments": dictionaries}))
    return [Result(*each) for each in json.loads(answer.stdout)]


def write_files(result, directory):
    """Writes a result of either kind, a text as the file of that name; like the program, it ends every last line."""
    for name, content in (result.text if isinstance(result.text, dict) else {"": result.text}).items():
        path = directory / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content.encode("latin-1") + b"\n")
