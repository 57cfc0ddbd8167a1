"""Generates a design with velmora-generate from a build folder."""

import os
import re
import subprocess

ENTITY = re.compile(r"(?im)^entity\s+(\w+)\s+is")


def generate(build, configuration, folder):
    """(entity, VHDL files without test benches) of the IP that a configuration's text describes, written below the folder."""
    text = configuration.read_text()
    folder.mkdir(parents=True)
    copy = folder / configuration.name
    copy.write_text(text)
    environment = dict(os.environ, ORVANE_PREFIX=str(build / "prefix"), QT_QPA_PLATFORM="offscreen")
    subprocess.run([build / "bin/velmora-generate", "run", "--quiet", copy], env=environment, check=True)
    files = [path for path in sorted(folder.rglob("*.vhd")) if not path.name.startswith("tb_")]
    return re.search(r"(?m)^Entity\s*=\s*(\w+)", text).group(1), files


def entity_of(path):
    """The entity of a file that holds one."""
    return ENTITY.search(path.read_text()).group(1)
