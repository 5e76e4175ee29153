# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Drives veltro-engine against the test site, each run in a process of its own."""

import contextlib
import dataclasses
import functools
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import urllib.request

ROOT = pathlib.Path(__file__).resolve().parents[3]
BUNDLE = pathlib.Path(os.environ["VELTRO_BUNDLE"])
MEDIA = os.environ["VELTRO_TEST_MEDIA"]
sys.path.append(str(ROOT / "tests/site"))  # for the tables of its pages
LONGEST = 120  # seconds; a run that takes longer hangs


@dataclasses.dataclass(frozen=True)
class Outcome:
    """What one process of the harness left."""

    code: int
    events: list
    log: str

    def named(self, name):
        return [event for event in self.events if event.get("event") == name]

    @property
    def error(self):
        """The last error as "kind: text"."""
        return next((f"{event['kind']}: {event['text']}" for event in reversed(self.events)
                     if event.get("event") == "error"), "")

    @property
    def files(self):
        return [pathlib.Path(event["file"]) for event in self.named("finished")]

    @property
    def stages(self):
        return [event["stage"] for event in self.named("postProcessing")]


def run(*arguments, environment=None, program=None, before=()):
    """Runs the harness to its end; `before` is a command that starts it, such as unshare."""
    command = [*before, str(program or BUNDLE / "veltro-engine"), *map(str, arguments)]
    done = subprocess.run(command, env={**os.environ, **(environment or {})}, timeout=LONGEST,
                          stdin=subprocess.DEVNULL, capture_output=True, encoding="utf-8")
    events = [json.loads(line) for line in done.stdout.split("\n") if line.startswith("{")]
    return Outcome(done.returncode, events, done.stderr)


@functools.cache
def site_addresses():
    """The site's plain, TLS and dead addresses; it lives as long as this process."""
    process = subprocess.Popen(
        ["/usr/bin/python3", str(ROOT / "tests/site/site.py"), "--media", MEDIA],
        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    site_addresses.process = process  # kept: its standard input ends it
    return process.stdout.readline().split()[1:]


def url(path):
    return site_addresses()[0] + path


def secure_url(path):
    return site_addresses()[1] + path


def dead_url(path):
    return site_addresses()[2] + path


def ask_site(path):
    with urllib.request.urlopen(url(path), timeout=30) as answer:
        return answer.read().decode()


def tool(*arguments):
    """A stock tool's answer: the judge, never part of what is judged."""
    return subprocess.run(arguments, check=True, capture_output=True, text=True,
                          stdin=subprocess.DEVNULL).stdout


def streams(file):
    """The codecs of a file, such as ["h264", "aac", "mov_text"]."""
    return tool("ffprobe", "-v", "error", "-show_entries", "stream=codec_name", "-of", "csv=p=0",
                str(file)).replace(",", "").split()


def decoded(file):
    """A digest of everything that can be seen and heard; it fails when a packet is broken."""
    return tool("ffmpeg", "-v", "error", "-xerror", "-i", str(file), "-map", "0:v?", "-map",
                "0:a?", "-f", "streamhash", "-")


def names(folder):
    return sorted(entry.name for entry in pathlib.Path(folder).iterdir())


class Case(unittest.TestCase):
    """A test with a downloads folder of its own and a site that has forgotten everything."""

    maxDiff = None

    def setUp(self):
        ask_site("/_reset")
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def save(self, *paths, **keywords):
        """Saves pages of the site into the folder; options come after the pages."""
        pages = [url(path) if str(path).startswith("/") and not isinstance(path, pathlib.Path)
                 else path for path in paths]
        return run("save", *pages, "--dir", self.folder, **keywords)

    @contextlib.contextmanager
    def fresh(self):
        """A folder for one row of a table."""
        with tempfile.TemporaryDirectory() as folder:
            self.folder = pathlib.Path(folder)
            yield self.folder
