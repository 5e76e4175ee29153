# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Where the keyboard gets to: the stops of the Tab key on every tab, menus of rows and tiles, and
the way out of sheets and of the full screen."""

from accessible_tree import Tree
from keyboard import Keyboard
from window_session import SessionTest, Site, until

SIDEBAR = ["page tab 'Home'", "page tab 'Queue'", "page tab 'Library'", "page tab 'Settings'"]
TITLE = "A plain video"


class KeyboardReachTest(SessionTest):
    def setUp(self):
        super().setUp()
        self.site = Site(self.stack)
        self.tree = Tree(self.session)
        self.keys = Keyboard(self.session, self.tree)
        self.session.start_program()
        until(self.tree.window_fits, "a window that fits")

    def assert_stops(self, *expected):
        """The Tab key comes by these in their order, and by the sidebar."""
        stops = self.keys.round()
        self.assertEqual([stop for stop in stops if stop in expected], list(expected), stops)
        self.assertEqual([stop for stop in stops if stop in SIDEBAR], SIDEBAR, stops)
        back = self.keys.round("shift+Tab")
        self.assertLessEqual({*expected, *SIDEBAR}, set(back))

    def test_the_keyboard_gets_everywhere(self):
        self.tree.save(self.site.address + "/plain")
        self.tree.get("push button", TITLE)
        self.tree.get("alert", "Saved to your library")
        self.tree.get("push button", "Close").press()
        self.tree.wait_until_gone("alert", "")
        self.keys.go_to("text", "Page address")
        self.assert_stops("text 'Page address'", "push button 'Paste & save'",
                          "push button 'Paste many'", "radio button '1080p'",
                          "push button 'A plain video (1)'", "split pane 'Width of the sidebar'")
        self.the_queue()
        self.the_library()
        self.the_settings()

    def the_queue(self):
        self.keys.press("ctrl+3")
        self.keys.go_to("list item", TITLE)
        self.assert_stops("list item 'A plain video (1)'", "push button 'Play'",
                          "push button 'Clear finished downloads'")
        self.keys.go_to("list item", TITLE)
        self.keys.press("Menu")
        self.tree.get("menu item", "Copy Link")
        self.keys.go_to("menu item", "Show Details", "Down")
        self.keys.press("Return")
        self.tree.get("dialog", "Download details")
        self.keys.press("Escape")
        self.tree.wait_until_gone("dialog", "Download details")

    def the_library(self):
        self.keys.press("ctrl+2")
        self.tree.get("split pane", "Width of the player")
        self.keys.go_to("list item", TITLE)
        self.keys.press("Right")
        self.tree.get("push button", "Pause")
        self.assert_stops("list item 'A plain video (1), 2 seconds'", "animation 'Video'",
                          "push button 'Full Screen'", "push button 'Show in Finder'",
                          "push button 'Open'", "push button 'Delete'")
        self.keys.go_to("push button", "Full Screen")
        window = self.tree.get("frame", "Veltro")
        self.keys.press("space")
        until(lambda: window.area == (0, 0, 1366, 768), "the full screen")
        self.keys.press("Escape")
        until(lambda: window.area != (0, 0, 1366, 768), "the end of the full screen")
        self.keys.go_to("split pane", "Width of the player")
        divider = self.tree.get("split pane", "Width of the player")
        before = divider.area
        self.keys.press("Left")
        until(lambda: divider.area != before, "another width")
        self.keys.press("ctrl+f")
        until(lambda: self.tree.get("text", "Search").is_focused, "the search")
        self.keys.go_to("list item", TITLE)
        self.keys.press("Menu")
        self.tree.get("menu item", "Show in Finder")
        self.keys.press("Escape")
        self.tree.wait_until_gone("menu item", "Show in Finder")

    def the_settings(self):
        self.keys.press("ctrl+comma")
        self.keys.go_to("combo box", "Quality")
        self.assert_stops("combo box 'Quality'", "check box 'Extract audio by default'",
                          "combo box 'Audio format'", "check box 'Download subtitles'",
                          "text 'Languages (en, nl, es)'", "text 'Output template'",
                          "check box 'Wi-Fi only'", "push button 'Add a site…'",
                          "push button 'Support'")
        self.keys.go_to("push button", "Add a site")
        self.keys.press("Return")
        self.tree.get("dialog", "Add a logged-in site")
        self.keys.go_to("push button", "Cancel")
        self.keys.press("Return")
        self.tree.wait_until_gone("dialog", "Add a logged-in site")
