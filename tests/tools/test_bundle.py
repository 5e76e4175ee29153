# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A bundle is whole after each build, never runs stale byte code, and can be staged alone."""
import json
import os
import subprocess
import unittest
from pathlib import Path

from scratch import ROOT, ScratchCase

STAGE = ROOT / "packaging/stage_bundle"
PYTHON = "/usr/bin/python3"


class Bundle(ScratchCase):
    def setUp(self):
        super().setUp()
        self.bundle = self.scratch / "build/bundle"
        self.resources = self.bundle / "Contents/Resources"
        self.write("sources/python_init.py", "from veltro_ytdlp import answer\nANSWER = answer.ANSWER\n")
        self.write("sources/veltro_ytdlp/__init__.py", "")
        self.answer = self.write("sources/veltro_ytdlp/answer.py", "ANSWER = 1\n")
        self.write("vendor/engine/yt-dlp/yt_dlp/__init__.py", "")
        self.write("vendor/engine/cacert.pem", "certificates\n")
        self.write("vendor/engine/licences/yt-dlp", "free\n")
        self.write("vendor/engine/manifest.txt", "")

    def stage(self, folder: Path, *options: str, code: int = 0) -> str:
        run = subprocess.run(
            [STAGE, folder, "--sources", self.scratch / "sources", "--vendor",
             self.scratch / "vendor", "--version", "2.5.0", *options],
            text=True, capture_output=True)
        self.assertEqual(run.returncode, code, run.stderr)
        return run.stderr

    def imported(self, folder: Path) -> dict:
        """What the interpreter makes of the bundle: the value, and each module's byte code."""
        program = (
            "import sys, json, os; sys.path.insert(0, sys.argv[1]); import python_init as p\n"
            "from veltro_ytdlp import answer as a\n"
            "print(json.dumps([p.ANSWER, os.path.exists(p.__cached__), os.path.exists(a.__cached__)]))")
        run = subprocess.run([PYTHON, "-IBSc", program, folder], text=True, check=True,
                             capture_output=True)
        return json.loads(run.stdout)

    def test_a_build_mends_what_is_missing_or_has_changed(self):
        self.stage(self.bundle, "--link")
        self.assertEqual(self.imported(self.bundle), [1, True, True])
        self.assertEqual(self.imported(self.resources), [1, True, True])
        info = json.loads((self.bundle / "Contents/Info.json").read_text())
        self.assertEqual(info, {"shortVersion": "2.5.0", "updateFeed": "", "updateKey": ""})

        (self.bundle / "yt-dlp").unlink()
        (self.resources / "cacert.pem").unlink()
        (self.bundle / "python_init.py").unlink()
        self.write("sources/veltro_ytdlp/other.py", "")
        self.answer.write_text("ANSWER = 2\n")
        self.stage(self.bundle, "--link")
        self.assertTrue((self.bundle / "yt-dlp/yt_dlp/__init__.py").is_file())
        self.assertTrue((self.resources / "cacert.pem").is_file())
        self.assertEqual(self.imported(self.bundle), [2, True, True])

        (self.scratch / "sources/veltro_ytdlp/other.py").unlink()
        self.stage(self.bundle, "--link")
        self.assertFalse((self.bundle / "veltro_ytdlp/other.py").exists())

    def test_a_module_edited_in_the_bundle_is_not_overruled_by_its_byte_code(self):
        self.stage(self.bundle, "--link")
        edited = self.resources / "veltro_ytdlp/answer.py"
        before = edited.stat()
        edited.write_text("ANSWER = 7\n")
        os.utime(edited, ns=(before.st_atime_ns, before.st_mtime_ns))
        self.assertEqual(self.imported(self.bundle)[0], 7)

    def test_a_staged_bundle_stands_alone_and_replaces_an_older_one(self):
        program = self.write("veltro", "#!/bin/sh\n")
        place = self.scratch / "staged"
        for _ in range(2):
            self.stage(place, "--program", str(program), "--feed", "https://example.org/feed",
                       "--plug-in", str(program), "--managed-by", "apt")
        moved = place.rename(self.scratch / "moved")
        (self.scratch / "vendor").rename(self.scratch / "gone")
        for path in moved.rglob("*"):
            self.assertTrue(path.resolve(strict=True).is_relative_to(moved), path)
        self.assertEqual(self.imported(moved), [1, True, True])
        self.assertTrue((moved / "veltro").is_file())
        self.assertTrue((moved / "Contents/PlugIns/veltro").is_file())
        information = json.loads((moved / "Contents/Info.json").read_text())
        self.assertEqual(information, {
            "shortVersion": "2.5.0", "updateFeed": "https://example.org/feed", "updateKey": "",
            "managedBy": "apt"})
        self.assertEqual(sorted(entry.name for entry in self.scratch.iterdir() if entry.is_dir()),
                         ["gone", "moved", "sources"])

    def test_a_folder_that_is_no_bundle_is_left_alone(self):
        other = self.write("home/letter.txt", "dear\n").parent
        self.assertIn("no bundle", self.stage(other, code=1))
        self.assertEqual(os.listdir(other), ["letter.txt"])

    def test_a_module_that_does_not_compile_stops_the_build(self):
        self.answer.write_text("ANSWER =\n")
        self.assertIn("answer.py", self.stage(self.bundle, "--link", code=1))


if __name__ == "__main__":
    unittest.main()
