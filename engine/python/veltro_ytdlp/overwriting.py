# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A finished file is replaced only by a finished file.

Everything of a run is written under working names in the folder of the final file and takes its
final name in the last step, by renaming. So a run that fails or is cancelled leaves what was
there, and nothing that looks finished. The working name of a single format holds its identifier:
the rest of one quality is never continued with the bytes of another.
"""

import contextlib
import hashlib
import os
import re
from collections.abc import Callable, Iterable
from typing import Any

from yt_dlp.postprocessor.movefilesafterdownload import MoveFilesAfterDownloadPP
from yt_dlp.utils import DownloadCancelled, PostProcessingError

from . import cancelling
from .patching import replace

# Between the stem and the type of a file that is put together from several formats.
_MERGED_TAG = 'new'
_IDENTIFIER_BYTES = 24
# What yt-dlp continues in a later run.
_CONTINUED_ENDINGS = ('.part', '.ytdl')


def apply() -> None:
    replace(MoveFilesAfterDownloadPP, 'run', _finishing)


def _finishing(original: Callable) -> Callable:
    def run(self, info):
        working = getattr(self._downloader, 'working', None)
        if working is None or not self._downloaded or not working.owns(info['filepath']):
            return original(self, info)
        self._hook_progress({'status': 'started'}, self._copy_infodict(info))
        _take_final_names(self, working, info)
        # The engine takes the last path that it is told for the path of the result.
        self._hook_progress({'status': 'finished'}, self._copy_infodict(info))
        return [], info

    return run


def _take_final_names(step: MoveFilesAfterDownloadPP, working: 'Working', info: dict) -> None:
    final = working.final(info['filepath'])
    try:
        os.replace(info['filepath'], final)
    except OSError as error:
        raise PostProcessingError(f'The finished file cannot take its name: {error}') from error
    info['filepath'] = final
    for old, new in info['__files_to_move'].items():
        try:
            os.replace(old, new or working.final(old))
        except OSError as error:
            step.report_warning(f'A file beside the media could not be saved: {error}')


class Working:
    """The working names of one item."""

    def __init__(self, path: str, info: dict[str, Any]) -> None:
        """path is the final path as yt-dlp would have it, with the type of the media."""
        self._tag = _tag(info)
        stem, self._ending = os.path.splitext(path)
        self.final_stem = stem
        self._stem = f'{stem}.{self._tag}'
        self.path = self._stem + self._ending
        pieces = (f'{self._stem}.f{each["format_id"]}.{each["ext"]}'
                  for each in info.get('requested_formats') or ())
        self._media = {self.path, *pieces}

    def owns(self, path: str) -> bool:
        return path.startswith(self._stem + '.')

    def final(self, path: str) -> str:
        """The final path of a file under a working name; its ending may have changed."""
        return self.final_stem + path.removeprefix(self._stem)

    def discard(self, *, continued: bool) -> None:
        """Remove what the run has written; continued keeps what a later run goes on with."""
        _remove(path for path in self._siblings()
                if self.owns(path) and not (continued and self._is_continued(path)))

    def discard_other_qualities(self) -> None:
        """Remove what cancelled runs have left that were to end in the same file."""
        stem = re.escape(self.final_stem)
        merged = re.compile(rf'{stem}\.{_MERGED_TAG}\..*', re.DOTALL)
        single = re.compile(rf'{stem}\.f[\w=-]+\.\w+\.(part|ytdl)')
        _remove(path for path in self._siblings()
                if merged.fullmatch(path) or single.fullmatch(path))

    def _siblings(self) -> list[str]:
        folder = os.path.dirname(self._stem)
        with contextlib.suppress(OSError):
            return [os.path.join(folder, name) for name in os.listdir(folder)]
        return []

    def _is_continued(self, path: str) -> bool:
        for ending in _CONTINUED_ENDINGS:
            path = path.removesuffix(ending)
        return path in self._media


def _remove(paths: Iterable[str]) -> None:
    for path in paths:
        with contextlib.suppress(OSError):
            os.remove(path)


def _tag(info: dict[str, Any]) -> str:
    if info.get('requested_formats'):
        return _MERGED_TAG
    return f'f{short_identifier(info.get("format_id"))}'


def short_identifier(identifier: Any) -> str:
    """A format's identifier as a part of a name; pages make them, so they may be anything."""
    plain = re.sub(r'[^A-Za-z0-9_=-]', '_', str(identifier))
    if plain == identifier and len(plain) <= _IDENTIFIER_BYTES:
        return plain
    digest = hashlib.sha256(str(identifier).encode('utf-8', 'replace')).hexdigest()[:8]
    return f'{plain[:_IDENTIFIER_BYTES - 9]}-{digest}'


class Overwriting:
    """The part of YoutubeDL that gives an item its working names and clears them away."""

    working: Working | None = None
    _finishing_begun = False

    def prepare_filename(self, info_dict: dict[str, Any], dir_type: str = '', **kwargs: Any) -> str:
        path = super().prepare_filename(info_dict, dir_type, **kwargs)
        if dir_type != 'temp' or not path or not self.downloads_folder:
            return path
        self.working = Working(path, info_dict)
        self.require_no_links(self.working.path)
        return self.working.path

    def existing_file(self, filepaths: Any, *, default_overwrite: bool = True) -> str | None:
        """yt-dlp removes what it is going to write again; here it is replaced in the end."""
        if self.downloads_folder and self.params.get('overwrites', default_overwrite):
            return None
        return super().existing_file(filepaths, default_overwrite=default_overwrite)

    def process_info(self, info_dict: dict[str, Any]) -> None:
        if not self.downloads_folder:
            super().process_info(info_dict)
            return
        cancelling.check(self)
        self.require_acceptable(info_dict)
        if info_dict.get('requested_formats'):
            info_dict['requested_formats'] = [
                {**each, 'format_id': short_identifier(each.get('format_id'))}
                for each in info_dict['requested_formats']]
        self.working, self._finishing_begun = None, False
        try:
            super().process_info(info_dict)
        except BaseException as error:
            self._clear_away(error)
            raise
        if self.working:
            self.take_name(self.working.final_stem, info_dict)
            self.working.discard_other_qualities()

    def _clear_away(self, error: BaseException) -> None:
        if self.working:
            # What was put together wrongly would be put together wrongly again.
            cancelled = isinstance(error, DownloadCancelled)
            self.working.discard(continued=cancelled or not self._finishing_begun)

    def dl(self, name: str, info: dict[str, Any], subtitle: bool = False,
           test: bool = False) -> tuple[bool, bool]:
        if info.get('is_live') and self.working and name == self.working.path:
            # Another day's recording is not the beginning of this one.
            _remove(name + ending for ending in ('', *_CONTINUED_ENDINGS))
        success, _ = super().dl(name, info, subtitle, test)
        if not success and not subtitle:
            self.report_error('The media could not be saved.')
        # A file kept from an interrupted run has not been through the fix-ups yet.
        return success, True

    def post_process(self, *args: Any, **kwargs: Any) -> dict[str, Any]:
        self._finishing_begun = True
        return super().post_process(*args, **kwargs)
