#!/usr/bin/env python3
"""Makes the Debian package and checks what it holds, whom that belongs to, and what it depends on."""

import argparse
import pathlib
import re
import subprocess
import sys
import tarfile
import tempfile

import contents


def make_package(build, folder):
    subprocess.run(["cpack", "--config", build / "CPackConfig.cmake", "-B", folder], check=True, stdout=subprocess.DEVNULL)
    packages = list(folder.glob("*.deb"))
    assert len(packages) == 1 and re.fullmatch(r"velmora_1\.0\.0_[a-z0-9]+\.deb", packages[0].name), packages
    return packages[0]


def read_field(package, name):
    return subprocess.run(["dpkg-deb", "--field", package, name], check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


def read_members(package):
    """The members by path."""
    with subprocess.Popen(["dpkg-deb", "--fsys-tarfile", package], stdout=subprocess.PIPE) as process:
        with tarfile.open(fileobj=process.stdout, mode="r|") as archive:
            return {member.name.removeprefix("./"): member for member in archive}


def check_members(members):
    for name, member in members.items():
        contents.check_mode(name, member.mode)
        assert (member.uname, member.gname) == ("root", "root"), f"{name} belongs to {member.uname}:{member.gname}"
    files = {name for name, member in members.items() if member.isfile()}
    added = {"usr/share/doc/velmora/changelog.gz", "usr/share/lintian/overrides/velmora"}
    assert added <= files, added - files
    contents.check_files({re.sub(r"^usr/|(?<=\.1)\.gz$", "", name) for name in files - added})


def check_configuration(package, members):
    """Everything in /etc, and nothing else, is kept by dpkg when an administrator has changed it."""
    listed = subprocess.run(["dpkg-deb", "--info", package, "conffiles"], check=True, stdout=subprocess.PIPE, text=True).stdout
    expected = {"/" + name for name, member in members.items() if member.isfile() and name.startswith("etc/")}
    assert set(listed.split()) == expected, listed


def check_dependencies(package):
    depends = read_field(package, "Depends")
    for needed in ("libqt5webkit5", "libqt5svg5", "libssl3", "fonts-dejavu-core"):
        assert needed in depends, f"{needed} is missing in: {depends}"
    for impossible in ("python", "libffi7", "libssl1"):
        assert impossible not in depends, f"Debian 12 has no {impossible}: {depends}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=pathlib.Path)
    build = parser.parse_args().build
    with tempfile.TemporaryDirectory(prefix="velmora-package-") as folder:
        package = make_package(build, pathlib.Path(folder))
        members = read_members(package)
        check_members(members)
        check_configuration(package, members)
        check_dependencies(package)
        print(f"{package.name}: {package.stat().st_size} bytes, {read_field(package, 'Installed-Size')} KiB installed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
