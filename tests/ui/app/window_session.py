# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The program as a user has it: a display, a window manager, a session bus, a home, and the test
site for the web.

Needs VELTRO_BUNDLE and VELTRO_TEST_MEDIA in the environment, as ctest sets them.
"""
import contextlib
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[3]
BUNDLE = pathlib.Path(os.environ["VELTRO_BUNDLE"])
PROGRAM = BUNDLE / "veltro"
MEDIA = pathlib.Path(os.environ["VELTRO_TEST_MEDIA"])
LONGEST = 60  # seconds

sys.path.insert(0, str(ROOT / "tests/site"))
import make_media  # noqa: E402
from testsite import server, state  # noqa: E402


def until(condition, what):
    """The first true value of the condition."""
    end = time.monotonic() + LONGEST
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.1)
    raise AssertionError(f"{what} did not come about in {LONGEST} s")


class Site:
    """The test site, in this process, over a folder of media."""

    def __init__(self, stack, media=None):
        self.state = state.Site(media or make_media.ensure(MEDIA))
        plain = server.Server(0, self.state)
        stack.callback(plain.server_close)
        stack.callback(plain.shutdown)
        plain.start()
        self.address = plain.address()

    def requests(self, path):
        return [request for request in self.state.log.entries() if request["path"] == path]


class Session:
    """A desktop of its own, which ends with the stack."""

    def __init__(self, stack):
        self.stack = stack
        self.home = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        self.downloads = self.home / "Documents/Downloads"
        self.log = self.home / "program.log"
        self.environment = {**os.environ, "HOME": str(self.home),
                            "XDG_RUNTIME_DIR": str(self.home / "run"),
                            "QT_MESSAGE_PATTERN": "[qt %{type}] %{message}"}
        for kind in ("CONFIG", "DATA", "CACHE"):
            self.environment[f"XDG_{kind}_HOME"] = str(self.home / kind.lower())
        for name in ("WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS"):
            self.environment.pop(name, None)
        (self.home / "run").mkdir(mode=0o700)
        (self.home / "Documents").mkdir()
        self.start_display()
        self.start_bus()
        self.start(["openbox"])
        # Before there is one, a window gets no focus.
        until(lambda: self.xdotool("get_num_desktops"), "the window manager")

    def start(self, command, **more):
        more = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **more}
        process = self.stack.enter_context(subprocess.Popen(command, env=self.environment, **more))
        self.stack.callback(process.terminate)
        return process

    def start_display(self):
        """Servers that begin or end at the same time can take each other's number away."""
        until(self.try_display, "a display")

    def try_display(self):
        reader, writer = os.pipe()
        self.start(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1366x768x24", "-nolisten",
                    "tcp", "-noreset"], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as lines:
            self.environment["DISPLAY"] = ":" + lines.readline().strip()
        return self.xdotool("getdisplaygeometry")

    def start_bus(self):
        self.bus = self.start(["dbus-daemon", "--session", "--print-address", "--nofork"],
                              stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.bus.stdout.readline().strip()

    def remember_window(self, width, height):
        """As the program does at its end."""
        settings = self.home / "config/veltro/veltro.ini"
        settings.parent.mkdir(parents=True)
        window = json.dumps({"width": width, "height": height})
        settings.write_text(f"[General]\nMainWindow={json.dumps(window)}\n", encoding="utf-8")

    def start_program(self, *arguments):
        """The window once it is up and has the keyboard."""
        log = self.stack.enter_context(open(self.log, "wb"))
        self.program = self.start([str(PROGRAM), *arguments], stderr=log)

        def first_window():
            assert self.program.poll() is None, self.log.read_text(encoding="utf-8", errors="replace")
            return self.windows()
        window = until(first_window, "the window")[0]
        def has_keyboard():
            self.xdotool("windowactivate", window)
            return self.xdotool("getwindowfocus") == window
        until(has_keyboard, "the window's focus")
        return window

    def complaints(self):
        """What Qt said that it should not have had to."""
        lines = self.log.read_text(encoding="utf-8", errors="replace").splitlines()
        return [line for line in lines
                if line.startswith(("[qt warning]", "[qt critical]", "[qt fatal]"))]

    def run(self, *command):
        """What it wrote to its standard output."""
        return subprocess.run(command, env=self.environment, check=False, capture_output=True,
                              timeout=LONGEST).stdout

    def xdotool(self, *arguments):
        return self.run("xdotool", *arguments).decode().strip()

    def windows(self, title="Veltro"):
        return self.xdotool("search", "--onlyvisible", "--name", f"^{title}$").split()

    def pixels(self, left, top, width, height):
        """A part of the screen, three bytes a point."""
        return self.run("import", "-silent", "-window", "root", "-crop",
                        f"{width}x{height}+{left}+{top}", "-depth", "8", "rgb:-")

    def saved(self):
        """The files that have their final names."""
        if not self.downloads.is_dir():
            return []
        return [file for file in self.downloads.iterdir()
                if file.suffix in (".mp4", ".m4a") and not {".part", ".new"} & set(file.suffixes)]


class SessionTest(unittest.TestCase):
    """A test in a session of its own. Qt has nothing to complain of in the whole of it."""

    def setUp(self):
        self.stack = self.enterContext(contextlib.ExitStack())
        self.session = Session(self.stack)

    def tearDown(self):
        if self.session.log.exists():
            self.assertEqual(self.session.complaints(), [])
