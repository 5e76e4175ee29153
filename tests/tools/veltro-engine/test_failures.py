# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What cannot be saved: the error's kind and text, and that nothing is left or lost."""

import unittest

import harness
from harness import dead_url, names, run, secure_url, url

# Address, what a probe says of it; a run's text ends the same way.
PROBE_FAILS = [
    ("no address at all", "is not a valid URL"),
    ("ftp://127.0.0.1:1/x", ""),
    ("file:///etc/passwd", "disabled"),
    ("DEAD/plain", "Connection refused"),
    ("SECURE/plain", "CERTIFICATE_VERIFY_FAILED"),
    ("/no-media", "This page isn't a video"),
    ("/status/404", "404"),
    ("/status/500", "500"),
    ("/redirect/loop", "redirect"),
    ("/gzip/broken", "decompressing"),
]

RUN_FAILS = [
    ("/missing/media", "downloadFailed", "404"),
    ("/media-fails", "downloadFailed", "500"),
    ("/truncated", "downloadFailed", "bytes"),
    ("/hls/missing-segment", "downloadFailed", "404"),
    ("/drm/hls", "drmProtected", "This video is DRM-protected and can't be saved."),
    ("/drm/dash", "drmProtected", "This video is DRM-protected and can't be saved."),
    ("/local/media", "downloadFailed", ""),
    ("/hostile/media-desktop", "downloadFailed", "desktop"),
]

# These files cannot be decoded, or hold nothing; the run says that it has finished and leaves
# what the site gave.
UNPLAYABLE = ["/bad/noise", "/bad/scrambled", "/bad/cut", "/bad/no-index"]


def addressed(text):
    if text.startswith("/"):
        return url(text)
    return text.replace("DEAD", dead_url("")).replace("SECURE", secure_url(""))


class Failures(harness.Case):
    def test_a_probe_says_what_is_wrong(self):
        outcome = run("probe", *[addressed(page) for page, _ in PROBE_FAILS])
        self.assertEqual(len(outcome.events), len(PROBE_FAILS))
        for (page, text), event in zip(PROBE_FAILS, outcome.events):
            with self.subTest(page):
                self.assertEqual(event.get("kind"), "probeFailed")
                self.assertTrue(event["text"].startswith("Could not read media info: "))
                self.assertIn(text, event["text"])
                self.assertNotIn("Traceback", event["text"])
        self.assertEqual(outcome.code, 1)

    def test_a_run_says_what_is_wrong_and_the_next_one_works(self):
        pages = [page for page, _, _ in RUN_FAILS]
        outcome = self.save(*pages, "/plain")
        errors = outcome.named("error")
        self.assertEqual(len(errors), len(RUN_FAILS), outcome.error)
        for (page, kind, text), event in zip(RUN_FAILS, errors):
            with self.subTest(page):
                self.assertEqual(event["kind"], kind)
                self.assertIn(text, event["text"])
        self.assertEqual(len(outcome.files), 1)

    def test_a_file_that_cannot_be_decoded_stays_as_it_came(self):
        outcome = self.save(*UNPLAYABLE)
        self.assertEqual(outcome.error, "")
        self.assertEqual(len(outcome.files), len(UNPLAYABLE))
        for file in outcome.files:
            self.assertTrue(file.is_file())
        self.assertFalse([name for name in names(self.folder) if "transcoded" in name])

    def test_files_of_this_machine_are_not_read_for_a_page(self):
        outcome = self.save("/local/playlist", "/local/live", "/local/redirect")
        self.assertEqual(len(outcome.named("error")), 3)
        self.assertEqual([name for name in names(self.folder) if name.endswith(".mp4")], [])


if __name__ == "__main__":
    unittest.main()
