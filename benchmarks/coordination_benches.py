# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What downloads cost the main thread: the events of a run, and a long queue."""

import json
import statistics
import subprocess

from measuring import verdict

FRAME = 16  # ms


def measured(place, *arguments):
    """The program's lines, one for each measurement."""
    done = subprocess.run([place.bundle / "veltro-bench-coordination", *arguments], check=True,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True)
    return [json.loads(line) for line in done.stdout.splitlines()]


def events(place):
    lines = measured(place, "events")
    ours, baseline = ([line[name] for line in lines] for name in ("ours", "baseline"))
    if min(ours + baseline) < 0:
        yield "events were lost or came out of turn"
        return
    yield verdict(ours, baseline, "a queued call for each event", 0.5)
    count = lines[0]["events"]
    yield (f"{statistics.median(ours) / count * 1e6:.2f} µs of the main thread for an event, "
           f"to reach 5, {lines[0]['notices']} notifications of {count} events, none lost")


def queue(place):
    with place.site() as site:
        for line in measured(place, "queue", site + "/held"):
            yield (f"{line['what']}: longest stall {line['stall'] * 1000:.1f} ms, "
                   f"to reach {FRAME}")
