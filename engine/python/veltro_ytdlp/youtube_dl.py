# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The YoutubeDL that the engine constructs: yt-dlp's own with the parts of this package."""

from typing import Any

import yt_dlp
from yt_dlp.YoutubeDL import YoutubeDL

from . import defaults
from .containment import Containment
from .cookies import Cookies
from .extraction import OneExtraction
from .file_names import FileNames
from .formats import Formats
from .overwriting import Overwriting
from .sparing import Sparing
from .subtitles import Subtitles
from .supplemental import Supplemental
from .thumbnails import Thumbnails
from .words import Words


class SavingYoutubeDL(
        OneExtraction, Formats, Overwriting, Containment, FileNames, Subtitles, Thumbnails,
        Supplemental, Words, Cookies, Sparing, YoutubeDL):
    """A YoutubeDL that saves into one folder and leaves nothing half done in it.

    One object serves one probe or one run, on one thread.
    """

    def __init__(self, params: dict[str, Any] | None = None, auto_init: Any = True) -> None:
        options = defaults.complete(params)
        self.downloads_folder = defaults.downloads_folder(options)
        # The header that "verbose" prints starts half a dozen programs to ask for versions.
        super().__init__(options, 'no_verbose_header' if auto_init else auto_init)

    def add_post_processor(self, pp: Any, when: str = 'post_process') -> None:
        super().add_post_processor(pp, when)
        # Made with this object and then added to it, a step has each hook twice.
        pp._progress_hooks = list(dict.fromkeys(pp._progress_hooks))


def apply() -> None:
    yt_dlp.YoutubeDL = SavingYoutubeDL
