# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the engine does to yt-dlp, once, right after it has been imported.

The engine imports this module, then yt_dlp, then calls apply_after_import(). Nothing heavy is
imported before that call, so that a broken installation fails there, with its own words.
"""

from veltro_ytdlp import early

early.spare_processes()


def apply_after_import() -> None:
    """Adjust the imported yt_dlp to a program that saves media in process.

    Safe to call again, also after a call that failed half way: every step replaces a thing once.
    Raises RuntimeError when yt-dlp no longer has the names that the steps rest on.
    """
    from veltro_ytdlp import self_check

    self_check.require_names()
    from veltro_ytdlp import cancelling, extraction, ffmpeg_route, fragments
    from veltro_ytdlp import overwriting, plugins, sparing, subtitles, youtube_dl

    for step in (plugins, ffmpeg_route, cancelling, fragments, extraction,
                 overwriting, sparing, subtitles, youtube_dl):
        step.apply()
    self_check.require_steps()
