"""Runs the HDL tools for the hardware checks of the catalogue's IPs."""

import contextlib
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


@contextlib.contextmanager
def step(title):
    """Prints one line when the step has passed: its title, what it adds to the yielded list, and its time."""
    remarks = []
    start = time.monotonic()
    yield remarks
    print(f"ok    {title}: {', '.join(remarks)} ({time.monotonic() - start:.1f} s)", flush=True)


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

    def simulate(self, top, stop_time):
        """What the simulation printed; it must end by itself before the stop time and without a warning."""
        output = self("-r", top, f"--stop-time={stop_time}")
        require("stopped by" not in output, f"{top} does not end within {stop_time}:\n{output[-4000:]}")
        require("warning" not in output, f"{top} gives warnings:\n{output[:4000]}")
        return output

    def to_verilog(self, top):
        """Synthesises the top entity: the Verilog netlist and the tool's remarks."""
        command = ["ghdl", "--synth", f"--std={self.standard}", "--out=verilog", top]
        result = subprocess.run(command, cwd=self.directory, capture_output=True, text=True, check=False)
        require(result.returncode == 0, f"{' '.join(command)}:\n{result.stderr[-4000:]}")
        require("warning" not in result.stderr, f"{' '.join(command)} gives warnings:\n{result.stderr[-4000:]}")
        return result.stdout, result.stderr


def yosys(directory, commands):
    """What Yosys printed; a warning is a failed check."""
    output = run(["yosys", "-Q", "-p", "; ".join(commands)], directory)
    warnings = [line for line in output.splitlines() if line.startswith("Warning")]
    require(not warnings, "Yosys warns:\n" + "\n".join(warnings))
    return output
