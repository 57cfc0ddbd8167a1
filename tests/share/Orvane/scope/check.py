#!/usr/bin/env python3
"""Checks the VHDL of one generated scope against its argument dictionary.

check.py KIND FILE ARGUMENTS.json [--seed N] [--long]

It reads the text, analyses it under three VHDL standards, compares a simulation clock for clock with a model of its
own, and looks at what synthesis makes of it. A memory of less than 64 samples, which no form gives, is simulated over
many captures; one of more than 6144 is filled in the long run only.
"""

import argparse
import json
import pathlib
import random
import re
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "support"))

# pylint: disable=wrong-import-position
import stimulus as inputs
from bench import compare, simulate
from hdl_rules import check_header, check_text, check_vhdl
from hdl_tools import CheckFailed, Ghdl, require, step, yosys
from model import MODELS, number
from parameter_sets import KINDS

STANDARDS = ("93c", "93", "08")
IP_NAMES = {"scope": "Scope", "startup_scope": "Startup Scope"}
LARGEST_MINIATURE = 63

# A deeper memory is filled in the long run only.
LARGEST_FILLED = 6144

def expected_ports(kind, model):
    """Names, directions and widths of the ports; the width of a single bit is None."""
    ports = {("clk", "in", None), ("reset", "in", None), ("data_in", "in", model.input_count),
             ("trig_in", "in", model.line_count), ("busy", "out", None), ("triggered", "out", None),
             ("done", "out", None), ("rd_addr", "in", model.address_width), ("rd_data", "out", model.sample_width)}
    if kind == "startup_scope":
        return ports | {("first_valid", "out", model.address_width)}
    return ports | {("arm", "in", None), ("force_trigger", "in", None), ("window_count", "out", model.address_width)}


