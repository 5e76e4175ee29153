#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Looks for what must not stand in our files: paths of one machine, leftovers, missing licences.

words.py [ROOT]: prints each fault as file:line: text, and ends with 1 when there is one.
"""
import os
import re
import sys
from pathlib import Path

import sources

SKIPPED_FOLDERS = {".git", "build", "__pycache__"}
SKIPPED_FILES = {"LICENSE"}
LICENSED = {".h", ".cpp", ".py", ".qml", ".sh"}

RULES = (
    (re.compile(r"(?<![\w.$}/-])/(?:home|root|Users)/[\w.-]+"), "a path of one user's machine"),
    (re.compile(r"^(?:<{7}|>{7}|={7})(?: |$)"), "a merge that was not finished"),
    (re.compile(r"\b(?:TODO|HACK|XXX)\b"), "a debt is called FIXME: and says what would settle it"),
    (re.compile(r"\bFIXME\b(?!: \S|:`)"), "FIXME: says what would settle it"),
)


def files(root: Path) -> list[Path]:
    found = []
    for folder, names, here in os.walk(root):
        names[:] = sorted(name for name in names if name not in SKIPPED_FOLDERS)
        found += [Path(folder, name) for name in sorted(here) if name not in SKIPPED_FILES]
    return [path for path in found if not path.is_symlink()]


def faults(root: Path) -> list[str]:
    found = []
    for path in files(root):
        try:
            text = path.read_text(encoding="utf-8")
        except UnicodeDecodeError:
            continue
        name = path.relative_to(root)
        if is_licensed_kind(path, text) and "SPDX-License-Identifier:" not in text[:400]:
            found.append(f"{name}:1: no licence line")
        if path == Path(__file__).resolve():
            continue
        here = re.compile(re.escape(str(root)) + r"(?=[/\s\"']|$)")
        for number, line in enumerate(text.splitlines(), 1):
            found += [f"{name}:{number}: {why}" for rule, why in RULES if rule.search(line)]
            if here.search(line):
                found.append(f"{name}:{number}: the path of this copy of the sources")
    return found


def is_licensed_kind(path: Path, text: str) -> bool:
    return path.suffix in LICENSED or text.startswith("#!")


def main() -> int:
    found = faults(Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else sources.ROOT)
    print("\n".join(found) if found else "nothing that must not stand here")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
