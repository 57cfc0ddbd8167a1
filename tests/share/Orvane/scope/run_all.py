#!/usr/bin/env python3
"""Generates parameter sets of both scopes, with the program's own forms or with the joined scripts alone, and checks every
scope. Scopes too small for the forms always come from the scripts."""

import argparse
import os
import pathlib
import random
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "support"))

# pylint: disable=wrong-import-position
import generator
from check import check
from hdl_tools import CheckFailed, require
from parameter_sets import KINDS, miniatures, parameter_sets
from program import Program, add_options, arguments_of, errors_of

SMALL_DEPTHS = ("2K", "4K", "6K")
ALWAYS = ("reference", "two_levels", "pre_trigger_limit", "windows_uneven", "windows_contiguous")
SHORT_SAMPLE = 3

# What the simulations of a kind have to meet together, so that each rule is at work in some of them.
EVENTS = {
    "scope": ["captured", "read", "triggered", "forced", "forced too early", "triggered at once", "triggered later",
              "first level", "first level with condition", "trigger without first level", "arm", "arm while busy",
              "arm before busy has fallen", "arm after done", "aborted"],
    "startup_scope": ["captured", "read", "triggered at the first sample", "triggered early", "triggered late",
                      "aborted"],
}


def chosen_sets(kind, seed, is_long):
    """Parameter sets of what is to be generated; every depth is among them."""
    sets = parameter_sets(kind, seed, 24 if is_long else 2)
    if not is_long:
        always = [each for each in sets if each.name in ALWAYS or each.form.capture_depth not in SMALL_DEPTHS]
        others = [each for each in sets if each not in always]
        sets = always + random.Random(seed).sample(others, SHORT_SAMPLE)
    return sets


def generate_with_script(kind, directory, chosen):
    """Writes the scopes given as (name, form, arguments): for each (name, form, arguments, path, errors)."""
    script = directory / f"{kind}.py"
    generator.join(generator.ROOT / "share/velmora/Orvane" / kind, script)
    results = generator.generate(script, [arguments for _, _, arguments in chosen])
    written = []
    for (name, form, arguments), (text, errors, _) in zip(chosen, results):
        path = directory / f"{kind}_{name}.vhd"
        path.write_text(text + "\n")  # as the program, which ends every line
        written.append((name, form, arguments, path, errors))
    return written


def generate_with_program(program, kind, directory, sets):
    """The same of parameter sets with the program's forms."""
    paths = [directory / f"{kind}_{each.name}.vhd" for each in sets]
    reports = program.generate([("Orvane/" + kind, each.fields(), path) for each, path in zip(sets, paths)])
    return [(each.name, each.form, arguments_of(each, path), path, errors_of(lines))
            for each, path, lines in zip(sets, paths, reports)]


def check_kind(kind, directory, program, seed, is_long):
    """Number of scopes checked and of those that failed."""
    sets = chosen_sets(kind, seed, is_long)
    small = miniatures(kind, seed, 60 if is_long else 10)
    if program:
        written = generate_with_program(program, kind, directory, sets) + generate_with_script(kind, directory, small)
    else:
        written = generate_with_script(kind, directory, [(each.name, each.form, each.arguments()) for each in sets] + small)
    failures = 0
    events = set()
    for name, form, arguments, path, errors in written:
        print(f"{kind} {name}: {form}", flush=True)
        try:
            require(not errors, f"the script reports {errors}")
            events |= set(check(kind, path, arguments, seed, is_long))
        except CheckFailed as fault:
            print(f"FAILED {kind} {name}: {fault}", flush=True)
            failures += 1
    missing = set(EVENTS[kind]) - events
    if missing:
        print(f"FAILED {kind}: no simulation met: {', '.join(sorted(missing))}")
    return len(written), failures + len(missing)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--long", action="store_true", help="all sets, more of the random ones, more captures")
    parser.add_argument("--kind", choices=KINDS, action="append", help="only this kind")
    add_options(parser)
    parser.add_argument("--seed", type=int, default=random.randrange(2**31))
    options = parser.parse_args()
    print(f"seed {options.seed}")
    program = Program(options.driver, options.prefix) if options.driver else None
    is_long = options.long or bool(os.environ.get("VELMORA_LONG_TESTS"))
    start = time.monotonic()
    with tempfile.TemporaryDirectory() as scratch:
        totals = [check_kind(kind, pathlib.Path(scratch), program, options.seed, is_long)
                  for kind in options.kind or KINDS]
    scopes, failures = map(sum, zip(*totals))
    print(f"{scopes} scopes, {failures} failures, seed {options.seed}, {time.monotonic() - start:.0f} s")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
