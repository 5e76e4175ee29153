#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs clang-tidy on our sources: tidy.py [FILE...]

The compile commands are those of the tidy preset, one for each source. A source is looked at
again only when it, a file of ours that it reaches, its command or the checks have changed: what
was found clean leaves a stamp in build/tidy/stamps.
"""
import hashlib
import json
import os
import re
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import sources

# The first release whose checks understand our coroutines and ranges with this standard library.
TOOL = "clang-tidy-19"
BUILD = sources.ROOT / "build/tidy"
STAMPS = BUILD / "stamps"
GENERATED = re.compile(r'#include "[^"]+\.moc"')


def main() -> int:
    configure()
    commands = own_commands()
    common = common_key()
    keys = {path: key_of(path, command, common) for path, command in commands.items()}
    forget_stamps_except(set(keys.values()))
    wanted = {Path(name).resolve().relative_to(sources.ROOT) for name in sys.argv[1:]} or keys
    waiting = [path for path in keys if path in wanted and not (STAMPS / keys[path]).exists()]
    make_generated_sources(waiting)
    begin = time.monotonic()
    with ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        clean = list(pool.map(lambda path: look_at(path, STAMPS / keys[path]), waiting))
    print(f"{len(keys)} sources, {len(waiting)} looked at in {time.monotonic() - begin:.0f} s, "
          f"{clean.count(False)} with findings")
    return 1 if False in clean else 0


def configure() -> None:
    command = (["ninja", "-C", str(BUILD), "build.ninja"] if (BUILD / "build.ninja").exists()
               else ["cmake", "--preset", "tidy"])
    subprocess.run(command, cwd=sources.ROOT, check=True, stdout=subprocess.DEVNULL)
    STAMPS.mkdir(exist_ok=True)


def own_commands() -> dict[Path, str]:
    """The compile command of each source of ours; generated ones are not ours."""
    own = set(sources.code_files())
    found = {}
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        path = Path(entry["file"])
        if path.is_relative_to(sources.ROOT) and path.relative_to(sources.ROOT) in own:
            found[path.relative_to(sources.ROOT)] = entry["command"]
    return found


def make_generated_sources(paths: list[Path]) -> None:
    """Some tests include what moc makes of them: their generating targets run, nothing else."""
    if not any(GENERATED.search((sources.ROOT / path).read_text()) for path in paths):
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


def key_of(path: Path, command: str, common: bytes) -> str:
    digest = hashlib.sha256(common)
    digest.update(command.encode())
    for file in [path, *sorted(sources.reached(path))]:
        digest.update(str(file).encode() + b"\0")
        digest.update(hashlib.sha256((sources.ROOT / file).read_bytes()).digest())
    return digest.hexdigest()


def look_at(path: Path, stamp: Path) -> bool:
    run = subprocess.run(["nice", TOOL, "-p", str(BUILD), "--quiet", str(sources.ROOT / path)],
                         capture_output=True, text=True)
    if run.returncode == 0:
        stamp.touch()
        return True
    print(f"== {path}\n{run.stdout.strip() or run.stderr.strip()}", flush=True)
    return False


def forget_stamps_except(current: set[str]) -> None:
    for stamp in STAMPS.iterdir():
        if stamp.name not in current:
            stamp.unlink()


if __name__ == "__main__":
    sys.exit(main())
