"""The frame of a family's hardware check: generates its parameter sets and checks every design."""

import argparse
import dataclasses
import os
import pathlib
import random
import tempfile
import time

import program
from hdl_tools import CheckFailed, Ghdl, require, step
from parameter_set import ParameterSet

STANDARDS = ("93c", "93", "08")


@dataclasses.dataclass
class Design:
    """A generated text, what it was generated from, and how it is to be checked."""

    origin: ParameterSet
    arguments: dict
    path: pathlib.Path
    facts: dict  # that the program tells of it
    seed: int
    is_long: bool

    @property
    def ip(self):
        return self.origin.ip

    @property
    def entity(self):
        return self.arguments["%%ENTITY_NAME%%"]

    @property
    def vhdl(self):
        """The file of the entity."""
        return self.path / "rtl" / f"{self.entity}.vhd" if self.path.is_dir() else self.path

    def ghdl(self, standard):
        """A library in which the design is analysed."""
        return Ghdl(self.path.parent / standard, standard)

    def analyse(self):
        for standard in STANDARDS:
            self.ghdl(standard).analyse([self.vhdl])
        return ", ".join(STANDARDS)


def main(description, ips, parameter_sets, check):
    """The exit status of a check: parameter_sets(ip, seed, is_long) gives the sets, check(design) raises CheckFailed."""
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
        with tempfile.TemporaryDirectory() as scratch:
            for each, made in zip(sets, program.generate(ip, [each.form for each in sets], pathlib.Path(scratch))):
                print(f"{ip} {each.name}: {each.form}", flush=True)
                count += 1
                try:
                    require(not made.errors, f"the script reports {made.errors}")
                    design = Design(each, made.arguments, made.path, made.facts, options.seed, is_long)
                    step("analysis", design.analyse)
                    check(design)
                except CheckFailed as fault:
                    print(f"FAILED {ip} {each.name}: {fault}", flush=True)
                    failures += 1
    print(f"{count} designs, {failures} failures, seed {options.seed}, {time.monotonic() - start:.0f} s")
    return 1 if failures or not count else 0
