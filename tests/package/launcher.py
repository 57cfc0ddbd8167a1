#!/usr/bin/env python3
"""Tests the launcher of the installed programs with a program of its own, which tells how it was started."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

LAUNCHER = pathlib.Path(__file__).resolve().parents[2] / "packaging" / "launcher"
PROGRAM = """#!/bin/sh
printf '%s\\0' "${ORVANE_PREFIX-unset}" "${VELMORA_SEAL_DIR-unset}" "$@"
exit 37
"""


class LauncherTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="velmora launcher-")).resolve()
        self.addCleanup(shutil.rmtree, self.folder)
        self.prefix = self.folder / "a prefix"
        self.launcher = self.prefix / "bin" / "tool"
        self.launcher.parent.mkdir(parents=True)
        shutil.copy(LAUNCHER, self.launcher)
        program = self.prefix / "libexec" / "velmora" / "tool"
        program.parent.mkdir(parents=True)
        program.write_text(PROGRAM)
        program.chmod(0o755)

    def start(self, command, *arguments, **environment):
        """Starts the launcher: prefix, key directory and arguments that the program sees."""
        clean = {key: value for key, value in os.environ.items() if key not in ("ORVANE_PREFIX", "VELMORA_SEAL_DIR")}
        outcome = subprocess.run([command, *arguments], env={**clean, **environment}, cwd=self.folder,
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual((outcome.returncode, outcome.stderr), (37, ""))
        prefix, keys, *seen = outcome.stdout.split("\0")[:-1]
        return prefix, keys, seen

    def test_arguments_and_status_are_passed_on(self):
        arguments = ["", "two words", "-no-about", "--", "a\nb", "$HOME `id` \\ \" '", "*"]
        self.assertEqual(self.start(self.launcher, *arguments), (str(self.prefix), "unset", arguments))

    def test_the_installation_is_found_from_every_way_to_it(self):
        links = self.folder / "links"
        links.mkdir()
        (links / "relative").symlink_to("../a prefix/bin/tool")
        (links / "chain").symlink_to("relative")
        (self.folder / "other prefix").symlink_to(self.prefix)
        path = "%s:%s" % (self.launcher.parent, os.environ["PATH"])
        for name, command, environment in [
                ("link to a link", links / "chain", {}), ("linked directory", self.folder / "other prefix/bin/tool", {}),
                ("relative path", "a prefix/bin/tool", {}), ("search path", "tool", {"PATH": path})]:
            with self.subTest(name):
                self.assertEqual(self.start(command, **environment)[0], str(self.prefix))

    def test_the_user_chooses_prefix_and_keys(self):
        for name, environment, expected in [
                ("an empty prefix", {"ORVANE_PREFIX": ""}, (str(self.prefix), "unset")),
                ("the system's prefix", {"ORVANE_PREFIX": "/usr"}, ("/usr", "/etc/velmora/seal")),
                ("both", {"ORVANE_PREFIX": "/usr", "VELMORA_SEAL_DIR": "/keys"}, ("/usr", "/keys"))]:
            with self.subTest(name):
                self.assertEqual(self.start(self.launcher, **environment)[:2], expected)

    def test_a_program_that_was_killed_is_reported_as_such(self):
        (self.prefix / "libexec/velmora/tool").write_text("#!/bin/sh\nkill -TERM $$\n")
        self.assertEqual(subprocess.run([self.launcher], check=False).returncode, -15)


if __name__ == "__main__":
    sys.exit(unittest.main())
