# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Names that every file system takes and that show what they are."""

import os
import unicodedata
from typing import Any

from yt_dlp.utils import sanitize_filename

# Bytes of a name that are kept free for what is put to it while saving, the longest being
# ".new.f<24 bytes>.unknown_video.part-Frag1234567.part".
ROOM_BYTES = 64
_NAME_BYTES = 255
_JOINER = '\u200d'
# Needed inside words of some scripts and inside joined pictures.
_KEPT_FORMAT_SIGNS = (_JOINER, '\u200c')
# Control and format signs (among them those that turn the direction of writing), halves of
# surrogates, separators of lines.
_UNSEEN_CATEGORIES = ('Cc', 'Cf', 'Cs', 'Zl', 'Zp')
_FLAG_HALVES = ''.join(map(chr, range(0x1F1E6, 0x1F200)))


class FileNames:
    """The part of YoutubeDL that makes a name of what a page says."""

    # Names without their types, and what has them.
    _taken: dict[str, tuple] = {}

    @staticmethod
    def _outtmpl_expandpath(outtmpl: str) -> str:
        """Folders and templates are taken literally: no variables, no tilde."""
        return outtmpl

    def _prepare_filename(
            self, info_dict: dict[str, Any], *, outtmpl: str | None = None,
            tmpl_type: str | None = None) -> str | None:
        name = super()._prepare_filename(info_dict, outtmpl=outtmpl, tmpl_type=tmpl_type)
        prefix = f'{(self.downloads_folder or "").rstrip("/")}/'
        if not name or not self.downloads_folder or not name.startswith(prefix):
            return name
        *folders, last = map(_tame, filter(None, name[len(prefix):].split('/')))
        if '..' in self.params['outtmpl']['default'].split('/'):
            folders.insert(0, '..')  # the template's own wish, to be refused; no page can have it
        limit = _longest_name(self.downloads_folder)
        folders = [_cut(folder, limit) for folder in folders]
        last = _shortened(last, info_dict, limit - ROOM_BYTES)
        return self._untaken(prefix + '/'.join((*folders, last)), info_dict)

    def take_name(self, stem: str, info: dict[str, Any]) -> None:
        """Remember that a file of this run has the name."""
        self._taken = {**self._taken, stem: _identity(info)}

    def _untaken(self, path: str, info: dict[str, Any]) -> str:
        """A list's second item does not replace its first because they are called the same."""
        stem, ending = os.path.splitext(path)
        number, name = 1, stem
        while self._taken.get(name, _identity(info)) != _identity(info):
            number += 1
            name = f'{stem} ({number})'
        return name + ending


def _identity(info: dict[str, Any]) -> tuple:
    return tuple(info.get(key) for key in ('webpage_url', 'id', 'playlist_index'))


def _tame(part: str) -> str:
    """A part of a path that is neither hidden nor taken for an option or another folder."""
    part = _visible(part)
    if part.startswith('.'):
        return '_' + part.lstrip('.')
    return '_' + part[1:] if part.startswith('-') else part


def _visible(text: str) -> str:
    """The text without signs that cannot be seen, which could make a name read otherwise."""
    kept = (sign for sign in text if sign in _KEPT_FORMAT_SIGNS
            or unicodedata.category(sign) not in _UNSEEN_CATEGORIES)
    return ''.join(kept) or '_'


def _longest_name(folder: str) -> int:
    try:
        return min(os.pathconf(folder, 'PC_NAME_MAX'), _NAME_BYTES)
    except (OSError, ValueError):
        return _NAME_BYTES


def _shortened(name: str, info: dict[str, Any], limit: int) -> str:
    """The name within limit bytes, its identifier and type whole where that leaves a title."""
    ending = f'.{info.get("ext")}'
    stem = name.removesuffix(ending)
    if stem == name:
        stem, ending = os.path.splitext(name)
    if _size(name) <= limit:
        return name
    mark = f' [{_visible(sanitize_filename(str(info.get("id"))))}]'
    if not stem.endswith(mark) or _size(mark) > limit // 2:
        mark = ''
    title = _cut(stem.removesuffix(mark), limit - _size(mark) - _size(ending))
    return (title.rstrip(' .') or '_') + mark + ending


def _size(text: str) -> int:
    return len(text.encode('utf-8', 'surrogatepass'))


def _cut(text: str, limit: int) -> str:
    """The beginning of the text within limit bytes that ends between two signs as seen."""
    if _size(text) <= limit:
        return text
    plain = text.encode()[:max(limit, 0)].decode('utf-8', 'ignore')
    end = len(plain)
    while end and _belong_together(text, end):
        end -= 1
    return text[:end] or plain


def _belong_together(text: str, position: int) -> bool:
    """Whether a cut at the position would part a sign from what modifies it."""
    before, after = text[position - 1], text[position]
    if _is_flag_half(before) and _is_flag_half(after):
        run = len(text[:position]) - len(text[:position].rstrip(_FLAG_HALVES))
        return run % 2 == 1
    return (before == _JOINER or after == _JOINER or unicodedata.category(after)[0] == 'M'
            or '\U0001f3fb' <= after <= '\U0001f3ff')


def _is_flag_half(sign: str) -> bool:
    return sign in _FLAG_HALVES
