# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Subtitle files, and the step that puts them into the media file."""

import contextlib
import os
import re
from collections.abc import Callable
from typing import Any

from yt_dlp.postprocessor.ffmpeg import FFmpegEmbedSubtitlePP
from yt_dlp.utils import PostProcessingError, prepend_extension, subtitles_filename

from .file_types import SUBTITLE_EXTENSIONS, named
from .patching import replace

# A language becomes a part of a file's name. Room for it is kept there.
_LANGUAGE = re.compile(r'[\w-]{1,24}', re.ASCII)


def apply() -> None:
    replace(FFmpegEmbedSubtitlePP, 'run', _warning)


def _warning(original: Callable) -> Callable:
    def run(self, info):
        """Some kinds cannot be put into some containers; the file beside the media stays then."""
        try:
            return original(self, info)
        except PostProcessingError as error:
            self.report_warning(f'The subtitles could not be put into the file: {error}')
            _remove(prepend_extension(info['filepath'], 'temp'))
            return [], info

    return run


def _remove(path: str) -> None:
    with contextlib.suppress(OSError):
        os.remove(path)


class Subtitles:
    """The part of YoutubeDL that writes subtitle files, each for itself."""

    def _write_subtitles(self, info_dict: dict[str, Any], filename: str) -> list[tuple[str, str]]:
        written = []
        tracks = info_dict.get('requested_subtitles') or {}
        for language, track in list(tracks.items()):
            saved = self._is_acceptable(language, track) and self._write_track(
                {**info_dict, 'requested_subtitles': {language: track}}, filename)
            if saved:
                written += saved
            else:  # what is not there is not looked for later
                del tracks[language]
        return written

    def _write_track(self, info: dict[str, Any], filename: str) -> list[tuple[str, str]]:
        (language, track), = info['requested_subtitles'].items()
        name = subtitles_filename(filename, language, track['ext'], info.get('ext'))
        saved = []
        _remove(name)  # what an interrupted run left would count as written
        with self.supplemental(f'The subtitles ({language})'):
            saved = super()._write_subtitles(info, filename) or []
        if not saved:
            for ending in ('', '.part', '.ytdl'):
                _remove(name + ending)
        return saved

    def _is_acceptable(self, language: str, track: dict[str, Any]) -> bool:
        extension = track.get('ext')
        if not isinstance(extension, str) or extension.lower() not in SUBTITLE_EXTENSIONS:
            self.report_warning(f'Subtitles of {named(extension)} are not saved')
            return False
        if not _LANGUAGE.fullmatch(language):
            self.report_warning('Subtitles of an unusual language name are not saved')
            return False
        return True
