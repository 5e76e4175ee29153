# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the desktop's search finds is opened in the program: over the session bus, by the helper
that the desktop asks."""
import ast

from accessible_tree import Tree
from window_session import BUNDLE, SessionTest, Site, until

HELPER = "app.veltro.app.SearchProvider"
PAGES = {"/plain": "A plain video", "/sources": "Two sizes"}


class DesktopSearchTest(SessionTest):
    def setUp(self):
        super().setUp()
        self.site = Site(self.stack)
        self.tree = Tree(self.session)
        self.session.start_program()
        for page in PAGES:
            self.tree.save(self.site.address + page)

    def call(self, method, *arguments):
        return self.session.run(
            "gdbus", "call", "--session", "--dest", HELPER, "--object-path",
            "/app/veltro/app/SearchProvider", "--method",
            "org.gnome.Shell.SearchProvider2." + method, *arguments).decode()

    def found(self, *terms):
        """What the helper finds, as soon as it answers and finds anything."""
        def ask():
            answer = self.call("GetInitialResultSet", str(list(terms)))
            return answer and ast.literal_eval(answer)[0]
        return until(ask, f"an entry for {terms}")

    def test_a_result_is_shown_and_a_search_is_taken_over(self):
        self.session.start([str(BUNDLE / "veltro-search-provider")])
        for title in PAGES.values():
            result = self.found(*title.split())
            self.assertEqual(len(result), 1)
            self.call("ActivateResult", result[0], str(title.split()), "0")
            until(lambda: self.tree.get("list item", title).is_selected, f"the choice of {title!r}")
            self.tree.get("label", title)
            self.tree.get("animation", "Video")
        self.call("LaunchSearch", "['two', 'sizes']", "0")
        until(lambda: self.tree.get("text", "Search").text == "two sizes", "the search")
        self.tree.wait_until_gone("list item", PAGES["/plain"])
