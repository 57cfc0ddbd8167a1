#!/usr/bin/env python3
"""Generates all parameter sets of the FIR filters with the joined scripts and checks every filter."""

import argparse
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


def check_kind(kind, directory, seed, is_long):
    """Number of filters checked and of those that failed."""
    sets = parameter_sets(kind, seed, is_long)
    script = directory / f"{kind}.py"
    generator.join(generator.ROOT / "share/velmora/Orvane" / kind, script)
    results = generator.generate(script, [each.arguments() for each in sets])
    failures = 0
    for each, (text, errors, _) in zip(sets, results):
        print(f"{kind} {each.name}: {each.form}", flush=True)
        path = directory / f"{kind}_{each.name}.vhd"
        path.write_text(text)
        try:
            require(not errors, f"the script reports {errors}")
            check(kind, path, each.arguments(), seed, is_long)
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
    parser.add_argument("--seed", type=int, default=random.randrange(2**31))
    options = parser.parse_args()
    print(f"seed {options.seed}")
    start = time.monotonic()
    with tempfile.TemporaryDirectory() as scratch:
        totals = [check_kind(kind, pathlib.Path(scratch), options.seed, options.long)
                  for kind in options.kind or KINDS]
    filters, failures = map(sum, zip(*totals))
    print(f"{filters} filters, {failures} failed, seed {options.seed}, {time.monotonic() - start:.0f} s")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
