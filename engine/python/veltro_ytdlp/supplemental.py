# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Work beside the media: subtitles and pictures may fail, the run goes on."""

import contextlib
from collections.abc import Iterator
from typing import Any

from yt_dlp.utils import DownloadCancelled

from .words import plain

# Tries for something that the run can do without.
_RETRIES = 2


class Supplemental:
    """The part of YoutubeDL that turns failures of such work into warnings."""

    _supplemental = False

    @contextlib.contextmanager
    def supplemental(self, what: str) -> Iterator[None]:
        """Whatever fails inside is one warning. Cancelling is no failure and passes."""
        tries = {key: self.params.get(key) for key in ('retries', 'fragment_retries')}
        self._supplemental = True
        self.params.update(dict.fromkeys(tries, _RETRIES))
        try:
            yield
        except DownloadCancelled:
            raise
        except Exception as error:
            message = plain(str(error)).replace('ERROR: ', '')
            self.report_warning(f'{what} could not be saved: {message}')
        finally:
            self._supplemental = False
            self.params.update(tries)

    def to_stderr(self, message: str, only_once: bool = False) -> None:
        # An error that becomes a warning is not shown twice.
        if not self._supplemental:
            super().to_stderr(message, only_once)
