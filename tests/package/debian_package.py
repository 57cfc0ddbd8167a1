#!/usr/bin/env python3
"""Makes the Debian package and checks what it holds, whom that belongs to, and what it depends on."""

import pathlib
import subprocess
import sys
import tarfile
import tempfile

import contents


def make_package(build, folder):
    subprocess.run(["cpack", "--config", build / "CPackConfig.cmake", "-B", folder], check=True, stdout=subprocess.DEVNULL)
    package, = folder.glob("velmora_1.0.0_*.deb")
    return package


def tell(*command):
    return subprocess.run(["dpkg-deb", *command], check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


def read_members(package):
    """The members by path."""
    with subprocess.Popen(["dpkg-deb", "--fsys-tarfile", package], stdout=subprocess.PIPE) as process:
        with tarfile.open(fileobj=process.stdout, mode="r|") as archive:
            return {member.name.removeprefix("./"): member for member in archive}


def check(package):
    members = read_members(package)
    for name, member in members.items():
        contents.check_mode(name, member.mode)
        assert (member.uname, member.gname) == ("root", "root"), f"{name} belongs to {member.uname}:{member.gname}"
    contents.check_names({name.removeprefix("usr/") for name in members})
    # Everything in /etc, and nothing else, is kept by dpkg when an administrator has changed it.
    configuration = {"/" + name for name, member in members.items() if member.isfile() and name.startswith("etc/")}
    assert set(tell("--info", package, "conffiles").split()) == configuration, configuration
    depends = tell("--field", package, "Depends")
    for needed in ("libqt5webkit5", "libqt5svg5", "libssl3", "libliquid1", "libkf5syntaxhighlighting5", "libqwt-qt5-6",
                   "fonts-dejavu-core"):
        assert needed in depends, f"{needed} is missing in: {depends}"
    for impossible in ("python", "libffi7", "libssl1"):
        assert impossible not in depends, f"Debian 12 has no {impossible}: {depends}"


if __name__ == "__main__":
    with tempfile.TemporaryDirectory(prefix="velmora-package-") as directory:
        check(make_package(pathlib.Path(sys.argv[1]), pathlib.Path(directory)))
