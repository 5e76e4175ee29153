# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Folders, bundles and environments that are not as they should be."""

import os
import pathlib
import shutil
import unittest

import harness
from harness import BUNDLE, names, run, url


def copy_of_the_bundle(folder):
    """A bundle of its own, for a test to break; the large parts stay links."""
    copy = pathlib.Path(folder, "bundle")
    copy.mkdir()
    shutil.copy2(BUNDLE / "veltro-engine", copy)
    shutil.copytree(BUNDLE / "Contents/PlugIns", copy / "Contents/PlugIns")
    resources = copy / "Contents/Resources"
    resources.mkdir()
    for entry in (BUNDLE / "Contents/Resources").iterdir():
        (resources / entry.name).symlink_to(entry.resolve())
    for name in ("python_init.py", "veltro_ytdlp", "yt-dlp"):
        (copy / name).symlink_to(pathlib.Path("Contents/Resources", name))
    return copy


class Places(harness.Case):
    def mounted(self, options):
        """A command prefix: a mount on the folder that only the started process sees."""
        script = f'mount -t tmpfs -o {options} tmpfs "$0" && exec "$@"'
        user = [] if os.geteuid() == 0 else ["--map-root-user"]
        return ["unshare", "--mount", *user, "sh", "-c", script, str(self.folder)]

    def test_a_folder_that_is_full_is_an_error(self):
        outcome = self.save("/ranges", before=self.mounted("size=200k"))
        self.assertIn("downloadFailed", outcome.error)
        self.assertIn("There is no space left in the downloads folder.", outcome.error)

    def test_a_folder_that_fills_during_the_transcode_keeps_the_file(self):
        size = os.stat(pathlib.Path(harness.MEDIA, "vp9-opus.webm")).st_size
        outcome = self.save("/codec/vp9-opus", before=self.mounted(f"size={size + 16384}"))
        self.assertEqual(outcome.code, 0, outcome.error)
        self.assertIn("transcode result: failed", outcome.log)
        self.assertIn(f"bytes={size}", outcome.log)

    def test_a_folder_that_cannot_be_written_is_an_error(self):
        outcome = self.save("/plain", before=self.mounted("ro"))
        self.assertIn("downloadFailed", outcome.error)
        self.assertIn("The downloads folder cannot be written to.", outcome.error)

    def test_a_folder_that_is_a_link_elsewhere_is_followed(self):
        real = self.folder / "real"
        real.mkdir()
        link = self.folder / "link"
        link.symlink_to(real)
        self.folder = link
        self.assertEqual(self.save("/plain").code, 0)
        self.assertTrue(names(real))

    def test_no_other_program_is_started(self):
        """Every program that could be found by name says so in a file, and none is absolute."""
        traps = self.folder / "traps"
        traps.mkdir()
        trace = self.folder / "started"
        for name in ("ffmpeg", "ffprobe", "file", "uname", "rtmpdump", "phantomjs", "sh"):
            trap = traps / name
            trap.write_text(f"#!/bin/sh\necho {name} >> {trace}\nexit 1\n")
            trap.chmod(0o755)
        with self.fresh():
            for path in ("", str(traps)):
                outcome = self.save("/jsonld", "/hls/ts", "/codec/vp9-opus", "/live/ends",
                                    environment={"PATH": path})
                self.assertEqual(outcome.error, "")
                self.assertEqual(len(outcome.files), 4)
        self.assertFalse(trace.exists(), trace.exists() and trace.read_text())

    def test_a_broken_bundle_is_said_to_be_one(self):
        breaks = {
            "no support module": lambda copy: (copy / "Contents/Resources/python_init.py").unlink(),
            "no yt-dlp": lambda copy: (copy / "Contents/Resources/yt-dlp").unlink(),
            "a support module that fails": lambda copy: (
                (copy / "Contents/Resources/python_init.py").unlink(),
                (copy / "Contents/Resources/python_init.py").write_text("import no_such_thing")),
        }
        for what, spoil in breaks.items():
            with self.subTest(what), self.fresh() as folder:
                copy = copy_of_the_bundle(folder)
                spoil(copy)
                outcome = run("save", url("/plain"), "--dir", folder,
                              program=copy / "veltro-engine")
                self.assertEqual(outcome.code, 1)
                self.assertTrue(outcome.error.startswith(
                    "bootstrapFailed: Engine could not start: "), outcome.error)

    def test_without_the_media_module_a_page_that_needs_no_merge_is_saved(self):
        with self.fresh() as folder:
            copy = copy_of_the_bundle(folder)
            (copy / "Contents/PlugIns/veltro-media.so").unlink()
            outcome = run("save", url("/plain"), url("/jsonld"), "--dir", folder,
                          program=copy / "veltro-engine")
            self.assertEqual(len(outcome.files), 1, outcome.log)
            self.assertEqual(len(outcome.named("error")), 1)

    def test_without_certificates_secure_pages_fail_and_others_do_not(self):
        with self.fresh() as folder:
            copy = copy_of_the_bundle(folder)
            (copy / "Contents/Resources/cacert.pem").unlink()
            outcome = run("probe", url("/plain"), program=copy / "veltro-engine")
            self.assertEqual(outcome.code, 0, outcome.error)


if __name__ == "__main__":
    unittest.main()
