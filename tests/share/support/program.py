"""Generates with the program's own forms, by way of form_driver."""

import json
import os
import pathlib
import re
import subprocess
import tempfile

from hdl_tools import require


class Program:
    """The forms of the IPs below an installation prefix."""

    def __init__(self, driver, prefix):
        self.driver = driver
        self.environment = dict(os.environ, ORVANE_PREFIX=str(prefix), QT_QPA_PLATFORM="offscreen")

    def generate(self, jobs):
        """Runs jobs of (IP directory, fields by settings key, set in this order, output path): for each the lines of the console."""
        with tempfile.TemporaryDirectory() as scratch:
            request = pathlib.Path(scratch) / "jobs.json"
            answer = pathlib.Path(scratch) / "results.json"
            request.write_text(json.dumps([
                {"ip": ip, "output": str(output), "fields": [{"key": key, "value": value} for key, value in fields.items()]}
                for ip, fields, output in jobs]))
            subprocess.run([self.driver, request, answer], env=self.environment, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, check=True)
            return json.loads(answer.read_text())


def errors_of(lines):
    return [line for line in lines if line.startswith("E: ")]


def arguments_of(parameter_set, path):
    """The arguments that the program generated the file with, which took its date from the clock."""
    dates = re.findall(r"\d\d/\d\d/\d{4} - \d\d:\d\d", path.read_text())
    require(len(dates) == 1, f"the file shows the dates {dates}")
    return {**parameter_set.arguments(), "%%DATE%%": dates[0]}
