# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Cancelled runs, runs that are taken up again, and saves over a file that is there."""

import hashlib
import unittest

import harness
from harness import decoded, names

RESUMABLE = ["/ranges", "/hls/muxed", "/dash/h264-aac"]


def digest(file):
    return hashlib.sha256(file.read_bytes()).hexdigest()


class Cancelling(harness.Case):
    def save_and_cancel(self, page):
        """A save that is cancelled at its first bytes, by a hand that may be a slow one."""
        harness.ask_site("/_control?match=/media/&rate=20000")
        cancelled = self.save(page, "--cancel-after-bytes", "1")
        harness.ask_site("/_reset")
        self.assertEqual(cancelled.error, "cancelled: Cancelled.")
        return cancelled

    def test_a_cancelled_run_keeps_what_it_has_and_goes_on_later(self):
        for page in RESUMABLE:
            with self.subTest(page), self.fresh() as folder:
                self.assertEqual(self.save_and_cancel(page).code, 1)
                left = names(folder)
                self.assertFalse([name for name in left if name.endswith(".mp4")], left)
                self.assertTrue([name for name in left if name.endswith(".part")], left)
                self.assertFalse([name for name in left if "-Frag" in name], left)
                resumed = self.save(page)
                self.assertEqual(resumed.code, 0, resumed.error)
                again = resumed.files[0]
                whole = decoded(again)
                self.assertFalse([name for name in names(folder)
                                  if name.endswith((".part", ".ytdl"))])
            with self.fresh():
                straight = self.save(page)
                self.assertEqual(decoded(straight.files[0]), whole)

    def test_a_live_stream_can_be_cancelled(self):
        outcome = self.save("/live/endless", "--cancel-after-bytes", "1")
        self.assertEqual(outcome.error, "cancelled: Cancelled.")
        self.assertFalse([name for name in names(self.folder) if name.endswith(".mp4")])

    def test_what_was_saved_before_survives_a_second_save_that_fails(self):
        first = self.save("/ranges").files[0]
        before = digest(first)
        self.save_and_cancel("/ranges")
        self.assertEqual(digest(first), before)
        harness.ask_site("/_control?match=/media/&status=500")
        failed = self.save("/ranges")
        self.assertIn("downloadFailed", failed.error)
        self.assertEqual(digest(first), before)
        harness.ask_site("/_reset")
        second = self.save("/ranges")
        self.assertEqual(second.code, 0, second.error)
        self.assertEqual(digest(second.files[0]), before)
        self.assertEqual([name for name in names(self.folder) if name.endswith(".mp4")],
                         [first.name])

    def test_a_second_save_takes_what_the_site_has_now(self):
        first = self.save("/jsonld")
        self.assertEqual(first.code, 0, first.error)
        file = first.files[0]
        expected = digest(file)
        file.write_bytes(b"stale")
        second = self.save("/jsonld")
        self.assertEqual(second.code, 0, second.error)
        self.assertEqual(digest(file), expected)


if __name__ == "__main__":
    unittest.main()
