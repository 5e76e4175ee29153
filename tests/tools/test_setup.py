# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Set-up notices what is missing, mends it, and otherwise touches nothing.

The package of yt-dlp that set-up keeps for this checkout stands for the network.
"""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from scratch import ROOT, ScratchCase

KEPT_PACKAGE = ROOT / "build/downloads/yt-dlp.deb"
# Nothing listens there: whatever asks the network is refused at once.
NO_NETWORK = """
Acquire::http::Proxy "http://127.0.0.1:9";
Acquire::https::Proxy "http://127.0.0.1:9";
Acquire::Retries::Delay "false";
"""


class Packages(ScratchCase):
    def missing(self, status: str) -> list[str]:
        admin = self.scratch / "dpkg"
        (admin / "info").mkdir(parents=True)
        (admin / "updates").mkdir()
        (admin / "status").write_text(status)
        names = self.write("list.txt", "# needed\nalpha   # why\n\nbeta\ngamma\n")
        return subprocess.run(
            [ROOT / "tools/setup/packages", "--missing", names], check=True, text=True,
            capture_output=True, env={**os.environ, "DPKG_ADMINDIR": str(admin)}).stdout.split()

    def test_a_removed_package_is_missing_even_if_its_configuration_stays(self):
        entry = "Package: {}\nStatus: {}\nArchitecture: all\nVersion: 1\n\n"
        self.assertEqual(self.missing(entry.format("alpha", "install ok installed") +
                                      entry.format("beta", "deinstall ok config-files")),
                         ["beta", "gamma"])


class Vendor(ScratchCase):
    @classmethod
    def setUpClass(cls):
        """One engine part, made as set-up makes it; each test gets a copy."""
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.whole = Path(folder.name)
        run = cls.vendor_in(cls.whole, "--deb", KEPT_PACKAGE)
        assert run.returncode == 0, run.stderr

    def setUp(self):
        super().setUp()
        self.engine = self.scratch / "vendor/engine"
        self.module = self.engine / "yt-dlp/yt_dlp/YoutubeDL.py"

    @staticmethod
    def vendor_in(folder: Path, *options) -> subprocess.CompletedProcess:
        configuration = folder / "apt.conf"
        configuration.write_text(NO_NETWORK)
        environment = {
            **os.environ, "VELTRO_VENDOR_DIR": str(folder / "vendor"),
            "VELTRO_DOWNLOADS_DIR": str(folder / "downloads"), "APT_CONFIG": str(configuration),
        }
        return subprocess.run([ROOT / "tools/setup/vendor", *map(str, options)], text=True,
                              capture_output=True, env=environment)

    def vendor(self, *options) -> subprocess.CompletedProcess:
        return self.vendor_in(self.scratch, *options)

    def vendored(self) -> None:
        for name in ("vendor", "downloads"):
            shutil.copytree(self.whole / name, self.scratch / name)

    def package(self, version: str) -> str:
        tree = self.scratch / "package"
        (tree / "DEBIAN").mkdir(parents=True)
        (tree / "DEBIAN/control").write_text(
            f"Package: yt-dlp\nVersion: {version}\nArchitecture: all\n"
            "Maintainer: Nobody <nobody@example.org>\nDescription: none\n")
        file = self.scratch / "old.deb"
        subprocess.run(["dpkg-deb", "--build", tree, file], check=True, capture_output=True)
        return str(file)

    def test_the_engine_part_is_made_once_and_mended_without_a_network(self):
        self.vendored()
        module = self.module.stat()
        self.assertTrue(list(self.module.parent.glob("__pycache__/YoutubeDL.*.pyc")))
        untouched = self.vendor()
        self.assertEqual((untouched.returncode, untouched.stderr), (0, ""))
        self.assertEqual(self.module.stat().st_ino, module.st_ino)

        (self.engine / "yt-dlp/Cryptodome/Cipher/AES.py").unlink()
        self.assertEqual(self.vendor().returncode, 0)
        self.assertTrue((self.engine / "yt-dlp/Cryptodome/Cipher/AES.py").is_file())

        certificates = (self.engine / "cacert.pem").read_bytes()
        (self.engine / "cacert.pem").write_bytes(certificates[:1000])
        self.assertEqual(self.vendor().returncode, 0)
        self.assertEqual((self.engine / "cacert.pem").read_bytes(), certificates)
        self.assertEqual(os.listdir(self.scratch / "vendor"), ["engine"])

    def test_a_whole_engine_part_outlives_a_failed_fetch(self):
        self.vendored()
        manifest = (self.engine / "manifest.txt").read_bytes()
        shutil.rmtree(self.scratch / "downloads")
        run = self.vendor("--renew")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("keeping yt-dlp", run.stderr)
        self.assertEqual((self.engine / "manifest.txt").read_bytes(), manifest)
        self.assertEqual(os.listdir(self.scratch / "downloads"), [])

    def test_a_stop_in_the_middle_of_a_replacement_loses_nothing(self):
        self.vendored()
        self.engine.rename(self.engine.with_name("engine.old"))
        run = self.vendor()
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertTrue(self.module.is_file())

    def test_without_a_network_and_without_anything_kept_it_says_what_to_do(self):
        run = self.vendor()
        self.assertEqual(run.returncode, 1)
        self.assertIn("--deb FILE", run.stderr)
        self.assertFalse(self.engine.exists())

    def test_a_release_with_known_holes_is_refused(self):
        run = self.vendor("--deb", self.package("2026.06.09-1"))
        self.assertEqual(run.returncode, 1)
        self.assertIn("2026.06.09-1 is too old", run.stderr)
        self.assertFalse(self.engine.exists())


if __name__ == "__main__":
    unittest.main()
