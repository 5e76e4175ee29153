# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Where yt-dlp's messages go."""

import sys


def _one_line(message: str) -> str:
    """Page texts reach the log: without control characters they cannot forge a line of it."""
    return ''.join(sign if sign.isprintable() else ' ' for sign in str(message)).strip()


def write(message: str) -> None:
    """One tagged line on standard error, or nothing where that is closed."""
    try:
        sys.stderr.write(f'[veltro] {_one_line(message)}\n')
    except (AttributeError, OSError, ValueError):
        pass


class Log:
    """The logger of every YoutubeDL: with one set, yt-dlp prints nothing by itself.

    Progress and debug lines are dropped, since the hooks carry what the program shows.
    """

    def __init__(self, *, warnings: bool) -> None:
        self._warnings = warnings

    def debug(self, message: str) -> None:
        pass

    info = debug

    def warning(self, message: str) -> None:
        if self._warnings:
            write(f'WARNING: {message}')

    def error(self, message: str) -> None:
        # Tracebacks and blank lines come this way too; only a message names its kind.
        if message.startswith('ERROR:'):
            write(message)
