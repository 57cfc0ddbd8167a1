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
ECHO_FILES = ECHO.replace("json.dumps(argDict)", "{'arguments': json.dumps(argDict)}")


class Generated(typing.NamedTuple):
    """A file or directory that the program wrote, the arguments that its script got, the errors that it reported, and the facts."""

    path: pathlib.Path
    arguments: dict
    errors: list
    facts: dict


def configuration(ip, form):
    """The text of the IP's configuration with the form's fields; tables give a line for each row."""
    lines = dict(line.split(" ", 1) for line in (CATALOGUE / ip / "config").read_text().splitlines())
    lines = {key: lines[key] for key in ("company", "name", "uid")}
    for key, value in form.fields().items():
        if isinstance(value, list):
            lines.update((f"{key}/{row}", ", ".join(json.dumps(str(cell), ensure_ascii=False) for cell in cells))
                         for row, cells in enumerate(value))
        else:
            lines[key] = json.dumps(str(value))
    return "".join(f"{key} = {value}\n" for key, value in lines.items())


def tell(prefix, command, files):
    """What the program tells of each configuration, called with a command and the files."""
    if not files:
        return []
    command = [BUILD / "bin/velmora-generate", command, "--json", *files]
    outcome = subprocess.run(command, env={**ENVIRONMENT, "ORVANE_PREFIX": str(prefix)}, stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL, text=True, check=False)
    return json.loads(outcome.stdout)


def make_installation(ip, prefix, script=ECHO):
    """An installation of the IP with a script of the test's own, by default one that returns its arguments."""
    directory = prefix / "share/velmora/Orvane" / ip
    directory.mkdir(parents=True)
    (prefix / "etc").symlink_to(BUILD / "prefix/etc")
    for name in ("config", "form.json"):
        if (CATALOGUE / ip / name).exists():
            (directory / name).write_bytes((CATALOGUE / ip / name).read_bytes())
    (directory / "plain.py").write_text(script)
    subprocess.run([BUILD / "bin/velmora-seal", "seal", directory / "plain.py", "-o", directory / "generator.py", "--key",
                    BUILD / "keys/scripts", "--signer", BUILD / "keys/signer.private.pem"], check=True, stdout=subprocess.DEVNULL)


def arguments_of(ip, forms):
    """The argument dictionary of each form."""
    with tempfile.TemporaryDirectory() as folder:
        prefix = pathlib.Path(folder) / "prefix"
        described = CATALOGUE / ip / "form.json"
        has_files = described.exists() and json.loads(described.read_text())["result"] == "files"
        make_installation(ip, prefix, ECHO_FILES if has_files else ECHO)
        told = write_and_run(prefix, ip, forms, prefix.parent)
        refused = [each["messages"] for each in told if "output" not in each]
        assert not refused, f"the form refuses {refused}"
        return [json.loads(pathlib.Path(each["output"], "arguments" if has_files else "").read_text()) for each in told]


def generate(ip, forms, directory):
    """What the program makes of each form, in a folder of its own below the directory."""
    ran = write_and_run(BUILD / "prefix", ip, forms, directory)
    previews = tell(BUILD / "prefix", "preview", [told["file"] for told in ran])
    return [Generated(pathlib.Path(told.get("output", "")), arguments,
                      [message["text"] for message in told["messages"] if message["kind"] == "error"],
                      {fact["label"]: fact["value"] for fact in preview["facts"]})
            for told, arguments, preview in zip(ran, arguments_of(ip, forms), previews)]


def write_and_run(prefix, ip, forms, directory):
    files = [directory / f"{ip}_{number}" / "design.velmora" for number in range(len(forms))]
    for form, file in zip(forms, files):
        file.parent.mkdir()
        file.write_text(configuration(ip, form), encoding="utf-8")
    return tell(prefix, "run", files)
