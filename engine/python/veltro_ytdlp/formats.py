# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The list of formats as the engine reads it."""

from typing import Any

from yt_dlp.YoutubeDL import YoutubeDL

from .file_types import AUDIO_EXTENSIONS


class Formats:
    """The part of YoutubeDL that hands an information dictionary to the engine."""

    @staticmethod
    def sanitize_info(info_dict: Any, remove_private_keys: bool = False) -> Any:
        """The engine reads the result only, so what yt-dlp processes stays as it is."""
        info = YoutubeDL.sanitize_info(info_dict, remove_private_keys)
        if isinstance(info, dict):
            _complete(info)
        return info


def _complete(info: dict[str, Any]) -> None:
    for entry in info.get('entries') or ():
        if isinstance(entry, dict):
            _complete(entry)
    if info.get('_type', 'video') != 'video':
        return
    if not info.get('formats') and info.get('url'):
        info['formats'] = [_only_format(info)]
    for each in info.get('formats') or ():
        # A missing codec reads as an empty one, which would make the format an audio track.
        each.setdefault('vcodec', None)
        each.setdefault('acodec', None)


def _only_format(info: dict[str, Any]) -> dict[str, Any]:
    """The item of a page without a list, described as the one format that it is."""
    only = {key: info[key] for key in sorted(YoutubeDL._format_fields) if key in info}
    only.setdefault('format_id', '0')
    if only.get('ext') in AUDIO_EXTENSIONS and not only.get('vcodec'):
        only['vcodec'] = 'none'
        only['acodec'] = only.get('acodec') or only['ext']
    return only
