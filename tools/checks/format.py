#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Proves that every C++ file of ours is formatted; with --fix, formats them."""
import subprocess
import sys

import sources


def main() -> int:
    files = [str(path) for path in sources.code_files()]
    how = ["-i"] if "--fix" in sys.argv[1:] else ["--dry-run", "-Werror"]
    code = subprocess.run(["clang-format", *how, *files], cwd=sources.ROOT).returncode
    if code == 0:
        print(f"{len(files)} files are formatted")
    else:
        print("tools/checks/format.py --fix formats them")
    return code


if __name__ == "__main__":
    sys.exit(main())
