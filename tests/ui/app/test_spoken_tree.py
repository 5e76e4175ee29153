# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader is told: on every tab, in the sheets, the menus and an alert, whatever takes
the keyboard or an action has a name and says what it is."""

from accessible_tree import Tree
from window_session import PROGRAM, SessionTest, Site, until

NO_ROLES = {"filler", "unknown", "invalid", "panel", "layered pane", "redundant object", ""}


class SpokenTreeTest(SessionTest):
    def setUp(self):
        super().setUp()
        self.site = Site(self.stack)
        self.tree = Tree(self.session)
        self.session.remember_window(3800, 2100)  # of a larger display
        self.session.start_program()
        until(self.tree.window_fits, "a window that fits")

    def look(self, place, *expected):
        """The tree of the place has what is expected, and nothing that says nothing."""
        for role, name in expected:
            self.tree.get(role, name)
        for node in self.tree.shown():
            if node.is_focusable or node.actions:
                with self.subTest(place, node=str(node), parent=str(node.parent)):
                    self.assertNotIn(node.role, NO_ROLES)
                    self.assertNotEqual(node.name.strip(), "")

    def hand_over(self, page):
        self.session.run(str(PROGRAM), self.site.address + page)

    def test_every_place_says_what_is_in_it(self):
        self.look("Home", ("menu item", "File"), ("page tab list", "Tabs"), ("page tab", "Queue"),
                  ("text", "Page address"), ("push button", "Paste & save"),
                  ("push button", "Paste many"), ("push button", "Save"),
                  ("radio button", "1080p"), ("heading", "Save any video."))
        self.tree.save(self.site.address + "/plain")
        self.tree.get("push button", "A plain video")  # among the recent ones
        self.tree.save(self.site.address + "/missing/media")
        self.look_at_the_queue()
        self.look_at_the_library()
        self.look_at_the_settings()
        self.look_at_what_lies_over()

    def look_at_the_queue(self):
        self.tree.get("page tab", "Queue").press()
        until(lambda: self.tree.find("push button", "Retry"), "the failure")
        self.look("Queue", ("list", "Downloads"), ("list item", "A plain video"),
                  ("push button", "Play"), ("push button", "Retry"),
                  ("push button", "Clear finished downloads"))
        self.assertIn("Done", self.tree.get("list item", "A plain video").description)

    def look_at_the_library(self):
        self.tree.get("page tab", "Library").press()
        self.tree.get("list item", "A plain video").press()
        self.look("Library", ("text", "Search"), ("list", "Saved items"),
                  ("animation", "Video"), ("slider", "Position"), ("slider", "Volume"),
                  ("push button", "Mute"), ("push button", "Full Screen"),
                  ("push button", "Show in Finder"), ("push button", "Open"),
                  ("push button", "Delete"), ("split pane", "Width of the player"))

    def look_at_the_settings(self):
        self.tree.get("page tab", "Settings").press()
        self.look("Settings", ("combo box", "Quality"), ("combo box", "Audio format"),
                  ("check box", "Wi-Fi only"), ("check box", "Download subtitles"),
                  ("text", "Languages"), ("text", "Output template"))
        self.tree.get("push button", "Add a site").press()
        self.look("Add a site", ("dialog", "Add a logged-in site"), ("text", "Site"),
                  ("combo box", "Where its cookies are"), ("push button", "Cancel"))
        self.tree.get("push button", "Cancel").press()
        self.tree.wait_until_gone("dialog", "Add a logged-in site")

    def look_at_what_lies_over(self):
        self.tree.get("menu item", "File").press()
        self.look("menu", ("menu item", "Paste & Save"), ("menu item", "Quit"))
        self.tree.get("menu item", "Paste Many Links").press()
        self.look("batch", ("dialog", "Paste many links"), ("text", "Links"),
                  ("push button", "Close"), ("push button", "Paste"), ("push button", "Queue 0"))
        self.tree.get("push button", "Close").press()
        self.tree.wait_until_gone("dialog", "Paste many links")
        self.hand_over("/jsonld")
        self.look("picker", ("dialog", "Choose a format"), ("page tab", "Video"),
                  ("page tab", "All"), ("list", "Formats"))
        self.tree.get("push button", "Close").press()
        self.tree.wait_until_gone("dialog", "Choose a format")
        self.hand_over("/status/404")
        self.look("alert", ("dialog", "Engine error"), ("push button", "OK"))
        self.tree.get("push button", "OK").press()
        self.tree.wait_until_gone("dialog", "Engine error")
