# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Links submitted without a window: a queue of records, files and library of the user's own."""

import pathlib
import unittest

import harness
from harness import run, url


class Submitting(harness.Case):
    def submit(self, *arguments):
        home = {"HOME": str(self.folder)}
        for name in ("CONFIG", "DATA", "CACHE"):
            home[f"XDG_{name}_HOME"] = str(self.folder / name.lower())
        return run("submit", *arguments, environment=home)

    def states(self, outcome, page):
        return [event["state"] for event in outcome.named("record") if event["url"] == page]

    def test_a_batch_runs_in_order_and_ends_in_the_library(self):
        pages = [url("/plain"), url("/missing/media"), url("/jsonld")]
        outcome = self.submit(*pages)
        self.assertEqual(outcome.code, 1, outcome.log)
        self.assertEqual(self.states(outcome, pages[1]), ["queued", "running", "failed"])
        ended = [event for event in outcome.named("record")
                 if event["state"] in ("done", "failed")]
        self.assertEqual([event["url"] for event in ended], pages)
        for event in ended[::2]:
            file = pathlib.Path(event["file"])
            self.assertEqual(file.parent, self.folder / "Documents/Downloads")
            self.assertTrue(file.is_file())
        self.assertTrue((self.folder / "data/veltro/library.sqlite").is_file())

    def test_with_a_selector_each_page_is_probed_first(self):
        outcome = self.submit(url("/no-media"), url("/plain"), "--format", "best")
        self.assertEqual(outcome.code, 1)
        self.assertEqual(len(outcome.named("alert")), 1)
        self.assertEqual(self.states(outcome, url("/no-media")), [])
        self.assertEqual(self.states(outcome, url("/plain"))[-1], "done")

    def test_what_is_no_link_is_ignored(self):
        outcome = self.submit("file:///etc/passwd", "words")
        self.assertEqual((outcome.code, outcome.events), (1, []))
        self.assertEqual(self.submit().code, 2)


if __name__ == "__main__":
    unittest.main()
