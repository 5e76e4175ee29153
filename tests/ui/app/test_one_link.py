# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""One link saved in a real window: a display, a window manager, key events, the test site.

Needs VELTRO_BUNDLE and VELTRO_TEST_MEDIA in the environment, as ctest sets them.
"""
import contextlib
import json
import os
import pathlib
import subprocess
import tempfile
import time
import unittest
import urllib.request

ROOT = pathlib.Path(__file__).resolve().parents[3]
PROGRAM = pathlib.Path(os.environ["VELTRO_BUNDLE"]) / "veltro"
LONGEST = 90  # seconds


def until(condition, what):
    end = time.monotonic() + LONGEST
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.1)
    raise AssertionError(f"{what} did not come about in {LONGEST} s")


class Session:
    """A display with a window manager and a session bus, and a home of its own."""

    def __init__(self, stack):
        self.stack = stack
        home = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        self.documents = home / "Documents"
        self.environment = {**os.environ, "HOME": str(home), "XDG_RUNTIME_DIR": str(home / "run")}
        for kind in ("CONFIG", "DATA", "CACHE"):
            self.environment[f"XDG_{kind}_HOME"] = str(home / kind.lower())
        for name in ("WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS"):
            self.environment.pop(name, None)
        (home / "run").mkdir(mode=0o700)
        self.documents.mkdir()
        self.start_display()
        self.start_bus()
        self.start(["openbox"])

    def start(self, command, **more):
        process = self.stack.enter_context(
            subprocess.Popen(command, env=self.environment, stderr=subprocess.DEVNULL, **more))
        self.stack.callback(process.terminate)
        return process

    def start_display(self):
        reader, writer = os.pipe()
        self.start(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1366x768x24", "-nolisten",
                    "tcp"], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as lines:
            self.environment["DISPLAY"] = ":" + lines.readline().strip()

    def start_bus(self):
        bus = self.start(["dbus-daemon", "--session", "--print-address", "--nofork"],
                         stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self.environment, check=False,
                              capture_output=True, text=True).stdout.strip()

    def windows(self):
        return self.xdotool("search", "--onlyvisible", "--name", "^Veltro$").split()

    def window(self):
        return until(self.windows, "the window")[0]


class OneLinkTest(unittest.TestCase):
    def setUp(self):
        self.stack = self.enterContext(contextlib.ExitStack())
        site = self.stack.enter_context(subprocess.Popen(
            ["/usr/bin/python3", str(ROOT / "tests/site/site.py"), "--media",
             os.environ["VELTRO_TEST_MEDIA"]],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True))
        self.stack.callback(site.stdin.close)
        self.site = site.stdout.readline().split()[1]
        self.session = Session(self.stack)
        self.downloads = self.session.documents / "Downloads"

    def requests(self, path):
        with urllib.request.urlopen(self.site + "/_log") as answer:
            logged = [json.loads(line) for line in answer.read().decode().splitlines()]
        return [request for request in logged if request["path"] == path]

    def saved(self):
        if not self.downloads.is_dir():
            return []
        return [file for file in self.downloads.iterdir() if file.suffix == ".mp4"]

    def test_a_typed_address_is_saved_once(self):
        self.session.start([str(PROGRAM)])
        window = self.session.window()
        self.session.xdotool("windowactivate", "--sync", window)
        self.session.xdotool("type", self.site + "/plain")
        for _ in range(3):  # a hurried hand
            self.session.xdotool("key", "Return")
        until(self.saved, "the file")
        self.assertEqual(len(self.saved()), 1)
        self.assertGreater(self.saved()[0].stat().st_size, 1000)

    def test_a_second_start_hands_its_address_to_the_first(self):
        self.session.start([str(PROGRAM)])
        self.session.window()
        address = self.site + "/plain?url=https%3A%2F%2Felsewhere.example"
        second = subprocess.run([str(PROGRAM), address], env=self.session.environment,
                                timeout=LONGEST, stderr=subprocess.DEVNULL, check=False)
        self.assertEqual(second.returncode, 0)
        until(lambda: self.requests("/plain"), "the request for the page that was handed over")
        self.assertEqual(len(self.session.windows()), 1)


if __name__ == "__main__":
    unittest.main()