def expected_constants(kind, arguments):
    """Type and value of each constant of the package."""
    same = ["CAPTURE_DEPTH", "CAPTURE_WIDTH", "INPUT_LINE_COUNT", "TRIGGER_LINE_COUNT"]
    depth, before = number(arguments, "CAPTURE_DEPTH"), number(arguments, "PRE_TRIGGER_SAMPLES")
    constants = {}
    if kind == "startup_scope":
        constants["PRE_TRIGGER_SAMPLES"] = ("integer", str(before))
        constants["STARTUP_TRIG_VALUE"] = ("std_logic_vector(trigger_line_count-1 downto 0)",
                                           arguments["%%STARTUP_TRIG_VALUE%%"])
    else:
        same += ["WINDOW_CAPTURE_LENGTH", "USER_DATA_DELAY", "STORE_TRIGGER", "STORE_WINDOW"]
        width = sum(number(arguments, key) for key in ("INPUT_LINE_COUNT", "STORE_TRIGGER", "STORE_WINDOW"))
        constants["PRE_TRIGGER_SAMPLES"] = ("integer", str(min(before, depth - 1)))
        constants["WINDOW_COUNT"] = ("integer", str(depth // number(arguments, "WINDOW_CAPTURE_LENGTH")))
        constants["SAMPLE_WIDTH"] = ("integer", str(width))
        constants["MULTIPLE_TRIGGER_LEVEL"] = ("boolean", arguments["%%MULTIPLE_TRIGGER_LEVEL%%"])
        for key in ("TRIGGER_MODE", "CAPTURE_MODE"):
            constants[key] = ("string", arguments[f"%%{key}%%"])
    constants.update((key, ("integer", arguments[f"%%{key}%%"])) for key in same)
    return constants


def check_rules(kind, arguments, model, content):
    check_text("the scope", content)
    text = content.decode("ascii")
    entity = arguments["%%ENTITY_NAME%%"]
    require("%%" not in text, "a key of the argument dictionary is left over")
    check_header("the scope", text, IP_NAMES[kind], entity)
    header = re.match(r"(--[^\n]*\n)+", text).group(0)
    for key in ("APPLICATION", "DATE", "INPUT_LINE_COUNT", "CAPTURE_DEPTH"):
        require(f"  {arguments[f'%%{key}%%']}\n" in header, f"the header does not show {key}")
    check_vhdl("the scope", text, entity)
    code = re.sub(r"--[^\n]*", "", text)
    ports = re.search(r"\bport\s*\((.*?)\)\s*;\s*end\b", code, re.S).group(1)
    found = {(name, direction, int(high) + 1 if high else None) for name, direction, high in re.findall(
        r"(\w+)\s*:\s*(\w+)\s+std_logic(?:_vector\((\d+) downto 0\))?", ports)}
    require(found == expected_ports(kind, model), f"the ports differ: {found ^ expected_ports(kind, model)}")
    package = re.search(rf"package {entity}_pkg is(.*?)end package", code, re.S).group(1)
    constants = {name: (type_name.lower().replace(" - ", "-").strip(), value) for name, type_name, value in re.findall(
        r"constant\s+(\w+)\s*:\s*([^:]+):=\s*([^;]+);", package)}
    require(constants == expected_constants(kind, arguments), f"the package has {constants}")


def run_model(kind, arguments, seed, is_long):
    """A model that has seen its inputs, and the outputs expected from it."""
    model = MODELS[kind](arguments)
    stimulus = inputs.KINDS[kind](model, seed)
    if model.depth <= LARGEST_MINIATURE:
        inputs.MINIATURE[kind](stimulus, 60000 if is_long else 8000)
    elif is_long or model.depth <= LARGEST_FILLED:
        inputs.REAL[kind](stimulus, 4 if is_long else 2)
    else:
        inputs.BRIEF[kind](stimulus)
        return model, stimulus.expected
    require(model.events.get("captured", 0) > 1, "the inputs gave no two captures")
    return model, stimulus.expected


def check_simulation(ghdl, kind, arguments, source, seed, is_long, **options):
    """Remark on the simulation, and how often each event of the model came."""
    model, expected = run_model(kind, arguments, seed, is_long)
    lines = simulate(ghdl, kind, arguments["%%ENTITY_NAME%%"], model, source, **options)
    samples = compare(kind, model, expected, lines)
    captures = model.events.get("captured", 0)
    require(captures == 0 or samples >= model.depth - model.before, f"only {samples} samples were read")
    return f"{captures} captures, {samples} samples read, {len(lines)} edges", model.events


def check_synthesis(ghdl, arguments, model):
    """The memory is one RAM of exactly the samples, and there is no latch."""
    entity = arguments["%%ENTITY_NAME%%"]
    verilog, notes = ghdl.to_verilog(entity)
    memories = re.findall(r"found RAM.*width: (\d+) bits, depth: (\d+)", notes)
    require(memories == [(str(model.sample_width), str(model.depth))], f"memories found: {memories}\n{notes}")
    (ghdl.directory / "netlist.v").write_text(verilog)
    report = yosys(ghdl.directory, [
        "read_verilog netlist.v", f"hierarchy -check -top {entity}", "proc", "opt", "memory -nomap", "check -assert",
        "select -assert-none t:$dlatch t:$adlatch t:$dlatchsr t:$sr",
        "select -assert-count 1 t:$mem_v2",
        f"select -assert-count 1 t:$mem_v2 r:WIDTH={model.sample_width} %i r:SIZE={model.depth} %i "
        "r:RD_PORTS=1 %i r:RD_CLK_ENABLE=1'1 %i r:WR_PORTS=1 %i r:WR_CLK_ENABLE=1'1 %i",
        "flatten", "opt -full", "wreduce", "opt -full", "techmap", "opt -full",
        "select -assert-none t:$_DLATCH* t:$_SR*", "abc -lut 6", "opt_clean", "stat"])
    cells = {name: int(count) for name, count in re.findall(r"(\$\S+)\s+(\d+)\n", report.rsplit("=== ", 1)[1])}
    flip_flops = sum(count for name, count in cells.items() if "DFF" in name)
    return f"1 memory, {cells.get('$lut', 0)} LUT6, {flip_flops} flip-flops"


def check_netlist(directory, kind, arguments, seed):
    """Simulates what GHDL's synthesis makes of the scope: numbers are vectors there, unknown until the capture."""
    entity = arguments["%%ENTITY_NAME%%"]
    netlist = Ghdl(directory / "08", "08")("--synth", "--out=vhdl", entity)
    netlist = re.sub(r"(?i)use work\.\w+_pkg\.all;\n", "", netlist[netlist.index("library ieee;"):])
    ghdl = Ghdl(directory / "netlist", "08")
    (ghdl.directory / "netlist.vhd").write_text(netlist)
    return check_simulation(ghdl, kind, arguments, "netlist.vhd", seed, False, asserts="disable")[0]


def check(kind, path, arguments, seed, is_long):
    """Raises CheckFailed where a scope is at fault; tells how often each event of the model came."""
    model = MODELS[kind](arguments)
    with tempfile.TemporaryDirectory() as scratch:
        directory = pathlib.Path(scratch)
        with step("rules") as remarks:
            check_rules(kind, arguments, model, path.read_bytes())
            remarks.append("text, header, ports and constants")
        with step("analysis") as remarks:
            for standard in STANDARDS:
                Ghdl(directory / standard, standard).analyse([path])
            remarks.append(", ".join(STANDARDS))
        with step("simulation") as remarks:
            ghdl = Ghdl(directory / "simulation", random.Random(seed).choice(STANDARDS))
            remark, events = check_simulation(ghdl, kind, arguments, path, seed, is_long)
            remarks.append(remark)
        with step("synthesis") as remarks:
            remarks.append(check_synthesis(Ghdl(directory / "08", "08"), arguments, model))
        if is_long or model.depth <= LARGEST_MINIATURE:
            with step("netlist simulation") as remarks:
                remarks.append(check_netlist(directory, kind, arguments, seed + 1))
    return events


def main():
    parser = argparse.ArgumentParser(description="Checks the VHDL of one generated scope.")
    parser.add_argument("kind", choices=KINDS)
    parser.add_argument("file", type=pathlib.Path)
    parser.add_argument("arguments", type=pathlib.Path, help="JSON file with the argument dictionary")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--long", action="store_true", help="more captures")
    options = parser.parse_args()
    try:
        check(options.kind, options.file.resolve(), json.loads(options.arguments.read_text(encoding="utf-8")),
              options.seed, options.long)
    except CheckFailed as fault:
        print(f"FAILED {options.kind} {options.file} (seed {options.seed}): {fault}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
