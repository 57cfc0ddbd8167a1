#!/usr/bin/env python3
"""Prints the time from the start of the process to the first painted window, and the peak memory by then, of the program
with the shipped catalogue and with 1,000 made IPs, also such as describe forms, each beside an empty Qt window of the same run. Without a display it
starts one of its own (Xvfb)."""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile
import time

MADE_IPS = 1000


FORM = """{"title": "Generating", "result": "file", "rows": [
  {"key": "Entity", "kind": "text", "label": "Entity name", "argument": "%%ENTITY_NAME%%"},
  {"key": "Depth", "kind": "number", "label": "Depth", "minimum": 2, "maximum": 65536, "argument": "%%DEPTH%%"}]}
"""


def make_catalogue(prefix, form=None):
    """A catalogue of IPs in 140 categories that match no known form, with description pages and, if there is one, that form."""
    for number in range(MADE_IPS):
        directory = os.path.join(prefix, "share/velmora/Made", "ip%04d" % number)
        os.makedirs(directory)
        with open(os.path.join(directory, "config"), "w") as config:
            config.write("name Made %d\ncategory Group%d/Sub%d\nuid MADE%04d\ncompany Made\nvariants A%d B%d\nhtml page.html\nscript generator.py\n"
                         % (number, number % 14, number % 140, number, number % 7, number % 3))
        with open(os.path.join(directory, "page.html"), "w") as page:
            page.write("<html><body><h1>Made %d</h1><p>%s</p></body></html>" % (number, "text " * 200))
        if form:
            with open(os.path.join(directory, "form.json"), "w") as description:
                description.write(form)


def first_paint(command, environment):
    """Milliseconds from start to first paint, and peak memory in MiB."""
    reader, writer = os.pipe()
    started = time.clock_gettime_ns(time.CLOCK_MONOTONIC)
    process = subprocess.Popen(command, env=environment, stdout=writer, stderr=subprocess.DEVNULL)
    os.close(writer)
    with os.fdopen(reader) as output:
        painted = [int(line.split()[1]) for line in output if line.startswith("first-paint")]
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = status
    if not painted:
        sys.exit("startup: %s ended without painting a window" % command[0])
    return (painted[0] - started) / 1e6, usage.ru_maxrss / 1024


def measure(options, folder):
    made_prefix = os.path.join(folder, "made")
    make_catalogue(made_prefix)
    described_prefix = os.path.join(folder, "described")
    make_catalogue(described_prefix, FORM)
    base = dict(os.environ, QT_PLUGIN_PATH=options.plugins, QT_QPA_GENERIC_PLUGINS="firstpaint",
                XDG_CONFIG_HOME=os.path.join(folder, "config"), XDG_RUNTIME_DIR=folder)
    cases = [
        ("empty window", [options.empty], base),
        ("shipped catalogue", [options.program], dict(base, ORVANE_PREFIX=options.prefix)),
        ("%d made IPs" % MADE_IPS, [options.program], dict(base, ORVANE_PREFIX=made_prefix)),
        ("the same with forms", [options.program], dict(base, ORVANE_PREFIX=described_prefix)),
    ]
    figures = {name: [] for name, _, _ in cases}
    for run in range(options.runs + 1):
        for name, command, environment in cases:
            figure = first_paint(command, environment)
            if run > 0:  # the first one warms the file cache
                figures[name].append(figure)
    reference = statistics.median(ms for ms, _ in figures["empty window"])
    print("%-20s %10s %10s %10s %8s %12s" % ("first paint", "min ms", "median ms", "max ms", "ratio", "peak MiB"))
    for name, values in figures.items():
        times = [ms for ms, _ in values]
        median = statistics.median(times)
        print("%-20s %10.1f %10.1f %10.1f %8.2f %12.1f" % (name, min(times), median, max(times), median / reference,
                                                          max(memory for _, memory in values)))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True)
    parser.add_argument("--empty", required=True, help="the program with an empty window")
    parser.add_argument("--prefix", required=True, help="installation prefix with the shipped catalogue")
    parser.add_argument("--plugins", required=True, help="directory with the plugin that tells the first paint")
    parser.add_argument("--runs", type=int, default=9)
    options = parser.parse_args()
    if not os.environ.get("DISPLAY") and not os.environ.get("QT_QPA_PLATFORM"):
        os.execvp("xvfb-run", ["xvfb-run", "-a", "-s", "-screen 0 1280x1024x24 -noreset"] + [os.path.abspath(sys.argv[0])] + sys.argv[1:])
    with tempfile.TemporaryDirectory(prefix="velmora-startup-") as folder:
        measure(options, folder)


if __name__ == "__main__":
    main()
