"""Generates with the program's own forms, by way of form_driver."""

import json
import os
import pathlib
import subprocess
import tempfile


class Program:
    """The forms of the IPs below an installation prefix."""

    def __init__(self, driver, prefix):
        self.driver = driver
        self.environment = dict(os.environ, ORVANE_PREFIX=str(prefix), QT_QPA_PLATFORM="offscreen")

    def generate(self, jobs):
        """Runs jobs of (IP directory, fields by settings key, output path): for each the lines of the console."""
        with tempfile.TemporaryDirectory() as scratch:
            request = pathlib.Path(scratch) / "jobs.json"
            answer = pathlib.Path(scratch) / "results.json"
            request.write_text(json.dumps([{"ip": ip, "fields": fields, "output": str(output)}
                                           for ip, fields, output in jobs]))
            subprocess.run([self.driver, request, answer], env=self.environment, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, check=True)
            return json.loads(answer.read_text())


def add_options(parser):
    parser.add_argument("--driver", help="generate with the program's forms by this form_driver")
    parser.add_argument("--prefix", help="installation prefix of the program")
