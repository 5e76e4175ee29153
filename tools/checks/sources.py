# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Which files are ours, and what they include."""
import re
from functools import cache
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
ROOMS = ("platform", "engine", "coordination", "library", "ui", "tools", "tests", "benchmarks",
         "packaging")
CODE = (".h", ".cpp")

_INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(["<])([^">]+)[">]', re.MULTILINE)
# Strings are matched too, so that a "//" in one does not begin a comment.
_COMMENT = re.compile(r'//[^\n]*|/\*.*?\*/|("(?:\\.|[^"\\\n])*")|(\'(?:\\.|[^\'\\\n])*\')', re.DOTALL)


def code_files(root: Path = ROOT) -> list[Path]:
    """All C++ files, as paths relative to the root, in order."""
    return sorted(path.relative_to(root) for room in ROOMS for path in (root / room).rglob("*")
                  if path.suffix in CODE and path.is_file())


def without_comments(text: str) -> str:
    """The text with each comment made blank; lines keep their numbers."""
    def blank(match: re.Match) -> str:
        if match.group(1) or match.group(2):
            return match.group(0)
        return re.sub(r"[^\n]", " ", match.group(0))
    return _COMMENT.sub(blank, text)


def includes(text: str) -> list[tuple[int, bool, str]]:
    """(line, whether it is ours, name) for each include."""
    return [(text.count("\n", 0, match.start(2)) + 1, match.group(1) == '"', match.group(2))
            for match in _INCLUDE.finditer(text)]


@cache
def own_includes(path: Path, root: Path = ROOT) -> tuple[Path, ...]:
    """The files of ours that this one includes, relative to the root."""
    text = without_comments((root / path).read_text(encoding="utf-8"))
    found = []
    for _, own, name in includes(text):
        if own:
            found.extend(candidate for candidate in (Path(name), path.parent / name)
                         if (root / candidate).is_file())
    return tuple(found)


def reached(path: Path, root: Path = ROOT) -> set[Path]:
    """Every file of ours that this one includes, through others too."""
    seen: set[Path] = set()
    waiting = [path]
    while waiting:
        for found in own_includes(waiting.pop(), root):
            if found not in seen:
                seen.add(found)
                waiting.append(found)
    return seen
