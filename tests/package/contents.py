"""What must hold for the files of every installation."""

import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[2]
CARRIED_PYTHON = "lib/velmora/python2.7"


def check_mode(name, mode):
    assert not mode & 0o022, f"{name} can be written by others than its owner"
    assert mode & 0o044 == 0o044, f"{name} cannot be read by everyone"


def check_names(names):
    """The programs are there, and the carried interpreter has what it needs and nothing beside."""
    needed = {f"bin/velmora{tool}" for tool in ("", "-generate", "-seal")}
    needed.add("lib/velmora/velmora_design.so")
    needed |= {f"{CARRIED_PYTHON}/lib/{name}" for name in ("libpython2.7.so.1.0", "python2.7/os.pyc")}
    assert needed <= names, f"missing: {needed - names}"
    needless = [name for name in names if re.search(rf"^{CARRIED_PYTHON}/.*(\.py$|/(_ssl|_ctypes|_hashlib)\.|/test/)", name)]
    assert not needless, f"carried needlessly: {needless}"


def secrets(build):
    """A pattern of what must not be installed: the bodies of the private keys, and paths into the source and build folders."""
    keys = [re.escape(key.read_bytes().splitlines()[1]) for key in (build / "keys").glob("*.private.pem")]
    assert keys, "the build folder holds no private keys to look for"
    inside = "|".join(re.escape(path.name) for path in ROOT.iterdir())
    paths = rf"(?<![\w.-])(?:{re.escape(str(ROOT))}/(?:{inside})|{re.escape(str(build))})(?![\w.-])"
    return re.compile(b"|".join([*keys, paths.encode()]))
