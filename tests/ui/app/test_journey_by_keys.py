# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The whole journey by keys alone. The tree is only looked at."""

from journey import Journey
from keyboard import Keyboard
from window_session import until


class JourneyByKeys(Journey):
    def test_a_link_is_saved_played_and_deleted(self):
        self.keys = Keyboard(self.session, self.tree)
        self.travel()

    def type_link(self, link):
        self.keys.go_to("text", "Page address")
        self.keys.type(link)
        until(lambda: self.tree.get("text", "Page address").text == link, "the end of typing")

    def choose_tier(self, tier):
        self.keys.go_to("radio button", "1080p")
        self.keys.go_to("radio button", tier, "Right")
        self.keys.press("space")
        until(lambda: self.tree.get("radio button", tier).is_checked, "the choice")

    def save(self):
        self.keys.press("Return", "KP_Enter", "Return")

    def show_queue(self):
        self.keys.press("ctrl+3")

    def show_library(self):
        self.keys.press("ctrl+2")

    def play(self):
        self.keys.press("Right")

    def pause(self):
        self.keys.go_to("animation", "Video")
        self.keys.press("space")

    def resume(self):
        self.keys.press("space")

    def delete(self):
        self.keys.press("Delete")
