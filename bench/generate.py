#!/usr/bin/env python3
"""Prints the time of one generation without a window, `velmora-generate run` of the systolic filter of the examples, beside that of
its generator script in a bare Python 2.7 process with the same arguments and the same output; then what a file costs in a run of many,
and how much quicker two jobs are than one."""

import argparse
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time

MANY = 2000  # files

BARE = r"""
import sys, types
script, output = sys.argv[1:]
quarnel = types.ModuleType('quarnel')
quarnel.printError = quarnel.printText = lambda text: sys.exit(text)
sys.modules['quarnel'] = quarnel
from quarnel import *
__name__ = ''
exec open(script).read()
argDict = {'%%N_TAPS%%': '7', '%%ENTITY_NAME%%': 'fir_systolic',
           '%%COEFS_PKG_HEXA_CONSTANT%%': '(x"FF4", x"02d", x"0d3", x"190", x"0d3", x"02d", x"FF4")', '%%APPLICATION%%': 'Velmora',
           '%%COEF_ARE_INPUT_SIGNALS%%': 'false', '%%INPUT_DATA_WIDTH%%': '12', '%%INPUT_DATA_WIDTH-1%%': '11',
           '%%OUTPUT_DATA_WIDTH%%': '16', '%%OUTPUT_DATA_WIDTH-1%%': '15', '%%TO_BE_TRUNCATED%%': '8', '%%COEF_WIDTH%%': '12',
           '%%DATE%%': '01/01/1970 - 00:00'}
open(output, 'w').write(generate(argDict) + '\n')
"""


def measure(command, environment):
    """Milliseconds from start to end of the process."""
    started = time.perf_counter()
    subprocess.run(command, env=environment, check=True)
    return (time.perf_counter() - started) * 1000


def read(path):
    with open(path, "rb") as file:
        return file.read()


def compare(options, folder):
    by_program, by_script = (os.path.join(folder, name) for name in ("program.vhd", "script.vhd"))
    environment = dict(os.environ, ORVANE_PREFIX=options.prefix, SOURCE_DATE_EPOCH="0")
    cases = {
        "bare script": [options.python, "-B", "-E", "-S", "-c", BARE, options.script, by_script],
        "velmora-generate run": [options.program, "run", "--quiet", options.configuration, "-o", by_program],
    }
    figures = {name: [] for name in cases}
    for run in range(options.runs + 1):
        for name, command in cases.items():
            figure = measure(command, environment)
            if run > 0:  # the first one warms the file cache
                figures[name].append(figure)
    if read(by_program) != read(by_script):
        sys.exit("generate: the program and the script did not write the same")
    print("%-20s %10s %10s %10s" % ("one generation", "min ms", "median ms", "max ms"))
    for name, times in figures.items():
        print("%-20s %10.1f %10.1f %10.1f" % (name, min(times), statistics.median(times), max(times)))
    bare, run = (statistics.median(times) for times in figures.values())
    print("%-20s %21.2f (aim: at most 3.5)" % ("ratio", run / bare))


def run_on(options, folder, count, *arguments):
    """Milliseconds a file and the peak memory in MiB of a run on that many configurations."""
    started = time.perf_counter()
    process = subprocess.Popen([options.program, "run", *("%d.velmora" % number for number in range(count)), *arguments], cwd=folder,
                               env=dict(os.environ, ORVANE_PREFIX=options.prefix), stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = status
    if status != 0:
        sys.exit("generate: a run on many files failed")
    return (time.perf_counter() - started) * 1000 / count, usage.ru_maxrss / 1024


def compare_many(options, folder):
    configuration = read(options.configuration).decode()
    for number in range(MANY):
        with open(os.path.join(folder, "%d.velmora" % number), "w") as file:
            file.write(re.sub("^Entity = .*", "Entity = e%d" % number, configuration, flags=re.MULTILINE))
    print("%-20s %10s %10s %10s" % ("many files", "ms a file", "ratio", "peak MiB"))
    one = None
    for name, count, arguments in (("a quarter", MANY // 4, []), ("%d files" % MANY, MANY, []), ("a quarter, two jobs", MANY // 4, ["-j2"])):
        figure, memory = run_on(options, folder, count, *arguments)
        one = one or figure
        print("%-20s %10.2f %10.2f %10.1f" % (name, figure, figure / one, memory))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True, help="velmora-generate")
    parser.add_argument("--python", required=True, help="the Python 2.7 interpreter")
    parser.add_argument("--prefix", required=True, help="installation prefix with the shipped catalogue")
    parser.add_argument("--script", required=True, help="the joined script of the systolic filter, not sealed")
    parser.add_argument("--configuration", required=True, help="the systolic filter of the examples")
    parser.add_argument("--runs", type=int, default=15)
    options = parser.parse_args()
    options.program, options.prefix = map(os.path.abspath, (options.program, options.prefix))
    with tempfile.TemporaryDirectory(prefix="velmora-generate-") as folder:
        compare(options, folder)
        compare_many(options, folder)


if __name__ == "__main__":
    main()
