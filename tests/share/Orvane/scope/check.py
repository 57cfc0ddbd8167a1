#!/usr/bin/env python3
"""Generates parameter sets of both scopes, and checks every
scope: it reads the text, compares a simulation clock for clock with a model of its own, and looks at what synthesis makes
of it. A memory of less than 64 samples, which no form gives, is simulated over many captures; one of more than 6144 in the
long run only."""

import pathlib
import random
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "support"))

# pylint: disable=wrong-import-position
import bench
import hardware_check
from hdl_rules import check_constants, check_design
from hdl_tools import cell_counts, require, step, synthesise
from model import MODELS
from parameter_set import number
from parameter_sets import KINDS, checked_sets
from stimulus import STIMULI

IP_NAMES = {"scope": "Scope", "startup_scope": "Startup Scope"}
LARGEST_MINIATURE = 63
LARGEST_SIMULATED = 6144

# What the simulations of a kind have to meet together, so that each rule is at work in some of them.
EVENTS = {
    "scope": ["captured", "read", "forced too early", "first level with condition", "trigger without first level",
              "arm while busy", "aborted"],
    "startup_scope": ["captured", "read", "triggered at the first sample", "triggered early", "triggered late",
                      "aborted"],
}


def expected_constants(kind, arguments):
    """Type and value of each constant of the package, without blanks."""
    same = ["CAPTURE_DEPTH", "CAPTURE_WIDTH", "INPUT_LINE_COUNT", "TRIGGER_LINE_COUNT"]
    depth, before = number(arguments, "CAPTURE_DEPTH"), number(arguments, "PRE_TRIGGER_SAMPLES")
    if kind == "startup_scope":
        integers = {"PRE_TRIGGER_SAMPLES": before}
        others = {"STARTUP_TRIG_VALUE": ("std_logic_vector(TRIGGER_LINE_COUNT-1downto0)",
                                         arguments["%%STARTUP_TRIG_VALUE%%"])}
    else:
        same += ["WINDOW_CAPTURE_LENGTH", "USER_DATA_DELAY", "STORE_TRIGGER", "STORE_WINDOW"]
        integers = {
            "PRE_TRIGGER_SAMPLES": min(before, depth - 1), "WINDOW_COUNT": depth // number(arguments, "WINDOW_CAPTURE_LENGTH"),
            "SAMPLE_WIDTH": sum(number(arguments, key) for key in ("INPUT_LINE_COUNT", "STORE_TRIGGER", "STORE_WINDOW"))}
        others = {key: (type_name, arguments[f"%%{key}%%"]) for key, type_name in (
            ("MULTIPLE_TRIGGER_LEVEL", "boolean"), ("TRIGGER_MODE", "string"), ("CAPTURE_MODE", "string"))}
    integers.update((key, number(arguments, key)) for key in same)
    return {**{key: ("integer", str(value)) for key, value in integers.items()}, **others}


def check_rules(design, model):
    content = design.path.read_bytes()
    shown = [design.arguments[f"%%{key}%%"] for key in ("APPLICATION", "DATE", "INPUT_LINE_COUNT", "CAPTURE_DEPTH")]
    check_design(content, IP_NAMES[design.ip], design.entity, shown, ["package", "entity", "architecture"],
                 {"clk": None, **bench.inputs(model)}, bench.outputs(model))
    check_constants(content.decode(), expected_constants(design.ip, design.arguments))
    return "text, header, ports and constants"


def run_model(design, seed, is_long):
    """A model that has seen its inputs, and the outputs expected from it."""
    model = MODELS[design.ip](design.arguments)
    stimulus = STIMULI[design.ip](model, seed)
    if model.depth <= LARGEST_MINIATURE:
        stimulus.miniature_captures(60000 if is_long else 8000)
    else:
        stimulus.real_captures(4 if is_long else 2)
    require(model.events.get("captured", 0) > 1, "the inputs gave no two captures")
    return model, stimulus.expected


def check_simulation(ghdl, design, model, expected, *options):
    rows = bench.simulate(ghdl, design.entity, model, *options)
    samples = bench.compare(model, expected, rows)
    require(samples >= model.depth - model.before, f"only {samples} samples were read")
    return f"{model.events['captured']} captures, {samples} samples read, {len(rows)} edges"


def check_synthesis(ghdl, design, model):
    """The memory is one RAM of exactly the samples, and there is no latch."""
    notes, report = synthesise(ghdl, design.entity, [
        "proc", "opt", "memory -nomap", "check -assert", "select -assert-none t:$dlatch t:$adlatch t:$dlatchsr t:$sr",
        "select -assert-count 1 t:$mem_v2",
        f"select -assert-count 1 t:$mem_v2 r:WIDTH={model.sample_width} %i r:SIZE={model.depth} %i "
        "r:RD_PORTS=1 %i r:RD_CLK_ENABLE=1'1 %i r:WR_PORTS=1 %i r:WR_CLK_ENABLE=1'1 %i",
        "flatten", "opt -full", "wreduce", "opt -full", "techmap", "opt -full",
        "select -assert-none t:$_DLATCH* t:$_SR*", "abc -lut 6", "opt_clean", "stat"])
    memories = re.findall(r"found RAM.*width: (\d+) bits, depth: (\d+)", notes)
    require(memories == [(str(model.sample_width), str(model.depth))], f"memories found: {memories}\n{notes}")
    if design.facts:
        told = [design.facts[label] for label in ("Sample width", "Samples", "Memory", "Trigger lines")]
        width, depth = map(int, memories[0])
        require(told == [width, depth, width * depth, number(design.arguments, "TRIGGER_LINE_COUNT")], f"told is {told}")
    return "1 memory, {} LUT6, {} flip-flops".format(*cell_counts(report))


def check_netlist(design):
    """Simulates what GHDL's synthesis makes of the scope: numbers are vectors there, unknown until the capture."""
    ghdl = design.ghdl("08").netlist(design.entity, design.path.parent / "netlist")
    return check_simulation(ghdl, design, *run_model(design, design.seed + 1, False), "disable")


def check(design):
    """How often each event of the model came."""
    model = MODELS[design.ip](design.arguments)
    step("rules", check_rules, design, model)
    step("synthesis", check_synthesis, design.ghdl("08"), design, model)
    if model.depth > LARGEST_SIMULATED and not design.is_long:
        return {}
    model, expected = run_model(design, design.seed, design.is_long)
    standard = random.Random(design.seed).choice(hardware_check.STANDARDS)
    step("simulation", check_simulation, design.ghdl(standard), design, model, expected)
    if design.is_long or model.depth <= LARGEST_MINIATURE:
        step("netlist simulation", check_netlist, design)
    return model.events


if __name__ == "__main__":
    sys.exit(hardware_check.main(__doc__, KINDS, checked_sets, check, EVENTS))
