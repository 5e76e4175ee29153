# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The picture beside the media."""

import contextlib
import os
from typing import Any

from yt_dlp.networking import Request
from yt_dlp.networking.exceptions import HTTPError
from yt_dlp.utils import determine_ext, mimetype2ext, replace_extension, sanitize_url, urljoin

from . import cancelling
from .file_types import IMAGE_EXTENSIONS, named

_BLOCK_BYTES = 64 * 1024
# A picture that does not end must not fill the disk.
_LIMIT_BYTES = 32 * 1024 * 1024
# Servers that do not answer cost a time-out each; a missing picture costs nothing.
_FAILURES = 2


class _Unusable(Exception):
    """A picture that is passed over for the next one."""


class Thumbnails:
    """The part of YoutubeDL that fetches pictures; a run does without one if need be."""

    def _sanitize_thumbnails(self, info_dict: dict[str, Any]) -> None:
        """Pages give addresses relative to themselves; yt-dlp would end the run at one."""
        page = info_dict.get('webpage_url') or info_dict.get('original_url')
        single = info_dict.get('thumbnail')
        if single is not None:
            info_dict['thumbnail'] = _absolute(page, single)
        if isinstance(info_dict.get('thumbnails'), list):
            pictures = [dict(each) for each in info_dict['thumbnails'] if isinstance(each, dict)]
            for each in pictures:
                each['url'] = _absolute(page, each.get('url'))
            info_dict['thumbnails'] = [each for each in pictures if each['url']]
        super()._sanitize_thumbnails(info_dict)

    def _write_thumbnails(
            self, label: str, info_dict: dict[str, Any], filename: str,
            thumb_filename_base: str | None = None) -> list[tuple[str, str]]:
        if not self.downloads_folder or not self.params.get('writethumbnail'):
            return []
        failures = 0
        for picture in reversed(info_dict.get('thumbnails') or []):
            saved = []
            with self.supplemental('The picture'):
                saved = self._fetch_picture(picture, info_dict, filename, thumb_filename_base)
            if saved:
                return saved
            failures += 'missing' not in picture
            if failures >= _FAILURES:
                break
        return []

    def _fetch_picture(
            self, picture: dict[str, Any], info: dict[str, Any], filename: str,
            final_base: str | None) -> list[tuple[str, str]]:
        request = Request(picture['url'], headers=picture.get('http_headers') or {})
        try:
            response = self.urlopen(request)
        except HTTPError as error:
            if error.status == 404:
                picture['missing'] = True
                return []
            raise
        with response:
            extension = self._extension(picture, response)
            path = replace_extension(filename, extension, info.get('ext'))
            self._copy(response, path)
        picture['filepath'] = path
        return [(path, replace_extension(final_base or filename, extension, info.get('ext')))]

    def _extension(self, picture: dict[str, Any], response: Any) -> str:
        extension = picture.get('ext') or determine_ext(picture['url'], 'jpg')
        if str(extension).lower() in IMAGE_EXTENSIONS:
            return extension
        # An address such as picture.php says nothing; what the server says of it may.
        served = mimetype2ext(response.headers.get_content_type(), None)
        if served in IMAGE_EXTENSIONS:
            return served
        raise _Unusable(f'it is of {named(extension)}')

    def _copy(self, response: Any, path: str) -> None:
        written = 0
        try:
            with open(path, 'wb') as file:
                while block := response.read(_BLOCK_BYTES):
                    written += file.write(block)
                    if written > _LIMIT_BYTES:
                        raise _Unusable('it is too large')
                    cancelling.check(self)
            if not written:
                raise _Unusable('it is empty')
        except BaseException:
            with contextlib.suppress(OSError):
                os.remove(path)
            raise


def _absolute(page: Any, address: Any) -> str | None:
    """The address with which the picture can be fetched, or None."""
    if not isinstance(address, str) or not address:
        return None
    if address.startswith('data:'):
        return address
    absolute = sanitize_url(urljoin(page, address) or address)
    return absolute if absolute.startswith(('http://', 'https://')) else None
