#!/usr/bin/env python3
"""What a designer does with the bridge: start the program, open the IPs page, type an entity name, press Generate, choose a
directory; then compile, simulate and synthesise what stands there."""

import argparse
import os
import subprocess
import sys
import tempfile

from desktop import FIRST_FIELD, Desktop

ENTITY = "spi_bridge"


def generate(command, prefix, folder):
    """Generates the bridge into the folder with the program that the command starts; returns the directory of the files."""
    with Desktop(command, prefix, folder) as desktop:
        desktop.show_ip("APB")
        desktop.click(*FIRST_FIELD)
        desktop.type(ENTITY)
        desktop.key("Tab", "Tab", "space")  # over Reset to Generate
        desktop.dialog("Choose a directory")
        desktop.key("Return")
        desktop.wait_for("end of the generation", lambda: "Generating done" in desktop.console())
        console = desktop.console()
        assert "Failed" not in console, console
    return os.path.join(folder, ENTITY)


def check_files(directory):
    files = sorted(os.path.relpath(os.path.join(where, name), directory)
                   for where, _, names in os.walk(directory) for name in names)
    print("generated:", " ".join(files))
    expected = ["doc/{0}.md", "include/{0}_regs.vh", "rtl/{0}.vhd", "rtl/{0}_engine.vhd", "rtl/{0}_fifo.vhd", "rtl/{0}_pkg.vhd",
                "sim/tb_{0}.vhd"]
    assert files == [name.format(ENTITY) for name in expected], files


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    parser.add_argument("prefix")
    parser.add_argument("check", help="the hardware check of the bridge")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="velmora-e2e-") as folder:
        directory = generate([options.program], options.prefix, folder)
        check_files(directory)
        return subprocess.call([sys.executable, options.check, directory, ENTITY])


if __name__ == "__main__":
    sys.exit(main())
