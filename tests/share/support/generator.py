"""Joins a generator script and runs it under Python 2.7 as the program does, without the program."""

import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[3]
JOINER = ROOT / "scripts/join-generator"
SUPPORT_FILES = sorted((ROOT / "share/generator-support").glob("*.py"))

# Texts go both ways as Latin-1, one character a byte, so that JSON carries any byte string.
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
    argDict = dict((key.encode('latin-1'), value.encode('latin-1')) for key, value in arguments.items())
    result = space['generate'](argDict)
    parts = result.items() if type(result) is dict else [(result, '')]
    assert all(type(part) is str for pair in parts for part in pair), 'not exactly str'
    decoded = [[part.decode('latin-1') for part in pair] for pair in parts]
    answers.append([dict(decoded) if type(result) is dict else decoded[0][0],
                    [text.decode('latin-1') for text in calls['printError']],
                    [text.decode('latin-1') for text in calls['printText']]])
json.dump(answers, sys.stdout)
"""


def join(ip_directory, output):
    """Runs the joiner on an IP of the catalogue."""
    subprocess.run([JOINER, ip_directory / "generator.py", "-o", output, "--support", *SUPPORT_FILES,
                    "--templates", ip_directory / "templates"], check=True)


def generate(script, arguments):
    """Calls the joined script once for each argument dictionary: a list of (result, errors, notes)."""
    request = json.dumps({"script": str(script), "arguments": arguments})
    answer = subprocess.run(["python2.7", "-c", DRIVER], input=request, stdout=subprocess.PIPE, text=True, check=False)
    if answer.returncode != 0:
        sys.exit("the generator script failed, see above")
    return json.loads(answer.stdout)


def write_files(result, directory):
    """Writes a result of the file dictionary kind; like the program, it ends the last line of each file."""
    for name, content in result.items():
        path = pathlib.Path(directory) / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content.encode("latin-1") + b"\n")
