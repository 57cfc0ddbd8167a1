#!/usr/bin/env python3
"""Generates all parameter sets of the IP "SER/DES", with the program's own form or with the joined script alone, and
checks every interface."""

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
from parameter_sets import parameter_sets
from program import Program, add_options, arguments_of, errors_of


def generate_with_script(sets, paths):
    """Writes the interfaces and tells for each the errors that the script reported."""
    script = paths[0].parent / "joined.py"
    generator.join(generator.ROOT / "share/velmora/Orvane/ser_des", script)
    results = generator.generate(script, [each.arguments() for each in sets])
    for path, (text, _, _) in zip(paths, results):
        path.write_text(text + "\n")  # as the program, which ends every line
    return [errors for _, errors, _ in results]


def generate_with_program(program, sets, paths):
    """The same with the program's form."""
    jobs = [("Orvane/ser_des", each.fields(), path) for each, path in zip(sets, paths)]
    return [errors_of(lines) for lines in program.generate(jobs)]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--long", action="store_true", help="all clock phases, netlists, more of the random sets")
    parser.add_argument("--set", action="append", help="only the set of this name")
    add_options(parser)
    parser.add_argument("--seed", type=int, default=random.randrange(2**31))
    options = parser.parse_args()
    print(f"seed {options.seed}")
    start = time.monotonic()
    is_long = options.long or bool(os.environ.get("VELMORA_LONG_TESTS"))
    sets = [each for each in parameter_sets(options.seed, is_long)
            if not options.set or each.name in options.set]
    failures = 0
    with tempfile.TemporaryDirectory() as scratch:
        paths = [pathlib.Path(scratch) / f"{each.name}.vhd" for each in sets]
        program = Program(options.driver, options.prefix) if options.driver else None
        reported = generate_with_program(program, sets, paths) if program else generate_with_script(sets, paths)
        for each, path, errors in zip(sets, paths, reported):
            print(f"{each.name}: {each.form}", flush=True)
            try:
                require(not errors, f"the script reports {errors}")
                check(path, arguments_of(each, path) if program else each.arguments(), options.seed, is_long)
            except CheckFailed as failure:
                print(f"FAILED {each.name}: {failure}", flush=True)
                failures += 1
    print(f"{len(sets)} interfaces, {failures} failed, seed {options.seed}, {time.monotonic() - start:.0f} s")
    return 1 if failures or not sets else 0


if __name__ == "__main__":
    sys.exit(main())
