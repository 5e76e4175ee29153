# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The program as a screen reader has it. A process can look at one session only."""
import os

# Read when the library begins; what is kept from before is not what is on the screen.
os.environ["ATSPI_NO_CACHE"] = "1"

import gi  # noqa: E402

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from window_session import until  # noqa: E402

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


def answer(question, otherwise):
    """A property of a node: what the question has for an answer; what has gone says nothing."""
    return property(lambda node: node.ask(question, otherwise))


def state(kind):
    return property(lambda node: node.has(kind))


class Node:
    """One object of the tree, as it is when it is asked."""

    def __init__(self, accessible):
        self.accessible = accessible

    def ask(self, question, otherwise):
        try:
            return question(self.accessible)
        except GLib.Error:  # it has gone
            return otherwise

    def has(self, *states):
        known = self.ask(Atspi.Accessible.get_state_set, None)
        return known is not None and all(known.contains(one) for one in states)

    name = answer(Atspi.Accessible.get_name, "")
    description = answer(Atspi.Accessible.get_description, "")
    role = answer(Atspi.Accessible.get_role_name, "")
    value = answer(Atspi.Value.get_current_value, 0.0)
    text = answer(lambda accessible: Atspi.Text.get_text(
        accessible, 0, Atspi.Text.get_character_count(accessible)), "")
    actions = answer(lambda accessible: [
        Atspi.Action.get_action_name(accessible, index)
        for index in range(Atspi.Action.get_n_actions(accessible))], [])
    is_focused = state(Atspi.StateType.FOCUSED)
    is_checked = state(Atspi.StateType.CHECKED)
    is_selected = state(Atspi.StateType.SELECTED)
    is_focusable = state(Atspi.StateType.FOCUSABLE)

    @property
    def is_shown(self):
        return self.has(Atspi.StateType.VISIBLE, Atspi.StateType.SHOWING)

    @property
    def parent(self):
        above = self.ask(Atspi.Accessible.get_parent, None)
        return Node(above) if above else None

    @property
    def children(self):
        def all_of(accessible):
            return [accessible.get_child_at_index(index)
                    for index in range(accessible.get_child_count())]
        return [Node(child) for child in self.ask(all_of, []) if child]

    @property
    def area(self):
        """Left, top, width and height on the screen."""
        box = self.accessible.get_extents(Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height

    def act(self, name):
        """One of its actions, by the name that the tree gives it."""
        index = self.actions.index(name)
        assert Atspi.Action.do_action(self.accessible, index), f"{self} refuses {name}"

    def press(self):
        self.act("Press")

    def __str__(self):
        return f"{self.role} {self.name!r}"


class Tree:
    """All that the program shows."""

    def __init__(self, session):
        session.start([LAUNCHER, "--launch-immediately"])
        session.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        os.environ.update(session.environment)

    @staticmethod
    def program():
        desktop = Node(Atspi.get_desktop(0))
        return next((node for node in desktop.children if node.name.lower() == "veltro"), None)

    def shown(self):
        """Every object on the screen, from the windows down; what is scrolled away is not there."""
        program = self.program()
        waiting = [window for window in reversed(program.children)] if program else []
        while waiting:
            node = waiting.pop()
            if node.is_shown:
                yield node
                waiting += reversed(node.children)

    def find(self, role, name):
        return next((node for node in self.shown()
                     if node.role == role and node.name.startswith(name)), None)

    def get(self, role, name):
        """The object on the screen of that role whose name begins so, once there is one."""
        return until(lambda: self.find(role, name), f"the {role} {name!r}")

    def wait_until_gone(self, role, name):
        until(lambda: not self.find(role, name), f"the end of the {role} {name!r}")

    def focused(self):
        """The innermost object that has the keyboard."""
        return next((node for node in reversed(list(self.shown())) if node.is_focused), None)

    def window_fits(self):
        """Whether the program's window is at least as large as it is to be, with its frame above it
        on the display."""
        left, top, width, height = self.get("frame", "Veltro").area
        return (left >= 0 and top > 0 and width >= 980 and height >= 680 and
                left + width <= 1366 and top + height <= 768)

    def type_link(self, link):
        """Into Home's field, by the registry's own keys."""
        field = self.get("text", "Page address")
        field.act("SetFocus")
        until(lambda: field.is_focused, "the field's focus")
        Atspi.generate_keyboard_event(0, link, Atspi.KeySynthType.STRING)
        until(lambda: field.text == link, "the end of typing")

    def save(self, link):
        """From Home, until the field is ready for the next; a banner that is up would keep it."""
        self.wait_until_gone("alert", "Download started")
        self.type_link(link)
        self.get("push button", "Save").press()
        until(lambda: not self.get("text", "Page address").text, "the end of saving")
