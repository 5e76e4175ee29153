# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The program without a session bus, with one that dies, beside its second start, and closed over a
download."""
import contextlib
import pathlib
import subprocess

from accessible_tree import Tree
from window_session import LONGEST, PROGRAM, SessionTest, Site, until

HELD = "/held?at=1000000"
QUESTION = "Downloads are still active"


class StartAndEndTest(SessionTest):
    def setUp(self):
        super().setUp()
        self.site = Site(self.stack)

    def type_link(self, path):
        self.session.xdotool("type", self.site.address + path)
        self.session.xdotool("key", "Return")

    def test_it_saves_a_link_without_a_session_bus(self):
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent"
        left = pathlib.Path(self.session.environment["XDG_DATA_HOME"],
                            "veltro/cookies/.being-written")
        left.parent.mkdir(parents=True)
        left.write_text("of an import that was killed", encoding="ascii")
        self.session.start_program()
        until(lambda: not left.exists(), "the end of what was left")
        self.type_link("/title/markup")
        until(self.session.saved, "the file")
        # A second start finds the first all the same.
        second = subprocess.run([str(PROGRAM), self.site.address + "/plain"], check=False,
                                env=self.session.environment, timeout=LONGEST)
        self.assertEqual(second.returncode, 0)
        until(lambda: self.site.requests("/plain"), "the request for the page")
        self.assertEqual(len(self.session.windows()), 1)

    def test_a_session_bus_that_dies_takes_nothing_along(self):
        self.session.start_program()
        self.session.bus.kill()
        self.session.bus.wait(LONGEST)
        self.type_link("/title/markup")
        until(self.session.saved, "the file")
        until(self.closes, "the end")
        self.assertEqual(self.session.program.returncode, 0)

    def closes(self):
        """Whether a close ends it. It asks first for as long as something is not done."""
        self.session.xdotool("key", "Escape", "alt+F4")
        with contextlib.suppress(subprocess.TimeoutExpired):
            self.session.program.wait(1)
        return self.session.program.returncode is not None

    def partial(self):
        return sum(file.stat().st_size for file in self.session.downloads.glob("*.part"))

    def test_a_close_asks_and_a_second_start_goes_on_with_the_file(self):
        tree = Tree(self.session)
        self.session.start_program()
        self.type_link(HELD)
        until(lambda: self.partial() > 500_000, "half of the file")
        self.session.xdotool("key", "alt+F4")
        tree.get("dialog", QUESTION)
        self.session.xdotool("key", "Escape")
        tree.wait_until_gone("dialog", QUESTION)
        self.session.xdotool("key", "alt+F4")
        tree.get("dialog", QUESTION)
        self.session.xdotool("key", "Return")
        self.assertEqual(self.session.program.wait(LONGEST), 0)
        kept = self.partial()
        self.assertGreater(kept, 500_000)

        self.site.state.gate.release()
        self.session.start_program()
        self.type_link(HELD)
        until(self.session.saved, "the file")
        self.assertIn(f"bytes={kept}-",
                      [request["range"] for request in self.site.state.log.entries()])
        self.assertEqual(self.partial(), 0)
