# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes a cancelled run stop.

The engine cancels by raising DownloadError("Cancelled") from its progress hook. Fragment
downloads take a DownloadError for a fragment that failed and go on with the next one, and leave
a file cut short under its name; DownloadCancelled is passed on by everything.
"""

import contextlib
from collections.abc import Callable, Iterator
from typing import Any

from yt_dlp.downloader.common import FileDownloader
from yt_dlp.utils import DownloadCancelled, DownloadError

from .patching import replace

# The text with which the engine's hook raises.
_CANCELLED = 'Cancelled'


def apply() -> None:
    replace(FileDownloader, '_hook_progress', _converting)
    replace(FileDownloader, 'report_retry', _looking_first)


def check(ydl: Any) -> None:
    """Let the engine cancel where no bytes arrive: between items and before another try.

    A status that is neither "downloading" nor "finished" is looked at for cancelling only.
    """
    with _as_cancelling():
        for hook in ydl._progress_hooks:
            hook({'status': 'waiting'})


@contextlib.contextmanager
def _as_cancelling() -> Iterator[None]:
    try:
        yield
    except DownloadError as error:
        if str(error) != _CANCELLED:
            raise
        raise DownloadCancelled(_CANCELLED) from error


def _converting(original: Callable) -> Callable:
    def hook_progress(self, status, info_dict):
        with _as_cancelling():
            original(self, status, info_dict)

    return hook_progress


def _looking_first(original: Callable) -> Callable:
    def report_retry(self, *args, **kwargs):
        check(self.ydl)
        return original(self, *args, **kwargs)

    return report_retry
