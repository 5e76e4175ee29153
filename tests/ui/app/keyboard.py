# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Keys as a hand presses them, and where they lead."""
from window_session import until

MOST_STEPS = 40


class Keyboard:
    def __init__(self, session, tree):
        self.session = session
        self.tree = tree

    def press(self, *keys):
        self.session.xdotool("key", *keys)

    def type(self, text):
        self.session.xdotool("type", text)

    def place(self):
        """What has the focus, and where on the screen; a view may have it that says nothing."""
        node = self.tree.focused()
        return (str(node), node.area) if node else ("nothing", None)

    def step(self, key):
        """Where the key leads to, which is another place."""
        before = self.place()
        self.press(key)

        def elsewhere():
            place = self.place()
            return place if place[1] and place != before else None
        return until(elsewhere, f"what {key} leads to from {before}")

    def go_to(self, role, name, key="Tab"):
        """Key by key until that has the focus."""
        what, _ = self.place()
        for _ in range(MOST_STEPS):
            if what.startswith(f"{role} '{name}"):
                return
            what, _ = self.step(key)
        raise AssertionError(f"{key} does not lead to the {role} {name!r}")

    def round(self, key="Tab"):
        """Every stop, from here until the focus is back; the screen may have scrolled meanwhile."""
        stops = [self.place()[0]]
        while len(stops) < MOST_STEPS:
            stop, _ = self.step(key)
            if stop == stops[0]:
                break
            stops.append(stop)
        return stops
