#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the tests of a build: run_tests.py BUILD_FOLDER [CTEST OPTIONS...]

There is no display, and the priority is the usual one: some tests compare with it. What a failed
test said is printed; the last line is "N passed, N failed". A test that could not be started has
failed.
"""
import os
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

# What of the user's own settings would lead the interpreter or Qt elsewhere.
UNWANTED = ("DISPLAY", "WAYLAND_DISPLAY", "PYTHONHOME", "PYTHONPATH", "PYTHON_LIBRARY",
            "PYTHON_VERSION", "PYTHON_LOADER_LOGGING")


def main() -> int:
    folder = Path(sys.argv[1]).resolve()
    report = folder / "tests.xml"
    report.unlink(missing_ok=True)
    environment = {name: value for name, value in os.environ.items() if name not in UNWANTED}
    environment["QT_QPA_PLATFORM"] = "offscreen"
    code = subprocess.run(
        ["ctest", "--test-dir", str(folder), "--parallel", str(os.cpu_count()),
         "--output-on-failure", "--no-tests=error", "--output-junit", str(report), *sys.argv[2:]],
        env=environment).returncode
    passed, failed, skipped = counts(report)
    if code != 0 and not failed:
        print(f"ctest ended with {code}")
        failed = ["ctest"]
    print()
    for name in failed:
        print(f"FAILED: {name}")
    for name in skipped:
        print(f"skipped: {name}")
    print(f"{len(passed)} passed, {len(failed)} failed", flush=True)
    return 1 if failed else 0


def counts(report: Path) -> tuple[list[str], list[str], list[str]]:
    passed: list[str] = []
    failed: list[str] = []
    skipped: list[str] = []
    if report.is_file():
        for case in ElementTree.parse(report).getroot().iter("testcase"):
            outcome = case.get("status")
            reason = case.find("skipped")
            if outcome == "run":
                passed.append(case.get("name"))
            elif outcome == "disabled" or (
                    reason is not None and reason.get("message", "").startswith("SKIP_")):
                skipped.append(case.get("name"))
            else:
                failed.append(case.get("name"))
    return passed, failed, skipped


if __name__ == "__main__":
    sys.exit(main())
