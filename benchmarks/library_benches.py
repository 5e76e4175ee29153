# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a library of a hundred thousand items costs: to open, to search, to add to."""

import contextlib
import json
import pathlib
import statistics
import subprocess
import tempfile

from measuring import paired, seconds, seconds_to_line, verdict

ITEMS = 100_000
ROWS = 50
TYPED = "documentary "
INSERTED = 40
QUERIES = 400
NEWEST = ("SELECT * FROM DownloadItem ORDER BY completedAt DESC, rowid DESC "
          f"LIMIT {ROWS}")


def program(place, *arguments):
    return [str(place.bundle / "veltro-bench-library"), *map(str, arguments)]


@contextlib.contextmanager
def store(place):
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder, "library.sqlite")
        subprocess.run(program(place, "fill", file, ITEMS), check=True)
        yield file


def lines(command):
    done = subprocess.run(command, check=True, stdin=subprocess.DEVNULL, capture_output=True,
                          text=True)
    return [json.loads(line) for line in done.stdout.splitlines()]


def percentile(values, share):
    return sorted(values)[min(len(values) - 1, int(len(values) * share))]


def differences(sums):
    """Of the sums of a series, by name, what each adds."""
    before = [0, *sums.values()]
    return {name: value - earlier for (name, value), earlier in zip(sums.items(), before)}


def library_open(place):
    with store(place) as file:
        ours, baseline = paired(
            lambda: seconds_to_line(program(place, "open", file, ROWS)),
            lambda: seconds(["sqlite3", str(file), NEWEST]), 21)
        yield verdict(ours, baseline, "the sqlite3 tool selecting the same rows", 2.0)
        # What a process that only loads the libraries works is not the library's.
        starts = [lines(program(place, "profile", file, ROWS))[0] for _ in range(21)]
        shares = {name: statistics.median(start[name] for start in starts) * 1000
                  for name in ("loaded", "toolkit", "store", "rows")}
        yield ("milliseconds of the processor: libraries {loaded:.2f}, toolkit {toolkit:.2f}, "
               "store {store:.2f}, rows {rows:.2f}".format(**differences(shares)))
        # The query alone, in an open process: prepared, stepped, and rows made of it.
        script = file.with_name("queries.sql")
        script.write_text(f"{NEWEST};\n" * QUERIES)
        tool = ["sqlite3", str(file)]
        ours, baseline = paired(
            lambda: lines(program(place, "query", file, ROWS, QUERIES))[0]["query"] * QUERIES,
            lambda: seconds([*tool, f".read {script}"]) - seconds([*tool, "SELECT 1"]), 11)
        yield verdict(ours, baseline, f"{QUERIES} times the query alone, the tool's less its start",
                      1.0)


def library_search(place):
    with store(place) as file:
        keys = [line for _ in range(5) for line in lines(program(place, "search", file, TYPED))]
    worked = percentile([key["worked"] for key in keys], 0.95)
    answered = [key["answered"] for key in keys]
    yield (f"p95 {worked * 1000:.2f} ms of the main thread for a keystroke, to reach 16; "
           f"answered in {statistics.median(answered) * 1000:.1f} ms, at most "
           f"{max(answered) * 1000:.1f} ms, to reach 50; {len(keys)} keystrokes")


def library_insert(place):
    with store(place) as file:
        worked = [line["worked"] for line in lines(program(place, "insert", file, INSERTED))]
    yield (f"{statistics.median(worked) * 1000:.2f} ms of the main thread for an item, at most "
           f"{max(worked) * 1000:.2f} ms, to reach 5")


def desktop_search(place):
    command = str(place.bundle / "veltro-bench-search")
    with tempfile.TemporaryDirectory() as folder:
        file = str(pathlib.Path(folder, "search.sqlite"))
        subprocess.run([command, "fill", file, str(ITEMS)], check=True)
        keys = [line for _ in range(5) for word in ("veltro", "channel", "mountain")
                for line in lines([command, "search", file, word])]
    first = [key["answered"] for key in keys if key["letters"] == 1]
    answered = [key["answered"] for key in keys]
    yield (f"one letter in {statistics.median(first) * 1000:.1f} ms, any number in at most "
           f"{max(answered) * 1000:.1f} ms, of {ITEMS} items; {len(keys)} keystrokes")
