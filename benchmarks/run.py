#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs benchmarks: run.py [NAME...]; all of them without a name.

Each measures our way and a named baseline in turn, in the same run and at the same priority, and
prints the medians and their ratio. A ratio says more than a time: the machine's other load is in
both.
"""

import sys

sys.dont_write_bytecode = True

import pathlib

import coordination_benches
import engine_benches
import library_benches
import media_benches
import runner_benches
import ui_benches
from measuring import Place

BENCHES = {
    "engine-start": engine_benches.engine_start,
    "first-probe": engine_benches.first_probe,
    "probe": engine_benches.warm_probe,
    "save": engine_benches.save,
    "still": media_benches.still,
    "probe-file": media_benches.probe_file,
    "memory": media_benches.memory,
    "remux": runner_benches.remux,
    "transcode": runner_benches.transcode,
    "transcode-as-used": runner_benches.transcode_as_used,
    "events": coordination_benches.events,
    "queue": coordination_benches.queue,
    "library-open": library_benches.library_open,
    "library-search": library_benches.library_search,
    "library-insert": library_benches.library_insert,
    "desktop-search": library_benches.desktop_search,
    "ui-start": ui_benches.start,
    "ui-idle-memory": ui_benches.idle_memory,
    "ui-frames": ui_benches.frames,
    "ui-idle": ui_benches.idle,
}


def main(names):
    unknown = [name for name in names if name not in BENCHES]
    if unknown:
        print(f"unknown benchmark {unknown[0]}; there are {', '.join(BENCHES)}", file=sys.stderr)
        return 2
    root = pathlib.Path(__file__).resolve().parent.parent
    place = Place(root, root / "build/release/bundle")
    for name in names or BENCHES:
        for line in BENCHES[name](place):
            print(f"{name}: {line}", flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
