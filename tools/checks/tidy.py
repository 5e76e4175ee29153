#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs clang-tidy on our sources: tidy.py [FILE...]

The compile commands are those of the tidy preset: one for each test, one for each library, whose
sources compile as one unit, so that the headers of others are looked through once. A unit is
looked at again only when a file of ours in it, its command or the checks have changed: what was
found clean leaves a stamp in build/tidy/stamps.
"""
import hashlib
import json
import os
import re
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

import sources

# The first release whose checks understand our coroutines and ranges with this standard library.
TOOL = "clang-tidy-19"
BUILD = sources.ROOT / "build/tidy"
STAMPS = BUILD / "stamps"
GENERATED = re.compile(r'#include "[^"]+\.moc"')


@dataclass(frozen=True)
class Unit:
    """What one compile command compiles."""
    file: Path
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
    make_generated_sources(waiting)
    begin = time.monotonic()
    with ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        clean = list(pool.map(lambda unit: look_at(unit, STAMPS / keys[unit]), waiting))
    print(f"{len(keys)} units, {len(waiting)} looked at in {time.monotonic() - begin:.0f} s, "
          f"{clean.count(False)} with findings")
    return 1 if False in clean else 0


def configure() -> None:
    command = (["ninja", "-C", str(BUILD), "build.ninja"] if (BUILD / "build.ninja").exists()
               else ["cmake", "--preset", "tidy"])
    subprocess.run(command, cwd=sources.ROOT, check=True, stdout=subprocess.DEVNULL)
    STAMPS.mkdir(exist_ok=True)


def units() -> list[Unit]:
    """The largest first, so that none is left alone at the end."""
    found = []
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        file = Path(entry["file"])
        members = own_sources(file)
        if members:
            own = frozenset(members).union(*(sources.reached(path) for path in members))
            found.append(Unit(file, entry["command"], own))
    return sorted(found, key=lambda unit: len(unit.own), reverse=True)


def own_sources(file: Path) -> list[Path]:
    """The file itself, or what a unit made by CMake includes; other generated files are not ours."""
    if not file.is_relative_to(BUILD):
        return [file.relative_to(sources.ROOT)]
    if file.parent.name != "Unity":
        return []
    return [Path(name).relative_to(sources.ROOT)
            for _, _, name in sources.includes(file.read_text())]


def make_generated_sources(waiting: list[Unit]) -> None:
    """Some tests include what moc makes of them: their generating targets run, nothing else."""
    if not any(GENERATED.search((sources.ROOT / path).read_text())
               for unit in waiting for path in unit.own):
        return
    listed = subprocess.run(["ninja", "-C", str(BUILD), "-t", "targets", "all"], check=True,
                            capture_output=True, text=True).stdout
    targets = re.findall(r"^(\w+_autogen): phony", listed, re.MULTILINE)
    subprocess.run(["ninja", "-C", str(BUILD), *targets], check=True, stdout=subprocess.DEVNULL)


def common_key() -> bytes:
    version = subprocess.run([TOOL, "--version"], check=True, capture_output=True).stdout
    settings = [sources.ROOT / ".clang-tidy",
                *(path for room in sources.ROOMS
                  for path in sorted((sources.ROOT / room).rglob(".clang-tidy")))]
    return version + b"".join(path.read_bytes() for path in settings)


def look_at(unit: Unit, stamp: Path) -> bool:
    run = subprocess.run(["nice", TOOL, "-p", str(BUILD), "--quiet", str(unit.file)],
                         capture_output=True, text=True)
    if run.returncode == 0:
        stamp.touch()
        return True
    print(f"== {unit.file.relative_to(sources.ROOT)}\n{run.stdout.strip() or run.stderr.strip()}",
          flush=True)
    return False


def forget_stamps_except(current: set[str]) -> None:
    for stamp in STAMPS.iterdir():
        if stamp.name not in current:
            stamp.unlink()


if __name__ == "__main__":
    sys.exit(main())
