# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Refuses, before a byte is written, a file outside the downloads folder or of a wrong kind.

Every path that yt-dlp writes to is made from prepare_filename() by putting other endings to it,
so that is where the folder is looked at; the endings are looked at where they come in.
"""

import os
from typing import Any

from yt_dlp.networking import HEADRequest
from yt_dlp.networking.exceptions import RequestError
from yt_dlp.utils import urlhandle_detect_ext

from .file_types import MEDIA_EXTENSIONS, named

_OUTSIDE = 'The file would be written outside the downloads folder, so nothing was saved.'
# What yt-dlp calls a type that it cannot tell.
_UNKNOWN = 'unknown_video'
_NOT_WRITABLE = 'The downloads folder cannot be written to.'


class Containment:
    """The part of YoutubeDL that knows what may be written and where."""

    # Without a trailing slash; None where nothing is saved. Set before anything is prepared.
    downloads_folder: str | None = None

    def prepare_filename(
            self, info_dict: dict[str, Any], dir_type: str = '', *, outtmpl: str | None = None,
            warn: bool = False) -> str:
        # With warn, yt-dlp complains of a template that names its folder itself.
        path = super().prepare_filename(info_dict, dir_type, outtmpl=outtmpl)
        if path and self.downloads_folder and not self._is_inside(os.path.dirname(path)):
            self.report_error(_OUTSIDE)
        return path

    def get_output_path(self, dir_type: str = '', filename: str | None = None) -> str:
        """Folders are taken literally; yt-dlp would expand variables and a tilde in them."""
        if not self.downloads_folder:
            return super().get_output_path(dir_type, filename)
        return os.path.join(self.downloads_folder, filename or '')

    def require_acceptable(self, info: dict[str, Any]) -> None:
        """Fail the run where the media itself may not be written."""
        for each in (info, *(info.get('requested_formats') or ())):
            extension = each.get('ext')
            if extension == _UNKNOWN:
                extension = each['ext'] = self._served_type(each)
            if not isinstance(extension, str) or extension.lower() not in MEDIA_EXTENSIONS:
                self.report_error(
                    f'The page offers a file of {named(extension)}, which is neither video nor '
                    'audio, so nothing was saved.')
        folder = self.downloads_folder
        if os.path.exists(folder) and not os.access(folder, os.W_OK | os.X_OK):
            self.report_error(_NOT_WRITABLE)

    def _served_type(self, media: dict[str, Any]) -> str:
        """What the server says of a file whose address has no known type.

        yt-dlp takes whatever is no page for a video, a text file as well.
        """
        try:
            request = HEADRequest(media['url'], headers=media.get('http_headers') or {})
            with self.urlopen(request) as response:
                kind = response.headers.get_content_type()
                extension = urlhandle_detect_ext(response, None)
        except (RequestError, LookupError, ValueError):
            return _UNKNOWN
        if extension in MEDIA_EXTENSIONS:
            return extension
        return 'txt' if kind.startswith('text/') else _UNKNOWN

    def require_no_links(self, path: str) -> None:
        """Refuse a file about to be written that is a link leading out of the folder.

        The directory is listed once for all the endings that the file will be written under.
        """
        folder, beginning = os.path.split(os.path.splitext(path)[0])
        try:
            with os.scandir(folder) as entries:
                links = [entry.path for entry in entries
                         if entry.name.startswith(beginning + '.') and entry.is_symlink()]
        except OSError:
            return
        if not all(map(self._is_inside, links)):
            self.report_error(_OUTSIDE)

    def _is_inside(self, path: str) -> bool:
        folder, real = os.path.realpath(self.downloads_folder), os.path.realpath(path)
        return os.path.commonpath((folder, real)) == folder
