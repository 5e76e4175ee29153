# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The cookie file of a run: read, never written."""

import functools
from typing import Any

from yt_dlp.YoutubeDL import YoutubeDL

_NOT_COOKIES = 'The cookie file is not in the Netscape cookies.txt format.'
# A cookie's line: domain, subdomains, path, secure, expiry, name, value.
_FIELDS = 7


class Cookies:
    """The part of YoutubeDL that reads the cookies which the user has for a site."""

    def save_cookies(self) -> None:
        """The file is the program's own record, so what a site sets stays within the run."""

    @functools.cached_property
    def cookiejar(self) -> Any:
        path = self.params.get('cookiefile')
        if isinstance(path, str) and not _holds_cookies(path):
            self.report_error(_NOT_COOKIES)
        return YoutubeDL.cookiejar.func(self)


def _holds_cookies(path: str) -> bool:
    """Whether yt-dlp will understand the file; a missing one is its own matter."""
    try:
        with open(path, encoding='utf-8') as file:
            lines = [line for line in map(str.strip, file) if line]
    except FileNotFoundError:
        return True
    except (OSError, ValueError):
        return False
    if not lines:
        return False
    cookies = [line for line in lines if not line.startswith('#') or '\t' in line]
    return not cookies or any(line.count('\t') == _FIELDS - 1 for line in cookies)
