# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the window costs: to open, to keep open, to scroll, and to leave alone.

Each runs on a virtual display of its own with a window manager and a session bus. What is seen of
the program is seen from outside, by what the display is told to paint.
"""

import contextlib
import json
import os
import pathlib
import statistics
import subprocess
import tempfile

from library_benches import percentile
from measuring import paired, seconds, verdict

PAIRS = 20
# Milliseconds, of a frame that nobody takes for a stutter.
INPUT_TO_FRAME = 33
MAIN_THREAD = 16
LONGEST_WORK = 50
FEWEST_FRAMES = 1800
# Percent of a core.
IDLE = 0.5
# The caret comes and goes once a second.
CARET_FRAMES = 2


class Desktop:
    """A display, a window manager, a session bus and a home, which end with the stack."""

    def __init__(self, place, stack):
        self._place = place
        self._stack = stack
        home = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        self._environment = {**os.environ, "HOME": str(home), "XDG_RUNTIME_DIR": str(home / "run")}
        for kind in ("CONFIG", "DATA", "CACHE"):
            self._environment[f"XDG_{kind}_HOME"] = str(home / kind.lower())
        for name in ("WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
            self._environment.pop(name, None)
        (home / "run").mkdir(mode=0o700)
        (home / "Documents").mkdir()
        self._start_display()
        bus = self._start(["dbus-daemon", "--session", "--print-address", "--nofork"],
                          stdout=subprocess.PIPE, text=True)
        self._environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        self._start(["openbox"])

    def _start(self, command, **more):
        process = self._stack.enter_context(
            subprocess.Popen(command, env=self._environment, stderr=subprocess.DEVNULL, **more))
        self._stack.callback(process.terminate)
        return process

    def _start_display(self):
        reader, writer = os.pipe()
        self._start(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x840x24", "-nolisten",
                     "tcp"], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as lines:
            self._environment["DISPLAY"] = ":" + lines.readline().strip()

    def run(self, program, *arguments, environment=()):
        """The JSON lines that one of the bench programs prints."""
        done = subprocess.run(
            [str(self._place.bundle / program), *arguments], check=True, text=True,
            env={**self._environment, **dict(environment)}, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE)
        return [json.loads(line) for line in done.stdout.splitlines()]

    def watch(self, what, *command, environment=()):
        """What is seen of our window, or of that of another command."""
        command = command or [str(self._place.bundle / "veltro")]
        return self.run("veltro-bench-watch", what, *command, environment=environment)

    def watch_bare(self, what, *arguments, environment=()):
        return self.watch(what, str(self._place.bundle / "veltro-bench-bare"), *arguments,
                          environment=environment)


@contextlib.contextmanager
def desktop(place):
    with contextlib.ExitStack() as stack:
        yield Desktop(place, stack)


def start(place):
    with desktop(place) as shown:
        # A later start of both, as most are: what is kept of a first one has come to the disk.
        shown.watch("memory")
        shown.watch_bare("memory", "")
        ours, baseline = paired(lambda: shown.watch("start")[0],
                                lambda: shown.watch_bare("start")[0], PAIRS)
        ready, engine = paired(lambda: shown.watch("ready")[0],
                               lambda: seconds([place.engine, "ready"]), PAIRS)
    for key, name in (("headline", "first frame with the headline, which takes a key"),
                      ("letter", "the key's letter on the screen")):
        times = [[one[key] for one in side] for side in (ours, baseline)]
        yield f"{name}: " + verdict(*times, "a bare Qt Quick window", 1.6)
    begun = [one["ready"] - one["headline"] for one in ready]
    yield ("engine ready, from the first frame: " +
           verdict(begun, engine, "engine-start, which is a process of its own", 1.2))
    whole = statistics.median(one["ready"] for one in ready)
    yield f"engine ready {whole:.3f} s after the start of the process"


def idle_memory(place):
    """The baseline is one process too, so that it shares what ours can share; the sum of two
    processes, which is more, stands beside it."""
    environment = place.python_environment()
    library = interpreter_library()
    with desktop(place) as shown:
        ours, baseline = paired(
            lambda: shown.watch("memory")[0]["megabytes"],
            lambda: shown.watch_bare("memory", library, environment=environment)[0]["megabytes"],
            PAIRS)
        bare = shown.watch_bare("memory", "")[0]["megabytes"]
    yield verdict(ours, baseline,
                  "a bare window and the interpreter with yt_dlp imported, in one process",
                  1.25, unit="MB")
    interpreter = interpreter_memory(place)
    yield (f"against the sum of a bare window, {bare:.1f} MB, and an interpreter, "
           f"{interpreter:.1f} MB: {statistics.median(ours) / (bare + interpreter):.3f}")


def interpreter_memory(place):
    """Megabytes of the stock interpreter with yt_dlp imported."""
    with subprocess.Popen(place.python("-c", "import yt_dlp; print(flush=True); input()"),
                          env=place.python_environment(), stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE, text=True) as process:
        process.stdout.readline()
        rollup = pathlib.Path(f"/proc/{process.pid}/smaps_rollup").read_text(encoding="ascii")
        process.communicate("\n")
    kibibytes = next(int(line.split()[1]) for line in rollup.splitlines()
                     if line.startswith("Pss:"))
    return kibibytes * 1024 / 1e6


def interpreter_library():
    """The shared library of the stock interpreter."""
    version = subprocess.run(["/usr/bin/python3", "-c",
                              "import sysconfig as s; print(s.get_config_var('LDVERSION'))"],
                             check=True, capture_output=True, text=True).stdout.strip()
    return f"libpython{version}.so.1.0"


def frames(place):
    with desktop(place) as shown:
        *measured, total = shown.run("veltro-bench-frames", "program")
    with desktop(place) as shown:
        bare = shown.run("veltro-bench-frames", "bare")[0]
    for one in [*measured, bare]:
        yield f"{one['name']}: " + figures(one)
    yield f"{total['frames']} frames, to be {FEWEST_FRAMES} at least"


def figures(one):
    answered, worked = ([value * 1000 for value in one[key]]
                        for key in ("inputToFrame", "mainThread"))
    return (f"input to frame p50 {percentile(answered, 0.5):.1f} ms, p99 "
            f"{percentile(answered, 0.99):.1f} ms, to reach {INPUT_TO_FRAME}; the main thread p50 "
            f"{percentile(worked, 0.5):.1f} ms a frame, p99 {percentile(worked, 0.99):.1f} ms, to "
            f"reach {MAIN_THREAD}, at most {max(worked):.1f} ms, to reach {LONGEST_WORK}; "
            f"{len(worked)} frames of {len(answered)} inputs")


def idle(place):
    with desktop(place) as shown:
        for tab in shown.watch("idle"):
            share = tab["worked"] / tab["seconds"] * 100
            allowed = CARET_FRAMES * tab["seconds"] if tab["tab"] == "Home" else 0
            yield (f"{tab['tab']}: {share:.2f} % of a core, to reach {IDLE}; {tab['frames']} "
                   f"frames in {tab['seconds']:.0f} s, at most {allowed:.0f}")
