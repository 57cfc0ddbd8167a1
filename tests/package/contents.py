"""What an installation consists of."""

import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = ["velmora", "velmora-generate", "velmora-seal"]
CARRIED_PYTHON = "lib/velmora/python2.7"


def expected_files():
    """Every file of an installation, relative to its prefix, the carried interpreter apart. The script key's name is KEY."""
    files = {f"{place}/{name}" for name in PROGRAMS for place in ("bin", "libexec/velmora")}
    files |= {f"share/man/man1/{page.name}" for page in (ROOT / "docs/man").iterdir()}
    files |= {"share/doc/velmora/" + name for name in ("README.md", "copyright", "python2.7-licence.txt")}
    files |= {f"share/doc/velmora/{path.relative_to(ROOT)}" for path in (ROOT / "docs").rglob("*")
              if path.is_file() and path.parent.name != "man"}
    files |= {f"share/icons/hicolor/{size}/apps/velmora.{kind}"
              for size, kind in (("scalable", "svg"), ("256x256", "png"), ("48x48", "png"))}
    files |= {"share/applications/velmora.desktop", "share/metainfo/example.orvane.Velmora.metainfo.xml",
              "share/bash-completion/completions/velmora-generate"}
    files |= {str(path.relative_to(ROOT)) for path in (ROOT / "share/velmora/Orvane").glob("*/*") if path.is_file()}
    files |= {"etc/velmora/seal/" + name
              for name in ("recipients/velmora-local-1.pem", "signers/velmora-local-1.pem", "scripts/KEY.key")}
    return files


def check_files(found):
    """Compares the files of an installation with what is expected; the carried interpreter is looked into by its main files."""
    found = {re.sub(r"scripts/[0-9a-f]{16}\.key$", "scripts/KEY.key", name) for name in found}
    python = {name for name in found if name.startswith(CARRIED_PYTHON + "/")}
    assert {f"{CARRIED_PYTHON}/lib/{name}" for name in ("libpython2.7.so.1.0", "python2.7/os.pyc")} <= python, "no interpreter"
    unwanted = [name for name in python if re.search(r"\.py$|/(_ssl|_ctypes|_hashlib)\.|/test/", name)]
    assert not unwanted, f"carried needlessly: {unwanted}"
    expected = expected_files()
    assert found - python == expected, f"missing: {expected - found}; too many: {found - python - expected}"


def check_mode(name, mode):
    assert not mode & 0o022, f"{name} can be written by others than its owner"
    assert mode & 0o044 == 0o044, f"{name} cannot be read by everyone"


def secrets(build):
    """Texts that must not be installed: the bodies of the private keys, and the places of the source and build folders."""
    keys = list((build / "keys").glob("*.private.pem"))
    assert keys, "the build folder holds no private keys to look for"
    return [key.read_bytes().splitlines()[1] for key in keys] + [str(ROOT).encode(), str(build).encode()]
