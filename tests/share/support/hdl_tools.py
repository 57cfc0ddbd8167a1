"""Runs the HDL tools for the hardware checks of the catalogue's IPs."""

import json
import re
import subprocess
import time


class CheckFailed(Exception):
    """A check found the generated files at fault; the text says what and where."""


def run(command, directory):
    """Runs a tool in a directory and returns what it printed; an exit status other than 0 is a failed check."""
    command = [str(word) for word in command]
    result = subprocess.run(command, cwd=directory, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                            errors="replace", check=False)
    if result.returncode != 0:
        raise CheckFailed(f"{' '.join(command)}: exit status {result.returncode}\n{result.stdout[-4000:]}")
    return result.stdout


def require(condition, message):
    if not condition:
        raise CheckFailed(message)


def step(title, check, *arguments):
    """Runs a check and prints one line when it has passed: its title, what it returns, and its time."""
    start = time.monotonic()
    remark = check(*arguments)
    print(f"ok    {title}: {remark} ({time.monotonic() - start:.1f} s)", flush=True)


class Ghdl:
    """One GHDL library in a folder of its own."""

    def __init__(self, directory, standard):
        self.directory = directory
        self.standard = standard
        directory.mkdir(parents=True, exist_ok=True)

    def __call__(self, command, *arguments):
        return run(["ghdl", command, f"--std={self.standard}", *arguments], self.directory)

    def analyse(self, files):
        output = self("-a", *files)
        require(output == "", f"ghdl -a --std={self.standard} is not silent:\n{output}")

    def make(self, files, top):
        """Imports the files in the order given and lets GHDL find the order of analysis."""
        self("-i", *files)
        output = self("-m", top)
        require("warning" not in output, f"ghdl -m --std={self.standard} {top}:\n{output}")

    def run_bench(self, bench, *options):
        """Runs the delivered bench of an analysed entity; it must say no more than that it has passed."""
        self.analyse([bench])
        self("-e", bench.stem)
        output = self("-r", bench.stem, *options)
        passed = re.fullmatch(rf"[^\n]*note\): {bench.stem}: PASSED \(([1-9]\d*) checks\)\n", output)
        require(passed, f"the bench does not end as it should:\n{output[-4000:]}")
        return f"{passed.group(1)} checks, standard {self.standard}"

    def to_verilog(self, top):
        """Synthesises the top entity: the Verilog netlist and the tool's remarks."""
        command = ["ghdl", "--synth", f"--std={self.standard}", "--out=verilog", top]
        result = subprocess.run(command, cwd=self.directory, capture_output=True, text=True, check=False)
        require(result.returncode == 0, f"{' '.join(command)}:\n{result.stderr[-4000:]}")
        require("warning" not in result.stderr, f"{' '.join(command)} gives warnings:\n{result.stderr[-4000:]}")
        return result.stdout, result.stderr

    def netlist(self, top, directory):
        """What synthesis makes of the top entity, analysed as VHDL in a library of its own."""
        netlist = self("--synth", "--out=vhdl", top)
        result = Ghdl(directory, "08")
        (directory / "netlist.vhd").write_text(
            re.sub(r"(?i)use work\.\w+_pkg\.all;\n", "", netlist[netlist.index("library ieee;"):]))
        result.analyse(["netlist.vhd"])
        return result


def run_yosys(commands, directory):
    """What Yosys printed. Its ABC has aborted on an input that it took before and after: it gets a second chance, once."""
    command = ["yosys", "-Q", "-p", "; ".join(commands)]
    try:
        return run(command, directory)
    except CheckFailed as fault:
        if "ABC: execution of command" not in str(fault) or "return code 134" not in str(fault):
            raise
        return run(command, directory)


def synthesise(ghdl, top, commands, edited=str):
    """GHDL's remarks on the synthesis of the top entity and what Yosys printed; latches and warnings are failures."""
    verilog, remarks = ghdl.to_verilog(top)
    require("latch" not in remarks, f"GHDL finds a latch:\n{remarks}")
    (ghdl.directory / "netlist.v").write_text(edited(verilog))
    commands = ["read_verilog netlist.v", f"hierarchy -check -top {top}", *commands]
    output = run_yosys(commands, ghdl.directory)
    warnings = [line for line in output.splitlines() if line.startswith("Warning")]
    require(not warnings, "Yosys warns:\n" + "\n".join(warnings))
    return remarks, output


def check_one_memory(ghdl, top, width, depth):
    """The memory is one RAM of these words with a clocked port for each direction, and there is no latch."""
    notes, _ = synthesise(ghdl, top, [
        "proc", "opt", "memory -nomap", "check -assert", "select -assert-none t:$dlatch t:$adlatch t:$dlatchsr t:$sr",
        "select -assert-count 1 t:$mem_v2",
        f"select -assert-count 1 t:$mem_v2 r:WIDTH={width} %i r:SIZE={depth} %i "
        "r:RD_PORTS=1 %i r:RD_CLK_ENABLE=1'1 %i r:WR_PORTS=1 %i r:WR_CLK_ENABLE=1'1 %i"])
    memories = re.findall(r"found RAM.*width: (\d+) bits, depth: (\d+)", notes)
    require(memories == [(str(width), str(depth))], f"memories found: {memories}\n{notes}")
    return "1 memory, no latch"


def synthesised_module(ghdl, top):
    """The one module of the netlist that Yosys wrote with "write_json netlist.json"."""
    modules = json.loads((ghdl.directory / "netlist.json").read_text())["modules"]
    require(list(modules) == [top], f"the synthesised modules are {', '.join(modules)}")
    return modules[top]


def cell_counts(report):
    """Look-up tables, flip-flops and memories of the last statistics that Yosys printed."""
    cells = {name: int(count) for name, count in re.findall(r"(\$\S+)\s+(\d+)\n", report.rsplit("=== ", 1)[1])}
    return cells.get("$lut", 0), sum(count for name, count in cells.items() if "DFF" in name), cells.get("$mem_v2", 0)
