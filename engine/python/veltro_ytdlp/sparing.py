# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Spares yt-dlp work that nobody sees: things made anew for every object that are the same for
all of them, and texts for a terminal that is not there."""

import os
from collections.abc import Callable
from typing import Any

from yt_dlp.downloader.common import FileDownloader
from yt_dlp.extractor.common import UnsupportedURLIE
from yt_dlp.networking.common import RequestHandler
from yt_dlp.postprocessor.common import PostProcessor

from . import extractor_index
from .patching import replace


def apply() -> None:
    replace(RequestHandler, '_make_sslcontext', _kept)
    replace(FileDownloader, 'report_progress', _unwritten)
    replace(PostProcessor, 'report_progress', _unwritten)


def _unwritten(_: Callable) -> Callable:
    """Two templates are filled in for each block of a file; the logger drops the result."""
    def report_progress(self, s):
        pass

    return report_progress


def _kept(original: Callable) -> Callable:
    """Reading the certificates of all authorities takes longer than a small page does."""
    contexts: dict[tuple, Any] = {}

    def make_sslcontext(self, legacy_ssl_support=None):
        if self._client_cert:
            return original(self, legacy_ssl_support)
        key = (self.verify, self.prefer_system_certs, self.legacy_ssl_support, legacy_ssl_support,
               os.environ.get('SSL_CERT_FILE'))
        if key not in contexts:
            contexts[key] = original(self, legacy_ssl_support)
        return contexts[key]

    return make_sslcontext


class Sparing:
    """The part of YoutubeDL that lists the extractors and prints what a user wants printed."""

    _extractor_classes: dict[str, type] | None = None

    def add_default_info_extractors(self) -> None:
        """The list is put in order once; only the last extractor belongs to its object."""
        if 'allowed_extractors' in self.params:
            super().add_default_info_extractors()
            return
        if Sparing._extractor_classes is None:
            super().add_default_info_extractors()
            Sparing._extractor_classes = {
                key: each for key, each in self._ies.items() if isinstance(each, type)}
            extractor_index.attach()
            return
        self._ies.update(self._extractor_classes)
        self.add_info_extractor(UnsupportedURLIE())

    def _forceprint(self, key: str, info_dict: dict[str, Any] | None) -> Any:
        """Tables of formats, pictures and subtitles are made for printing, wanted or not."""
        wanted = (self.params['forceprint'], self.params['print_to_file'])
        if not any(each.get(key) for each in wanted):
            return info_dict
        return super()._forceprint(key, info_dict)
