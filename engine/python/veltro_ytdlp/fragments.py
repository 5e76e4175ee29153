# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes an interrupted HLS or DASH download resume without losing or doubling a byte.

Beside NAME.part stands NAME.part's ledger NAME.ytdl with the number of the last fragment in it.
The number alone is not enough: a fragment that was half written when the disk was full, or when
the process ended, counts as written or is written twice. So the ledger also holds the length of
NAME.part, and what does not fit together is begun again.
"""

import contextlib
import glob
import json
import os
from collections.abc import Callable
from typing import Any

from yt_dlp.downloader.fragment import FragmentFD

from .patching import replace

_LENGTH = 'veltro_length'


def apply() -> None:
    replace(FragmentFD, '_write_ytdl_file', _with_length)
    replace(FragmentFD, '_prepare_frag_download', _resuming)
    replace(FragmentFD, '_append_fragment', _all_or_nothing)
    replace(FragmentFD, 'download_and_append_fragments', _tidying)


def _with_length(original: Callable) -> Callable:
    def write_ytdl_file(self, ctx):
        stream = ctx.get('dest_stream')
        length = 0 if stream is None else os.fstat(stream.fileno()).st_size
        # The ledger's room for what a downloader wants to keep; yt-dlp hands it back on resuming.
        ctx.setdefault('extra_state', {})[_LENGTH] = length
        original(self, ctx)

    return write_ytdl_file


def _resuming(original: Callable) -> Callable:
    def prepare_frag_download(self, ctx):
        if ctx.get('live') is not True and ctx['filename'] != '-':
            _make_consistent(self, ctx['filename'])
        original(self, ctx)

    return prepare_frag_download


def _make_consistent(downloader: FragmentFD, name: str) -> None:
    part, ledger = downloader.temp_name(name), downloader.ytdl_filename(name)
    length = _kept_length(part, ledger)
    if length is not None:
        os.truncate(part, length)
        return
    # Left alone, the remains would be appended to from the first fragment on.
    downloader.try_remove(part)
    downloader.try_remove(ledger)


def _kept_length(part: str, ledger: str) -> int | None:
    """How many bytes of the part belong to whole fragments, or None to begin again."""
    try:
        with open(ledger, encoding='utf-8') as stream:
            downloader = json.load(stream)['downloader']
        index, length = downloader['current_fragment']['index'], downloader['extra_state'][_LENGTH]
        whole = isinstance(length, int) and index > 0 and 0 < length <= os.path.getsize(part)
    except (OSError, ValueError, LookupError, TypeError):
        return None
    return length if whole else None


def _all_or_nothing(original: Callable) -> Callable:
    def append_fragment(self, ctx, frag_content):
        descriptor = ctx['dest_stream'].fileno()
        length = os.fstat(descriptor).st_size
        try:
            original(self, ctx, frag_content)
        except BaseException:
            # yt-dlp has counted the fragment already. Cutting the part gives a full disk the
            # room that the ledger needs.
            with contextlib.suppress(Exception):
                os.ftruncate(descriptor, length)
                ctx['fragment_index'] -= 1
                self._write_ytdl_file(ctx)
            raise

    return append_fragment


def _tidying(original: Callable) -> Callable:
    def download_and_append_fragments(self, ctx, *args, **kwargs):
        try:
            return original(self, ctx, *args, **kwargs)
        except BaseException:
            _close(ctx)
            for leftover in glob.glob(glob.escape(ctx['tmpfilename']) + '-Frag*'):
                self.try_remove(leftover)
            raise

    return download_and_append_fragments


def _close(ctx: dict[str, Any]) -> None:
    """Let go of the part and its lock now; the raised error would keep both alive."""
    with contextlib.suppress(OSError, ValueError):
        ctx['dest_stream'].close()
