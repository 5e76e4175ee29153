# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the site remembers between requests. Every class here is safe on any thread."""

import json
import threading
import time

HOLD_SECONDS = 30  # no request is held longer, so that a forgotten release cannot hang a test


class RequestLog:
    """Every request since the start or the last reset, oldest first."""

    def __init__(self):
        self._lock = threading.Lock()
        self._entries = []

    def open(self, request):
        entry = {"method": request.method, "path": request.path, "query": request.query_text,
                 "range": request.range, "status": None, "sent": 0, "state": "open"}
        with self._lock:
            self._entries.append(entry)
        return entry

    def entries(self):
        with self._lock:
            return [dict(entry) for entry in self._entries]

    def lines(self):
        return "".join(json.dumps(entry) + "\n" for entry in self.entries())

    def clear(self):
        with self._lock:
            self._entries = []


class Gate:
    """Held requests wait here until the release, or for HOLD_SECONDS at most."""

    def __init__(self):
        self._open = threading.Event()

    def wait(self, seconds=HOLD_SECONDS):
        self._open.wait(min(seconds, HOLD_SECONDS))

    def release(self):
        self._open.set()

    def close(self):
        self._open.clear()


class Rules:
    """Faults that a test asks for while the site runs: the first rule that matches a path acts."""

    ACTIONS = ("status", "rate", "hold", "cut")

    def __init__(self):
        self._lock = threading.Lock()
        self._rules = []

    def add(self, match, times, actions):
        with self._lock:
            self._rules.append({"match": match, "times": times, "actions": actions})

    def clear(self):
        with self._lock:
            self._rules = []

    def actions_for(self, path):
        """What to do to this request; a rule with a number of times is used up by it."""
        with self._lock:
            for rule in self._rules:
                if rule["match"] in path and rule["times"] != 0:
                    rule["times"] -= 1
                    return rule["actions"]
        return {}


class Clocks:
    """Seconds since a name was first asked for: a live stream starts with its first viewer."""

    def __init__(self):
        self._lock = threading.Lock()
        self._starts = {}

    def seconds(self, name):
        now = time.monotonic()
        with self._lock:
            return now - self._starts.setdefault(name, now)

    def clear(self):
        with self._lock:
            self._starts = {}


class Site:
    """The state that all requests share."""

    def __init__(self, media):
        self.media = media
        self.log = RequestLog()
        self.gate = Gate()
        self.rules = Rules()
        self.clocks = Clocks()

    def reset(self):
        self.log.clear()
        self.rules.clear()
        self.clocks.clear()
        self.gate.close()
