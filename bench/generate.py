#!/usr/bin/env python3
"""Prints the time of one generation without a window, `velmora-generate run` of the systolic filter of the examples, beside that of
its generator script in a bare Python 2.7 process with the same arguments and the same output. The aim: less than twice the script's
time plus 100 ms."""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile
import time

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
    medians = [statistics.median(times) for times in figures.values()]
    limit = 2 * medians[0] + 100
    print("%-20s %21.1f %10s" % ("aim: less than", limit, "holds" if medians[1] < limit else "missed"))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True, help="velmora-generate")
    parser.add_argument("--python", required=True, help="the Python 2.7 interpreter")
    parser.add_argument("--prefix", required=True, help="installation prefix with the shipped catalogue")
    parser.add_argument("--script", required=True, help="the joined script of the systolic filter, not sealed")
    parser.add_argument("--configuration", required=True, help="the systolic filter of the examples")
    parser.add_argument("--runs", type=int, default=15)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="velmora-generate-") as folder:
        compare(options, folder)


if __name__ == "__main__":
    main()
