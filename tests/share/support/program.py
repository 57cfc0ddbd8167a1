"""Generates with velmora-generate, from configurations as its users write them."""

import json
import os
import pathlib
import subprocess
import tempfile
import typing

from generator import CATALOGUE, ROOT

BUILD = pathlib.Path(os.environ.get("VELMORA_BUILD", ROOT / "build/release"))
ENVIRONMENT = {**os.environ, "SOURCE_DATE_EPOCH": "1767225600"}

ECHO = "import json\n\n\ndef generate(argDict):\n    return json.dumps(argDict)\n"


class Generated(typing.NamedTuple):
    """A file that the program wrote, the arguments that its script got, and the errors that it reported."""

    path: pathlib.Path
    arguments: dict
    errors: list


def configuration(ip, form):
    """The text of the IP's configuration with the form's fields; tables give a line for each row."""
    lines = dict(line.split(" ", 1) for line in (CATALOGUE / ip / "config").read_text().splitlines())
    lines = {key: lines[key] for key in ("company", "name", "uid")}
    for key, value in form.fields().items():
        if isinstance(value, list):
            lines.update((f"{key}/{row}", ", ".join(json.dumps(str(cell)) for cell in cells)) for row, cells in enumerate(value))
        else:
            lines[key] = json.dumps(str(value))
    return "".join(f"{key} = {value}\n" for key, value in lines.items())


def run(prefix, files):
    """Generates from configurations; returns what the program tells of each."""
    command = [BUILD / "bin/velmora-generate", "run", "--json", *files]
    outcome = subprocess.run(command, env={**ENVIRONMENT, "ORVANE_PREFIX": str(prefix)}, stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL, text=True, check=False)
    return json.loads(outcome.stdout)


def make_echo(ip, prefix):
    """An installation of the IP with a script that returns its arguments."""
    directory = prefix / "share/velmora/Orvane" / ip
    directory.mkdir(parents=True)
    (prefix / "etc").symlink_to(BUILD / "prefix/etc")
    (directory / "config").write_bytes((CATALOGUE / ip / "config").read_bytes())
    (directory / "echo.py").write_text(ECHO)
    subprocess.run([BUILD / "bin/velmora-seal", "seal", directory / "echo.py", "-o", directory / "generator.py", "--key",
                    BUILD / "keys/scripts", "--signer", BUILD / "keys/signer.private.pem"], check=True, stdout=subprocess.DEVNULL)


def arguments_of(ip, forms):
    """The argument dictionary of each form."""
    with tempfile.TemporaryDirectory() as folder:
        prefix = pathlib.Path(folder) / "prefix"
        make_echo(ip, prefix)
        told = write_and_run(prefix, ip, forms, prefix.parent)
        refused = [each["messages"] for each in told if "output" not in each]
        assert not refused, f"the form refuses {refused}"
        return [json.loads(pathlib.Path(each["output"]).read_text()) for each in told]


def generate(ip, forms, directory):
    """What the program makes of each form, in a folder of its own below the directory."""
    return [Generated(pathlib.Path(told.get("output", "")), arguments,
                      [message["text"] for message in told["messages"] if message["kind"] == "error"])
            for told, arguments in zip(write_and_run(BUILD / "prefix", ip, forms, directory), arguments_of(ip, forms))]


def write_and_run(prefix, ip, forms, directory):
    files = [directory / f"{ip}_{number}" / "design.velmora" for number in range(len(forms))]
    for form, file in zip(forms, files):
        file.parent.mkdir()
        file.write_text(configuration(ip, form), encoding="utf-8")
    return run(prefix, files)
