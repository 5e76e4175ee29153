# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""From links to entries of the library, across processes."""

import concurrent.futures
import os
import pathlib
import signal
import subprocess
import tempfile
import unittest

import harness
from harness import BUNDLE, decoded, run, url


class Library(harness.Case):

    def setUp(self):
        super().setUp()
        self.home = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.environment = {
            "HOME": str(self.home), "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CONFIG_HOME": str(self.home / "config"), "LC_ALL": "C.UTF-8",
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}

    def run_harness(self, *arguments):
        return run(*arguments, environment=self.environment)

    def test_what_was_submitted_is_listed_and_found(self):
        pages = ["/og-video", "/plain", "/audio/aac", "/no-such-page"]
        submitted = self.run_harness("submit", *map(url, pages), "--format", "best")
        self.assertEqual(submitted.code, 1)  # one page is not there
        listed = self.run_harness("library", "list")
        self.assertEqual((listed.code, listed.log), (0, ""))
        # Runs go in order, so that the last one is the newest.
        self.assertEqual([item["sourceURL"] for item in listed.events],
                         [url(page) for page in reversed(pages[:3])])
        sound, _, movie = listed.events
        for item in listed.events:
            file = pathlib.Path(item["file"])
            self.assertEqual(file.parent, self.home / "Documents/Downloads")
            self.assertEqual(file.stat().st_size, item["fileSizeBytes"])
            self.assertGreater(item["durationSeconds"], 0)
            self.assertEqual(item["state"], "done")
        self.assertNotIn("thumbnail", sound)
        self.assertTrue(decoded(movie["thumbnail"]))
        newest = self.run_harness("library", "list", "--limit", "1")
        self.assertEqual(newest.events, listed.events[:1])
        found = self.run_harness("library", "search", movie["title"].upper())
        self.assertIn(movie, found.events)
        self.assertEqual(self.run_harness("library", "search", "no title has this").events, [])

    def test_processes_that_write_at_once_lose_nothing(self):
        with concurrent.futures.ThreadPoolExecutor() as pool:
            done = list(pool.map(lambda page: self.run_harness("submit", url(page)),
                                 ("/plain", "/audio/aac", "/og-video")))
        self.assertEqual([each.code for each in done], [0, 0, 0])
        self.assertEqual(len(self.run_harness("library", "list").events), 3)

    def test_a_program_killed_in_a_download_leaves_what_it_had(self):
        self.assertEqual(self.run_harness("submit", url("/plain")).code, 0)
        before = self.run_harness("library", "list").events
        program = subprocess.Popen(
            [str(BUNDLE / "veltro-engine"), "submit", url("/held?at=5000")],
            env={**os.environ, **self.environment}, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        for line in program.stdout:
            if '"running"' in line:
                break
        program.send_signal(signal.SIGKILL)
        program.communicate()
        self.assertEqual(self.run_harness("library", "list").events, before)

    def test_a_library_that_cannot_be_opened_is_said_once(self):
        (self.home / "data/veltro").mkdir(parents=True)
        (self.home / "data/veltro/library.sqlite").mkdir()
        outcome = self.run_harness("library", "list")
        self.assertEqual((outcome.code, outcome.events), (1, []))
        self.assertEqual(len(outcome.log.splitlines()), 1)
        self.assertEqual(self.run_harness("library", "search").code, 2)


if __name__ == "__main__":
    unittest.main()
