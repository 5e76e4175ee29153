# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""One link saved in a real window: a display, a window manager, key events, the test site."""
import subprocess
import unittest

from window_session import LONGEST, PROGRAM, SessionTest, Site, until


class OneLinkTest(SessionTest):
    def setUp(self):
        super().setUp()
        self.site = Site(self.stack)

    def test_a_typed_address_is_saved_once(self):
        self.session.start_program()
        self.session.xdotool("type", self.site.address + "/plain")
        for _ in range(3):  # a hurried hand
            self.session.xdotool("key", "Return")
        until(self.session.saved, "the file")
        self.assertEqual(len(self.session.saved()), 1)
        self.assertGreater(self.session.saved()[0].stat().st_size, 1000)

    def test_a_second_start_hands_its_address_to_the_first(self):
        self.session.start_program()
        address = self.site.address + "/plain?url=https%3A%2F%2Felsewhere.example"
        second = subprocess.run([str(PROGRAM), address], env=self.session.environment,
                                timeout=LONGEST, stderr=subprocess.DEVNULL, check=False)
        self.assertEqual(second.returncode, 0)
        until(lambda: self.site.requests("/plain"), "the request for the page")
        self.assertEqual(len(self.session.windows()), 1)


if __name__ == "__main__":
    unittest.main()
