#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Proves that includes run downwards only, and that each foreign library stays in its room.

layering.py [ROOT]: prints each fault as file:line: text, and ends with 1 when there is one.
"""
import re
import sys
from dataclasses import dataclass
from fnmatch import fnmatch
from pathlib import Path

import sources

# The first pattern that fits a file gives its unit. A unit may include itself and lower ranks.
RANKS = (
    ("platform/ffmpeg/*", "platform/ffmpeg", 1),
    ("platform/*", "platform", 0),
    ("engine/bridge/*", "engine/bridge", 2),
    ("engine/runtime/*", "engine/runtime", 3),
    ("engine/media/*", "engine/media", 3),
    ("engine/selectors/*", "engine/selectors", 4),
    ("engine/transcode/*", "engine/transcode", 4),
    ("engine/service/*", "engine/service", 5),
    ("coordination/coordinator*", "the coordinator", 8),
    ("coordination/*", "coordination", 6),
    ("library/*", "library", 7),
    ("ui/design/*", "ui/design", 9),
    ("ui/*", "ui", 10),
    # Not part of the program: these may include anything, and nothing includes them.
    ("tools/*", "tools", 100),
    ("tests/*", "tests", 101),
    ("benchmarks/*", "benchmarks", 101),
)
OUTSIDE = 100


@dataclass(frozen=True)
class Library:
    name: str
    headers: str  # a regular expression over the name in <>
    rooms: tuple[str, ...]


LIBRARIES = (
    Library("FFmpeg", r"lib(av\w+|sw\w+|postproc)/", ("platform/ffmpeg/*",)),
    Library("SQLite", r"sqlite3", ("library/*", "platform/search_index*")),
    Library("D-Bus", r"(QtDBus|QDBus|dbus/|systemd/sd-bus)", ("platform/*",)),
    Library("the interpreter", r"(Python|structmember|frameobject|cpython/.*|pyconfig)\b",
            ("engine/bridge/*",)),
    Library("mpv", r"mpv/", ("platform/*", "ui/player*")),
)
# Names of the interpreter's C interface, in code or in a string that a loader is asked for.
INTERPRETER_NAME = re.compile(r"\b_?Py(?:_|[A-Z][A-Za-z]*_)\w+")
INTERPRETER_ROOM = "engine/bridge/*"


def unit_of(path: Path) -> tuple[str, int] | None:
    for pattern, name, rank in RANKS:
        if fnmatch(str(path), pattern):
            return name, rank
    return None


def faults(root: Path) -> list[str]:
    found = []
    for path in sources.code_files(root):
        unit = unit_of(path)
        if unit is None:
            found.append(f"{path}:1: this folder has no rank")
            continue
        text = sources.without_comments((root / path).read_text(encoding="utf-8"))
        for line, own, name in sources.includes(text):
            fault = own_fault(root, path, unit, name) if own else foreign_fault(path, unit, name)
            if fault:
                found.append(f"{path}:{line}: {fault}")
        if unit[1] < OUTSIDE and not fnmatch(str(path), INTERPRETER_ROOM):
            for match in INTERPRETER_NAME.finditer(text):
                line = text.count("\n", 0, match.start()) + 1
                found.append(f"{path}:{line}: {match.group(0)} belongs to {INTERPRETER_ROOM[:-2]}")
    return found


def own_fault(root: Path, path: Path, unit: tuple[str, int], name: str) -> str | None:
    if name.endswith(".moc"):
        return None
    if not (root / name).is_file():
        return f'"{name}" is no file of ours; its path is written from the root'
    other = unit_of(Path(name))
    if other is None:
        return f'"{name}" lies in a folder without a rank'
    if other[0] != unit[0] and other[1] >= unit[1]:
        return f'"{name}" runs upwards, from {unit[0]} to {other[0]}'
    return None


def foreign_fault(path: Path, unit: tuple[str, int], name: str) -> str | None:
    if unit[1] >= OUTSIDE:
        return None
    for library in LIBRARIES:
        if re.match(library.headers, name) and not any(
                fnmatch(str(path), room) for room in library.rooms):
            rooms = " and ".join(room.rstrip("/*") for room in library.rooms)
            return f"<{name}> is a header of {library.name}, for {rooms} alone"
    return None


def main() -> int:
    found = faults(Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else sources.ROOT)
    print("\n".join(found) if found else "every include runs downwards")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
