# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Error texts as a person may read them."""

import errno
import re
from typing import Any

from yt_dlp.utils import DownloadCancelled, DownloadError, YoutubeDLError

_NOT_WRITABLE = 'The downloads folder cannot be written to.'
_FULL = 'There is no space left in the downloads folder.'
# What the system says about files, in words that name the folder the user chose.
_FILE_FAILURES = {
    errno.EROFS: _NOT_WRITABLE,
    errno.ENOSPC: _FULL,
    errno.EDQUOT: _FULL,
    errno.EFBIG: 'The file is too large for the downloads folder.',
    errno.ENAMETOOLONG: 'The name of the file is too long for the downloads folder.',
}
# These stand for network failures as well; with a file's name behind them they are about a file.
_NAMED_FILE_FAILURES = {errno.EACCES: _NOT_WRITABLE, errno.EPERM: _NOT_WRITABLE}
_ERROR_NUMBER = re.compile(r'\[Errno (-?\d+)\] (?:[^:\']*(: \'/))?')
# Causes in the words of the language, and advice that is meant for users of the command line.
_ADVICE = re.compile(
    r'(?is)[;,.]?\s*please report this issue on\b.*| \(caused by .*|[.;,]\s[^.;,]*--[a-z].*')
_TAGS = re.compile(r'\[Errno -?\d+\] |\r\[download\] Got error: ')
# Paths hold a page's words, brackets among them, which the engine takes for yt-dlp's own tags.
_PATHS = re.compile(r"(?s): b?['\"]/.*")
_PREFIX = 'ERROR: '


def plain(message: str) -> str:
    """The message without advice, causes and numbers that only a developer reads."""
    failure = _file_failure(message)
    if failure:
        return (_PREFIX if message.startswith(_PREFIX) else '') + failure
    return _PATHS.sub('', _TAGS.sub('', _ADVICE.sub('', message)))


def _file_failure(message: str) -> str | None:
    numbered = _ERROR_NUMBER.search(message)
    if not numbered:
        return None
    number = int(numbered.group(1))
    named = _NAMED_FILE_FAILURES.get(number) if numbered.group(2) else None
    return _FILE_FAILURES.get(number) or named


class Words:
    """The part of YoutubeDL through which every error passes on its way to the user."""

    _extracting = False

    def trouble(self, message: str | None = None, tb: Any = None, is_error: bool = True) -> None:
        super().trouble(message and plain(message), tb=False, is_error=is_error)

    def extract_info(self, *args: Any, **kwargs: Any) -> Any:
        """What yt-dlp lets through as it is gets the same form as its other errors."""
        if self._extracting:  # an address that the first one led to
            return super().extract_info(*args, **kwargs)
        self._extracting = True
        try:
            return super().extract_info(*args, **kwargs)
        except (DownloadError, DownloadCancelled):
            raise
        except (YoutubeDLError, OSError) as error:
            self.report_error(str(error))
        except Exception as error:
            self.report_error(f'The page is not as expected ({type(error).__name__}: {error})')
        finally:
            self._extracting = False
