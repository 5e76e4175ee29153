# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Keeps what a user installed for their own yt-dlp out of this program."""

from yt_dlp import globals as ytdlp_globals


def apply() -> None:
    """Look for plugins nowhere; a stranger's code has no business in the engine."""
    ytdlp_globals.plugin_dirs.value = []
