#!/usr/bin/env python3
"""Generates parameter sets of the FIR filters, with the program's own forms or with the joined scripts alone, and checks
every filter."""

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
from model import Mismatch
from parameter_sets import KINDS, parameter_sets
from program import Program, add_options, arguments_of, errors_of


def generate_with_scripts(kind, sets, paths):
    """Writes the filters and tells for each the errors that the script reported."""
    script = paths[0].parent / f"{kind}.py"
    generator.join(generator.ROOT / "share/velmora/Orvane" / kind, script)
    results = generator.generate(script, [each.arguments() for each in sets])
    for path, (text, _, _) in zip(paths, results):
        path.write_text(text)
    return [errors for _, errors, _ in results]


def generate_with_program(program, kind, sets, paths):
    """The same with the program's forms."""
    jobs = [("Orvane/" + kind, each.fields(), path) for each, path in zip(sets, paths)]
    return [errors_of(lines) for lines in program.generate(jobs)]


def check_kind(kind, directory, program, seed, is_long):
    """Number of filters checked and of those that failed."""
    sets = parameter_sets(kind, seed, is_long)
    paths = [directory / f"{kind}_{each.name}.vhd" for each in sets]
    reported = generate_with_program(program, kind, sets, paths) if program else generate_with_scripts(kind, sets, paths)
    failures = 0
    for each, path, errors in zip(sets, paths, reported):
        print(f"{kind} {each.name}: {each.form}", flush=True)
        try:
            require(not errors, f"the script reports {errors}")
            arguments = arguments_of(each, path) if program else each.arguments()
            check(kind, path, arguments, seed, is_long)
        except (CheckFailed, Mismatch) as fault:
            print(f"FAILED {kind} {each.name}: {fault}", flush=True)
            failures += 1
    return len(sets), failures


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    length = parser.add_mutually_exclusive_group()
    length.add_argument("--quick", action="store_true", help="a choice of the sets (the default)")
    length.add_argument("--long", action="store_true", help="all sets, more of the random ones, more samples")
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
    filters, failures = map(sum, zip(*totals))
    print(f"{filters} filters, {failures} failed, seed {options.seed}, {time.monotonic() - start:.0f} s")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
