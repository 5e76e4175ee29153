# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Paired timings: ours and the baseline in turn, so that both see the same machine."""

import contextlib
import dataclasses
import os
import pathlib
import statistics
import subprocess
import time


@dataclasses.dataclass(frozen=True)
class Place:
    """Where the sources are, and the bundle that is measured."""

    root: pathlib.Path
    bundle: pathlib.Path

    @property
    def engine(self):
        return str(self.bundle / "veltro-engine")

    def python(self, *arguments):
        """The stock interpreter of the same version, with the bundle's byte-compiled yt-dlp."""
        return ["/usr/bin/python3", *arguments]

    def python_environment(self):
        return {**os.environ, "PYTHONPATH": str(self.bundle / "yt-dlp"),
                "PYTHONDONTWRITEBYTECODE": "1"}

    @contextlib.contextmanager
    def site(self):
        """The test site's address; it ends with the block."""
        process = subprocess.Popen(
            ["/usr/bin/python3", str(self.root / "tests/site/site.py"), "--port", "0",
             "--media", str(self.root / "build/test-media"), "--seconds", "3600"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        try:
            yield process.stdout.readline().split()[1]
        finally:
            process.stdin.close()
            process.wait(30)


def seconds(command, **keywords):
    """The time from exec to exit."""
    keywords = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **keywords}
    begin = time.monotonic()
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, **keywords)
    return time.monotonic() - begin


def seconds_to_line(command):
    """The time from exec to the first line of output. What the process takes to end is not in it."""
    begin = time.monotonic()
    with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE) as process:
        line = process.stdout.readline()
        end = time.monotonic()
    if not line or process.returncode != 0:
        raise subprocess.CalledProcessError(process.returncode, command)
    return end - begin


def paired(ours, baseline, pairs):
    """Runs both in turn, after one run of each that does not count; two lists of seconds."""
    ours()
    baseline()
    times = [(ours(), baseline()) for _ in range(pairs)]
    return [list(column) for column in zip(*times)]


def verdict(ours, baseline, name, reach, unit="s"):
    """One line: the medians, the ratio of each pair's median, and what it is to reach."""
    ratio = statistics.median(a / b for a, b in zip(ours, baseline))
    return (f"{statistics.median(ours):.3f} {unit} against "
            f"{statistics.median(baseline):.3f} {unit} "
            f"({name}), ratio {ratio:.3f}, to reach {reach}, {len(ours)} pairs")
