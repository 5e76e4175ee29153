# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What graphics drivers draw, against the same drawn by software: no letter is left out."""
import pathlib
import subprocess
import tempfile

from window_session import BUNDLE, LONGEST, SessionTest

PAGES = ["QueueEmpty", "LibraryMany", "WindowLibrary"]
# Points that differ clearly after a blur, which takes the edges of letters away.
MOST = 50


class LettersTest(SessionTest):
    def draw(self, scale, backend):
        folder = self.stack.enter_context(tempfile.TemporaryDirectory())
        environment = {**self.session.environment, "QT_SCALE_FACTOR": scale,
                       "QT_QUICK_BACKEND": backend}
        subprocess.run([str(BUNDLE / "veltro-gallery"), "--save", folder, *PAGES], check=True,
                       env=environment, stderr=subprocess.DEVNULL, timeout=LONGEST)
        for page in PAGES:
            picture = pathlib.Path(folder, page + ".png")
            self.session.run("mogrify", "-colorspace", "Gray", "-blur", "0x2", picture)
            yield picture

    def test_no_letter_is_left_out(self):
        for scale in "1", "2":
            pairs = zip(self.draw(scale, "rhi"), self.draw(scale, "software"))
            for page, pair in zip(PAGES, pairs):
                with self.subTest(page, scale=scale):
                    compared = subprocess.run(
                        ["compare", "-metric", "AE", "-fuzz", "25%", *pair, "null:"], check=False,
                        capture_output=True, text=True, timeout=LONGEST)
                    self.assertLess(float(compared.stderr), MOST)
