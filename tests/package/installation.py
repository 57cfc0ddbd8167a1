#!/usr/bin/env python3
"""Installs the program, moves the installation, and starts it through a link: it shows its catalogue and generates with the
interpreter that it carries. Nothing secret and nothing of the build folder is installed."""

import argparse
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import contents

sys.path.insert(0, str(contents.ROOT / "tests/e2e"))
import bridge

HERE = pathlib.Path(__file__).resolve().parent
GENERATOR = "share/velmora/Orvane/apb_slave_to_serial_master/generator.py"


def install(build, prefix):
    subprocess.run(["cmake", "--install", build, "--strip", "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)


def check_installation(prefix, build):
    files = [path for path in prefix.rglob("*") if path.is_file()]
    contents.check_files({str(path.relative_to(prefix)) for path in files})
    secrets = contents.secrets(build)
    for path in files:
        contents.check_mode(path, path.stat().st_mode)
        content = path.read_bytes()
        assert not any(secret in content for secret in secrets), f"{path} holds a private key or a path of the build"
    for path in prefix.rglob("*"):
        assert not path.is_symlink(), f"{path} is a link"


def generate(launcher, folder):
    folder.mkdir()
    return pathlib.Path(bridge.generate([launcher], None, str(folder)))


def check_library(prefix):
    """The interpreter library is the one that is carried, wherever the installation stands."""
    loaded = subprocess.run(["ldd", prefix / "libexec/velmora/velmora"], check=True, stdout=subprocess.PIPE, text=True).stdout
    library = re.search(r"libpython2\.7\S* => (.+) \(0x", loaded)
    assert library, loaded
    assert pathlib.Path(library[1]).resolve() == prefix / contents.CARRIED_PYTHON / "lib/libpython2.7.so.1.0", loaded


def check_interpreter(prefix, directory):
    report = json.loads((directory / "report.json").read_text())
    home = str(prefix / contents.CARRIED_PYTHON)
    assert report["prefix"] == home, report["prefix"]
    strange = [path for path in report["path"] + report["files"] if not path.startswith(home + "/")]
    assert not strange, f"not from the installation: {strange}"
    assert not report["failures"], report["failures"]
    print("the carried interpreter loaded", len(report["files"]), "modules")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=pathlib.Path)
    build = parser.parse_args().build
    with tempfile.TemporaryDirectory(prefix="velmora-installation-") as temporary:
        folder = pathlib.Path(temporary).resolve()
        install(build, folder / "first")
        check_installation(folder / "first", build)
        moved = folder / "a place with blanks"
        os.rename(folder / "first", moved)
        check_library(moved)
        launcher = folder / "velmora"
        launcher.symlink_to(moved.relative_to(folder) / "bin/velmora")

        bridge.check_files(generate(launcher, folder / "bridge"))

        key_directory = moved / "etc/velmora/seal/scripts"
        subprocess.run([moved / "bin/velmora-seal", "seal", HERE / "import_probe.py", "-o", moved / GENERATOR, "--key", key_directory,
                        "--signer", build / "keys/signer.private.pem", "--force"], check=True, stdout=subprocess.DEVNULL)
        check_interpreter(moved, generate(launcher, folder / "probe"))
    return 0


if __name__ == "__main__":
    sys.exit(main())
