#!/usr/bin/env python3
"""Installs the program, moves the installation, and starts it through a link: it shows its catalogue and generates with the
interpreter that it carries. Nothing secret and nothing of the build folder is installed."""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

import contents

sys.path.insert(0, str(contents.ROOT / "tests/e2e"))
import bridge

PROBE = pathlib.Path(__file__).resolve().parent / "import_probe.py"
GENERATOR = "share/velmora/Orvane/apb_slave_to_serial_master/generator.py"


def check_installation(prefix, build):
    secrets = contents.secrets(build)
    for path in prefix.rglob("*"):
        assert not path.is_symlink(), f"{path} is a link"
        if path.is_file():
            contents.check_mode(path, path.stat().st_mode)
            found = secrets.search(path.read_bytes())
            assert not found, f"{path} holds a private key or a path of the build: {found[0]}"
    contents.check_names({str(path.relative_to(prefix)) for path in prefix.rglob("*")})


def generate(launcher, folder):
    folder.mkdir()
    return pathlib.Path(bridge.generate([launcher], None, str(folder)))


def check_library(prefix):
    """The interpreter library is the one that is carried, wherever the installation stands."""
    loaded = subprocess.run(["ldd", prefix / "libexec/velmora/velmora"], check=True, stdout=subprocess.PIPE, text=True).stdout
    library = re.search(r"libpython2\.7\S* => (.+) \(0x", loaded)
    assert library and pathlib.Path(library[1]).resolve() == prefix / contents.CARRIED_PYTHON / "lib/libpython2.7.so.1.0", loaded


def check_interpreter(prefix, directory):
    report = json.loads((directory / "report.json").read_text())
    home = str(prefix / contents.CARRIED_PYTHON)
    strange = [path for path in report["path"] + report["files"] if not path.startswith(home + "/")]
    assert (report["prefix"], strange, report["failures"]) == (home, [], []), report


def main(build):
    with tempfile.TemporaryDirectory(prefix="velmora-installation-") as temporary:
        folder = pathlib.Path(temporary).resolve()
        subprocess.run(["cmake", "--install", build, "--strip", "--prefix", folder / "first"], check=True, stdout=subprocess.DEVNULL)
        check_installation(folder / "first", build)
        moved = (folder / "first").rename(folder / "a place with blanks")
        check_library(moved)
        launcher = folder / "velmora"
        launcher.symlink_to(moved.relative_to(folder) / "bin/velmora")
        bridge.check_files(generate(launcher, folder / "bridge"))

        subprocess.run([moved / "bin/velmora-seal", "seal", PROBE, "-o", moved / GENERATOR, "--key", moved / "etc/velmora/seal/scripts",
                        "--signer", build / "keys/signer.private.pem", "--force"], check=True, stdout=subprocess.DEVNULL)
        check_interpreter(moved, generate(launcher, folder / "probe"))


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
