"""The frame of a family's hardware check: generates its parameter sets and checks every design."""

import argparse
import dataclasses
import os
import pathlib
import random
import tempfile
import time

import program
from generator import Script, write_files
from hdl_tools import CheckFailed, Ghdl, require, step
from parameter_set import ParameterSet

STANDARDS = ("93c", "93", "08")


@dataclasses.dataclass
class Design:
    """A generated text, what it was generated from, and how it is to be checked."""

    origin: ParameterSet
    arguments: dict
    path: pathlib.Path
    facts: dict  # that the program tells of it; None where no form gives it
    seed: int
    is_long: bool

    @property
    def ip(self):
        return self.origin.ip

    @property
    def entity(self):
        return self.arguments["%%ENTITY_NAME%%"]

    def ghdl(self, standard):
        """A library in which the design is analysed."""
        return Ghdl(self.path.parent / standard, standard)

    def analyse(self):
        for standard in STANDARDS:
            self.ghdl(standard).analyse([self.path])
        return ", ".join(STANDARDS)


def generate(ip, sets, directory):
    """(parameter set, file, arguments, errors, facts) of each design; what no form gives comes from the script."""
    formed = [each for each in sets if not each.changes]
    for each, made in zip(formed, program.generate(ip, [each.form for each in formed], directory)):
        yield each, made.path, made.arguments, made.errors, made.facts
    changed = [each for each in sets if each.changes]
    if not changed:
        return
    arguments = [{**given, **each.changes} for each, given in
                 zip(changed, program.arguments_of(ip, [each.form for each in changed]))]
    for each, given, result in zip(changed, arguments, Script(ip, directory).results(arguments)):
        path = directory / f"{ip}_{each.name}/design.vhd"
        path.parent.mkdir()
        write_files(result, path)
        yield each, path, given, result.errors, None


def main(description, ips, parameter_sets, check, events=None):
    """The exit status of a check: parameter_sets(ip, seed, is_long) gives the sets, check(design) raises CheckFailed.

    It returns what happened in the design's simulations, if anything. What 'events' lists for an IP has to happen in some.
    """
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--long", action="store_true", help="all sets, more random ones, longer simulations")
    parser.add_argument("--kind", choices=ips, action="append", help="only this IP")
    parser.add_argument("--set", action="append", help="only the set of this name")
    parser.add_argument("--seed", type=int, help="of random sets and stimuli; without it the long run draws one")
    options = parser.parse_args()
    is_long = options.long or bool(os.environ.get("VELMORA_LONG_TESTS"))
    if options.seed is None:
        options.seed = random.randrange(2**31) if is_long else 1
    start, count, failures = time.monotonic(), 0, 0
    for ip in options.kind or ips:
        sets = [each for each in parameter_sets(ip, options.seed, is_long) if not options.set or each.name in options.set]
        missing = set() if options.set else set((events or {}).get(ip, ()))
        with tempfile.TemporaryDirectory() as scratch:
            for each, path, arguments, errors, facts in generate(ip, sets, pathlib.Path(scratch)):
                print(f"{ip} {each.name}: {each.form} {each.changes or ''}", flush=True)
                count += 1
                try:
                    require(not errors, f"the script reports {errors}")
                    design = Design(each, arguments, path, facts, options.seed, is_long)
                    step("analysis", design.analyse)
                    missing -= set(check(design) or ())
                except CheckFailed as fault:
                    print(f"FAILED {ip} {each.name}: {fault}", flush=True)
                    failures += 1
        if missing:
            print(f"FAILED {ip}: no simulation met: {', '.join(sorted(missing))}")
            failures += 1
    print(f"{count} designs, {failures} failures, seed {options.seed}, {time.monotonic() - start:.0f} s")
    return 1 if failures or not count else 0
