#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs qmllint on our QML files: qmllint.py BUILD_FOLDER [FILE...]

The types of our modules are those that the build has written to BUILD_FOLDER/qml. Any warning is
a fault. That a property with an id is made at once matters to styles that others replace; ours
are final.
"""
import subprocess
import sys
from pathlib import Path

import sources

TOOL = "/usr/lib/qt6/bin/qmllint"


def main() -> int:
    modules = Path(sys.argv[1]).resolve() / "qml"
    files = [Path(name).resolve() for name in sys.argv[2:]] or sorted(
        path for folder in ("ui", "tests/ui") for path in (sources.ROOT / folder).rglob("*.qml"))
    done = subprocess.run([TOOL, "--deferred-property-id", "disable", "-I", str(modules),
                           *map(str, files)], capture_output=True, text=True)
    said = (done.stdout + done.stderr).strip()
    print(said or f"{len(files)} files without a warning")
    return 1 if done.returncode or "Warning:" in said or "Error:" in said else 0


if __name__ == "__main__":
    sys.exit(main())
