# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What cmake --install puts on a machine is whole, valid, and found by the desktop."""
import configparser
import json
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

BUILD = Path(os.environ["VELTRO_BUILD"])
IDENTIFIER = "app.veltro.app"


def run(*command, **more) -> str:
    done = subprocess.run(list(map(str, command)), text=True, capture_output=True, **more)
    if done.returncode != 0:
        raise AssertionError(f"{command[0]}: {done.stdout}{done.stderr}")
    return done.stdout


def ini(path: Path) -> configparser.ConfigParser:
    parser = configparser.ConfigParser(interpolation=None)
    parser.optionxform = str
    parser.read_string(path.read_text(encoding="utf-8"))
    return parser


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.scratch = Path(scratch.name)
        cls.prefix = cls.scratch / "place"
        run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        cls.share = cls.prefix / "share"
        cls.bundle = cls.prefix / "lib/veltro"

    def test_the_bundle_stands_alone(self):
        for name in ("veltro", "veltro-search-provider", "python_init.py", "Contents/Resources/cacert.pem",
                     "Contents/Resources/yt-dlp/yt_dlp/__init__.py",
                     "Contents/PlugIns/veltro-media.so"):
            self.assertTrue((self.bundle / name).is_file(), name)
        outside = [path for path in self.bundle.rglob("*") if path.is_symlink()
                   and not path.resolve().is_relative_to(self.bundle.resolve())]
        self.assertEqual(outside, [])
        information = json.loads((self.bundle / "Contents/Info.json").read_text())
        self.assertRegex(information["shortVersion"], r"^\d+\.\d+\.\d+$")
        self.assertEqual(os.readlink(self.prefix / "bin/veltro"), "../lib/veltro/veltro")
        self.assertTrue(os.access(self.prefix / "bin/veltro", os.X_OK))

    def test_the_desktop_files_are_valid_and_name_what_is_there(self):
        entry = self.share / f"applications/{IDENTIFIER}.desktop"
        run("desktop-file-validate", entry)
        desktop = ini(entry)["Desktop Entry"]
        self.assertEqual(desktop["Exec"], f"{self.prefix}/bin/veltro %U")
        self.assertEqual(desktop["DBusActivatable"], "true")
        icon = self.share / f"icons/hicolor/scalable/apps/{desktop['Icon']}.svg"
        self.assertIn("<svg", icon.read_text())
        run("appstreamcli", "validate", "--no-net", "--pedantic",
            self.share / f"metainfo/{IDENTIFIER}.metainfo.xml")

    def test_the_scheme_is_the_programs(self):
        applications = self.share / "applications"
        run("update-desktop-database", applications)
        self.assertIn(f"x-scheme-handler/veltro={IDENTIFIER}.desktop;",
                      (applications / "mimeinfo.cache").read_text())

    def test_search_is_asked_of_a_helper_that_the_bus_can_start(self):
        shell = ini(self.share / f"gnome-shell/search-providers/{IDENTIFIER}.search-provider.ini")
        provider = shell["Shell Search Provider"]
        runner = ini(self.share / f"krunner/dbusplugins/{IDENTIFIER}.desktop")["Desktop Entry"]
        self.assertEqual(provider["DesktopId"], f"{IDENTIFIER}.desktop")
        self.assertEqual(provider["BusName"], runner["X-Plasma-DBusRunner-Service"])
        call = "gdbus call --session --dest {} --object-path {} --method {} {}; "
        calls = (call.format(provider["BusName"], provider["ObjectPath"],
                             "org.gnome.Shell.SearchProvider2.GetInitialResultSet", "\"['film']\"")
                 + call.format(provider["BusName"], runner["X-Plasma-DBusRunner-Path"],
                               "org.kde.krunner1.Match", "film")
                 + "kill $(gdbus call --session --dest org.freedesktop.DBus --object-path / --method"
                   f" org.freedesktop.DBus.GetConnectionUnixProcessID {provider['BusName']}"
                   " | tr -dc '0-9 ' | cut -d' ' -f2)")
        answers = run("dbus-run-session", "--", "sh", "-c", calls, env={
            **os.environ, "XDG_DATA_DIRS": f"{self.share}:/usr/share",
            "XDG_DATA_HOME": str(self.scratch / "data"), "HOME": str(self.scratch)})
        self.assertEqual(answers.splitlines()[:2], ["(@as [],)", "(@a(sssuda{sv}) [],)"])

    def test_the_program_can_be_started_by_its_name_on_the_bus(self):
        service = ini(self.share / f"dbus-1/services/{IDENTIFIER}.service")["D-BUS Service"]
        self.assertEqual(service["Name"], IDENTIFIER)
        self.assertEqual(service["Exec"], f"{self.prefix}/bin/veltro")

    def test_a_package_names_the_place_that_it_will_have(self):
        root = self.scratch / "root"
        run("cmake", "--install", BUILD, "--prefix", "/usr",
            env={**os.environ, "DESTDIR": str(root)})
        entry = ini(root / f"usr/share/applications/{IDENTIFIER}.desktop")
        self.assertEqual(entry["Desktop Entry"]["Exec"], "/usr/bin/veltro %U")
        helper = ini(root / f"usr/share/dbus-1/services/{IDENTIFIER}.SearchProvider.service")
        self.assertEqual(helper["D-BUS Service"]["Exec"], "/usr/lib/veltro/veltro-search-provider")
        self.assertTrue((root / "usr/lib/veltro/veltro-search-provider").is_file())


if __name__ == "__main__":
    unittest.main()
