# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The whole journey by actions of the accessibility tree alone, as a screen reader makes them."""

from journey import TITLE, Journey


class JourneyByTree(Journey):
    def test_a_link_is_saved_played_and_deleted(self):
        self.travel()

    def type_link(self, link):
        self.tree.type_link(link)

    def choose_tier(self, tier):
        self.tree.get("radio button", tier).press()

    def save(self):
        self.tree.get("push button", "Save").press()

    def show_queue(self):
        self.tree.get("page tab", "Queue").press()

    def show_library(self):
        self.tree.get("page tab", "Library").press()

    def play(self):
        self.tree.get("list item", TITLE).press()

    def pause(self):
        self.tree.get("push button", "Pause").press()

    def resume(self):
        self.tree.get("push button", "Play").press()

    def delete(self):
        self.tree.get("push button", "Delete").press()
