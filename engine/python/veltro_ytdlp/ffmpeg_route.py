# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Serves every ffmpeg and ffprobe command of yt-dlp in process.

yt-dlp builds the commands; what is changed is the name that it puts in front of them and the
class that would start a process from that name. A live stream is such a command too: its
download is watched here, so that it reports bytes and can be cancelled.
"""

import contextlib
import contextvars
import os
import threading
import time
from collections.abc import Callable, Iterator
from typing import Any

from yt_dlp.downloader import PROTOCOL_MAP
from yt_dlp.downloader.external import FFmpegFD
from yt_dlp.postprocessor.ffmpeg import FFmpegPostProcessor
from yt_dlp.utils import DownloadCancelled, Popen

from . import bundle, native_process
from .patching import is_replaced, replace

_SENTINELS = {'ffmpeg': native_process.FFMPEG, 'ffprobe': native_process.FFPROBE}

# The download that the FFmpegFD of this thread is busy with.
_watched = threading.local()


def apply() -> None:
    replace(FFmpegPostProcessor, '_determine_executables', lambda _: lambda self: dict(_SENTINELS))
    location = FFmpegPostProcessor._ffmpeg_location
    if location.get(None) != native_process.FFMPEG:
        # A default is seen by every thread, a value that is set only by the thread that sets it.
        FFmpegPostProcessor._ffmpeg_location = contextvars.ContextVar(
            location.name, default=native_process.FFMPEG)
    _replace_process_class()
    replace(FFmpegFD, 'real_download', _with_hooks)
    replace(FFmpegFD, '_call_downloader', _watching)
    # The first sends signals to its own process, the others start a program.
    PROTOCOL_MAP.pop('websocket_frag', None)
    PROTOCOL_MAP.update(rtmp=FFmpegFD, rtmpe=FFmpegFD)


def _replace_process_class() -> None:
    if is_replaced(Popen, '__init__'):
        return
    original_run = Popen.run.__func__

    def make(cls, command, *args, **kwargs):
        if not native_process.serves(command):
            return object.__new__(cls)
        watch = getattr(_watched, 'look', None)
        process = native_process.NativeProcess(command, watch)
        if watch:
            watch.process = process
        return process

    def run(cls, command, *args, **kwargs):
        if not native_process.serves(command):
            return original_run(cls, command, *args, **kwargs)
        outcome = native_process.run(command)
        texts = outcome.output, outcome.log
        if not (kwargs.get('text') or kwargs.get('encoding')):
            texts = tuple(text.encode() for text in texts)
        return *texts, outcome.code

    Popen.__new__ = staticmethod(make)
    Popen.run = classmethod(run)
    replace(Popen, '__init__', _with_module_cache)


def _with_module_cache(original: Callable) -> Callable:
    """The bundled JavaScript runtime finds its modules beside itself; nobody else needs to know,
    so the process's own environment stays as it is."""

    def init(self, args, *remaining, env=None, **kwargs):
        runtime = bundle.resource('deno/deno')
        if runtime and isinstance(args, (list, tuple)) and args and args[0] == runtime:
            env = {**(env or os.environ), 'DENO_NO_UPDATE_CHECK': '1'}
            modules = bundle.resource('deno/cache')
            if modules:
                env['DENO_DIR'] = modules
        original(self, args, *remaining, env=env, **kwargs)

    return init


def _with_hooks(original: Callable) -> Callable:
    def real_download(self, filename, info_dict):
        # The HLS downloader hands a stream over without its hooks.
        for hook in self.ydl._progress_hooks:
            if hook not in self._progress_hooks:
                self.add_progress_hook(hook)
        try:
            return original(self, filename, info_dict)
        except DownloadCancelled:
            # Such a download always begins again, so its beginning is of no use.
            self.try_remove(self.temp_name(filename))
            raise

    return real_download


def _watching(original: Callable) -> Callable:
    def call_downloader(self, tmpfilename, info_dict):
        watch = _Watch(self, tmpfilename, info_dict)
        with _looking_on(watch):
            code = original(self, tmpfilename, info_dict)
        if code and watch.process:
            self.report_error(f'The stream could not be saved: {watch.last_line()}')
        return code

    return call_downloader


@contextlib.contextmanager
def _looking_on(watch: '_Watch') -> Iterator[None]:
    _watched.look = watch
    try:
        yield
    finally:
        _watched.look = None


class _Watch:
    """Turns what the running call has written into progress reports of its download."""

    def __init__(self, downloader: FFmpegFD, tmpfilename: str, info: dict[str, Any]) -> None:
        self.process: native_process.NativeProcess | None = None
        self._downloader = downloader
        self._tmpfilename = tmpfilename
        self._info = info
        self._started = time.monotonic()

    def __call__(self, process: native_process.NativeProcess) -> None:
        progress = process.progress()
        size = progress.size if progress else 0
        elapsed = time.monotonic() - self._started
        self._downloader._hook_progress({
            'status': 'downloading',
            'filename': self._downloader.undo_temp_name(self._tmpfilename),
            'tmpfilename': self._tmpfilename,
            'downloaded_bytes': size,
            'total_bytes_estimate': self._estimate(progress),
            'elapsed': elapsed,
            'speed': size / elapsed if size and elapsed else None,
            'eta': None,
        }, self._info)

    def _estimate(self, progress: Any) -> int | None:
        duration = self._info.get('duration')
        if self._info.get('is_live') or not duration or not progress or progress.seconds <= 0:
            return None
        return int(progress.size * max(1.0, duration / progress.seconds))

    def last_line(self) -> str:
        lines = self.process.log.strip().splitlines()
        return lines[-1] if lines else 'the media step failed'
