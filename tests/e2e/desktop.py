"""Drives the real program on a display of its own, with mouse and keyboard alone."""

import os
import subprocess
import time

TIMEOUT = 120  # seconds for anything that is waited for

# Places in the window of 1000 x 600, at logical pixels from its upper left corner.
IPS_BUTTON = (60, 64)
FIRST_FIELD = (620, 274)


class Desktop:
    """The program, running on the display that the environment names, with settings and a working directory of its own. Without
    a prefix the program is to find its installation by itself. What is clicked and typed waits in the display's queue until the
    program takes it, so nothing waits for the program in between."""

    def __init__(self, command, prefix, folder):
        self.folder = folder
        self.log = open(os.path.join(folder, "console.txt"), "w+")
        environment = dict(os.environ, XDG_CONFIG_HOME=os.path.join(folder, "config"), QT_QPA_PLATFORM="xcb")
        environment.pop("ORVANE_PREFIX", None)
        if prefix:
            environment["ORVANE_PREFIX"] = prefix
        self.process = subprocess.Popen(command, env=environment, cwd=folder, stdout=self.log, stderr=self.log)
        try:
            self.window = self.wait_for("the window", self._find_window)
        except AssertionError:
            self._end()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._end()

    def _end(self):
        self.process.kill()
        self.process.wait()
        self.log.close()

    def console(self):
        self.log.flush()
        with open(self.log.name) as log:
            return log.read()

    def wait_for(self, what, condition):
        deadline = time.monotonic() + TIMEOUT
        while time.monotonic() < deadline:
            result = condition()
            if result:
                return result
            if self.process.poll() is not None:
                break
            time.sleep(0.05)
        raise AssertionError("no %s within %d s; the console holds:\n%s" % (what, TIMEOUT, self.console()))

    def dialog(self, title):
        """Waits for the dialog with that title and gives it the keyboard."""
        found = self.wait_for("dialog '%s'" % title, lambda: self._search("--name", "^%s$" % title))
        self._xdotool("windowfocus", "--sync", found[-1])

    def click(self, x, y):
        """Clicks into the window, at logical pixels from its upper left corner."""
        self._xdotool("mousemove", "--window", self.window, str(x), str(y), "click", "1")

    def show_ip(self, name):
        """Opens the IPs page and finds the IP by its name."""
        self.click(*IPS_BUTTON)
        self.key("ctrl+f")
        self.type(name)
        self.key("Return", "Escape")
        self.wait_for("page of the IP", lambda: self._search("--name", "^%s.* - Velmora$" % name))

    def key(self, *keys):
        self._xdotool("key", *keys)

    def type(self, text):
        self._xdotool("type", "--delay", "5", text)

    def _find_window(self):
        windows = self._search("--onlyvisible", "--name", "^Velmora$")
        if not windows:
            return None
        self._xdotool("windowfocus", "--sync", windows[0])
        return windows[0]

    def _search(self, *arguments):
        result = subprocess.run(["xdotool", "search", *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        return result.stdout.split()

    def _xdotool(self, *arguments):
        subprocess.run(["xdotool", *arguments], check=True, stderr=subprocess.DEVNULL)
