"""The frame of a family's hardware check: generates its parameter sets and checks every design."""

import argparse
import dataclasses
import os
import pathlib
import random
import tempfile
import time

from generator import Script, write_files
from hdl_tools import CheckFailed, Ghdl, require, step
from parameter_set import ParameterSet
from program import Program, arguments_of, errors_of

STANDARDS = ("93c", "93", "08")


@dataclasses.dataclass
class Design:
    """A generated text, what it was generated from, and how it is to be checked."""

    origin: ParameterSet
    arguments: dict
    path: pathlib.Path
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


def generate_with_script(ip, sets, paths, directory):
    """Writes the designs: for each its arguments and the errors that the script reported."""
    for each, path, result in zip(sets, paths, Script(ip, directory).results([each.arguments() for each in sets])):
        write_files(result, path)
        yield each.arguments(), result.errors


def generate_with_program(program, sets, paths):
    """The same with the program's forms."""
    jobs = [(f"Orvane/{each.ip}", each.form.fields(), path) for each, path in zip(sets, paths)]
    for each, path, lines in zip(sets, paths, program.generate(jobs)):
        yield arguments_of(each, path), errors_of(lines)


def generate(ip, sets, directory, program):
    """(parameter set, file, arguments, errors) of each design; what no form gives comes from the script."""
    for is_for_forms in (True, False):
        chosen = [each for each in sets if is_for_forms == bool(program and not each.changes)]
        paths = [directory / f"{ip}_{each.name}/design.vhd" for each in chosen]
        for path in paths:
            path.parent.mkdir()
        written = (generate_with_program(program, chosen, paths) if is_for_forms else
                   generate_with_script(ip, chosen, paths, directory))
        for each, path, (arguments, errors) in zip(chosen, paths, written):
            yield each, path, arguments, errors


def main(description, ips, parameter_sets, check, events=None):
    """The exit status of a check: parameter_sets(ip, seed, is_long) gives the sets, check(design) raises CheckFailed.

    It returns what happened in the design's simulations, if anything. What 'events' lists for an IP has to happen in some.
    """
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--long", action="store_true", help="all sets, more random ones, longer simulations")
    parser.add_argument("--kind", choices=ips, action="append", help="only this IP")
    parser.add_argument("--set", action="append", help="only the set of this name")
    parser.add_argument("--driver", help="generate with the program's forms by this form_driver, not with the scripts alone")
    parser.add_argument("--prefix", help="installation prefix of the program")
    parser.add_argument("--seed", type=int, default=random.randrange(2**31))
    options = parser.parse_args()
    is_long = options.long or bool(os.environ.get("VELMORA_LONG_TESTS"))
    program = Program(options.driver, options.prefix) if options.driver else None
    start, count, failures = time.monotonic(), 0, 0
    for ip in options.kind or ips:
        sets = [each for each in parameter_sets(ip, options.seed, is_long) if not options.set or each.name in options.set]
        missing = set() if options.set else set((events or {}).get(ip, ()))
        with tempfile.TemporaryDirectory() as scratch:
            for each, path, arguments, errors in generate(ip, sets, pathlib.Path(scratch), program):
                print(f"{ip} {each.name}: {each.form} {each.changes or ''}", flush=True)
                count += 1
                try:
                    require(not errors, f"the script reports {errors}")
                    design = Design(each, arguments, path, options.seed, is_long)
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
