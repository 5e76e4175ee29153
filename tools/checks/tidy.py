#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs clang-tidy on our sources: tidy.py [FILE...]

The compile commands are those of the debug preset, which has to be built: what moc and others make
of our sources is there. A library's sources are looked at as one unit, so that the headers of
others are looked through once, and without what was generated. A unit is looked at again only when
a file of ours in it, its command or the checks have changed: what was found clean leaves a stamp in
build/tidy.
"""
import hashlib
import json
import os
import shlex
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

import sources

# The first release whose checks understand our coroutines and ranges with this standard library.
TOOL = "clang-tidy-19"
BUILD = sources.ROOT / "build/debug"
UNITS = sources.ROOT / "build/tidy/units"
STAMPS = sources.ROOT / "build/tidy/stamps"


@dataclass(frozen=True)
class Unit:
    """What one compile command compiles."""
    members: tuple[Path, ...]  # the sources, relative to the root
    command: str
    own: frozenset[Path]  # every file of ours in it, relative to the root

    def key(self, common: bytes) -> str:
        digest = hashlib.sha256(common)
        digest.update(self.command.encode())
        for file in sorted(self.own):
            digest.update(str(file).encode() + b"\0")
            digest.update(hashlib.sha256((sources.ROOT / file).read_bytes()).digest())
        return digest.hexdigest()


def main() -> int:
    configure()
    common = common_key()
    keys = {unit: unit.key(common) for unit in units()}
    forget_stamps_except(set(keys.values()))
    wanted = {Path(name).resolve().relative_to(sources.ROOT) for name in sys.argv[1:]}
    waiting = [unit for unit in keys if not (STAMPS / keys[unit]).exists()
               and (not wanted or wanted & unit.own)]
    begin = time.monotonic()
    with ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        clean = list(pool.map(lambda unit: look_at(unit, STAMPS / keys[unit]), waiting))
    print(f"{len(keys)} units, {len(waiting)} looked at in {time.monotonic() - begin:.0f} s, "
          f"{clean.count(False)} with findings")
    return 1 if False in clean else 0


def configure() -> None:
    if not (BUILD / "compile_commands.json").exists():
        sys.exit("build the debug preset first")
    for folder in (UNITS, STAMPS):
        folder.mkdir(parents=True, exist_ok=True)


def units() -> list[Unit]:
    """The largest first, so that none is left alone at the end."""
    found = []
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        members = own_sources(Path(entry["file"]))
        if members:
            own = frozenset(members).union(*(sources.reached(path) for path in members))
            found.append(Unit(tuple(members), entry["command"], own))
    return sorted(found, key=lambda unit: len(unit.own), reverse=True)


def own_sources(file: Path) -> list[Path]:
    """The file itself, or what of ours a unit made by CMake includes."""
    if not file.is_relative_to(BUILD):
        return [file.relative_to(sources.ROOT)]
    if file.parent.name != "Unity":
        return []
    included = (Path(name) for _, _, name in sources.includes(file.read_text()))
    return [path.relative_to(sources.ROOT) for path in included if not path.is_relative_to(BUILD)]


def options(command: str) -> list[str]:
    """What a compile command says besides its compiler, its files and the making of dependencies."""
    kept = []
    words = iter(shlex.split(command)[1:])
    for word in words:
        if word in ("-o", "-c", "-MF", "-MT"):
            next(words)
        elif word != "-MD" and not word.endswith("c++"):
            kept.append(word)
    return kept


def common_key() -> bytes:
    version = subprocess.run([TOOL, "--version"], check=True, capture_output=True).stdout
    settings = [sources.ROOT / ".clang-tidy",
                *(path for room in sources.ROOMS
                  for path in sorted((sources.ROOT / room).rglob(".clang-tidy")))]
    return version + b"".join(path.read_bytes() for path in settings)


def look_at(unit: Unit, stamp: Path) -> bool:
    """A file by itself is looked at where it lies, since its folder may have checks of its own."""
    source = sources.ROOT / unit.members[0]
    if len(unit.members) > 1:
        source = UNITS / f"{stamp.name}.cpp"
        source.write_text("".join(f'#include "{path}"\n' for path in unit.members))
    run = subprocess.run(
        ["nice", TOOL, "--quiet", str(source), "--", f"-I{sources.ROOT}", *options(unit.command)],
        cwd=BUILD, capture_output=True, text=True)
    if run.returncode == 0:
        stamp.touch()
        return True
    print(f"== {unit.members[0]}{' and others' if len(unit.members) > 1 else ''}\n"
          f"{run.stdout.strip() or run.stderr.strip()}", flush=True)
    return False


def forget_stamps_except(current: set[str]) -> None:
    for stamp in STAMPS.iterdir():
        if stamp.name not in current:
            stamp.unlink()


if __name__ == "__main__":
    sys.exit(main())
