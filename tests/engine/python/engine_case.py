# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Drives yt-dlp as the engine does, against a site of the test's own."""

import os
import tempfile
import unittest
from collections.abc import Callable
from typing import Any

import clips
import loopback
import python_init
import yt_dlp
from veltro_ytdlp import native

python_init.apply_after_import()


class Watched:
    """The media functions, with a way to let a command fail."""

    def __init__(self, tools: native.Tools) -> None:
        # The log of a command that fails because a word of it is a key.
        self.failing: dict[str, str] = {}
        self.cancel = tools.cancel
        self.progress = tools.progress
        self._tools = tools

    def run(self, tool: str, arguments: list[str]) -> native.Outcome:
        for word, log in self.failing.items():
            if any(word in argument for argument in arguments):
                return native.Outcome(1, '', log)
        return self._tools.run(tool, arguments)


class Saved:
    """What a run told its hooks."""

    def __init__(self) -> None:
        self.info: dict[str, Any] = {}
        self.events: list[dict[str, Any]] = []
        self.steps: list[str] = []
        self.path: str | None = None
        self.error: BaseException | None = None


class EngineCase(unittest.TestCase):
    """A test with a site, a downloads folder and media functions."""

    def setUp(self) -> None:
        self.tools = Watched(native.tools())
        native.use(self.tools)
        self.addCleanup(native.use, None)
        self.site = self.enterContext(loopback.Site())
        self.outer = self.enterContext(tempfile.TemporaryDirectory(prefix='veltro-'))
        self.use_folder('down')

    def use_folder(self, name: str) -> None:
        """Let the runs that follow save into another folder."""
        self.folder = os.path.join(self.outer, name)
        os.makedirs(self.folder, exist_ok=True)

    def serve(self, path: str, content: loopback.Content) -> str:
        self.site.contents[path] = content
        return self.site.root + path

    def page(self, body: str, path: str = '/page.html', head: str = '') -> str:
        """A page with the body; returns its address."""
        return self.serve(path, f'<html><head><title>A title</title>{head}</head>'
                                f'<body>{body}</body></html>')

    def video_page(self, video: str = 'poster="picture.jpg"',
                   track: str = '<track srclang="en" src="en.vtt">', head: str = '') -> str:
        """A page with the clip, a picture and subtitles, or whatever else is said of it."""
        self.serve('/movie.mp4', clips.movie())
        self.serve('/picture.jpg', clips.picture())
        self.serve('/en.vtt', clips.SUBTITLES)
        return self.page(f'<video src="movie.mp4" {video}>{track}</video>', head=head)

    def probe(self, url: str, **options: Any) -> dict[str, Any]:
        ydl = yt_dlp.YoutubeDL({'quiet': True, 'no_warnings': True, 'skip_download': True,
                                **options})
        return ydl.sanitize_info(ydl.extract_info(url, download=False))

    def options(self, **others: Any) -> dict[str, Any]:
        """What the engine sets for a run, in its order."""
        return {
            'outtmpl': f'{self.folder}/%(title)s [%(id)s].%(ext)s',
            'paths': {'home': self.folder, 'temp': self.folder},
            'format': 'bestvideo+bestaudio/best',
            'merge_output_format': 'mp4',
            'noplaylist': True,
            'writesubtitles': True,
            'subtitleslangs': ['en'],
            'embedsubtitles': True,
            'writethumbnail': True,
            'quiet': False,
            'no_warnings': False,
            'verbose': True,
            'overwrites': True,
            'ffmpeg_location': '__veltro_ffmpeg__',
            **others,
        }

    def save(self, url: str, cancel: Callable[[dict], bool] = lambda _: False,
             **others: Any) -> Saved:
        """A whole run; cancel is asked at every call of the progress hook."""
        saved = Saved()

        def progress(status: dict) -> None:
            saved.events.append({key: status.get(key) for key in (
                'status', 'filename', 'downloaded_bytes', 'fragment_index')})
            if status['status'] == 'finished':
                saved.path = status['filename']
            if cancel(status):
                raise yt_dlp.utils.DownloadError('Cancelled')

        def step(status: dict) -> None:
            if status['status'] == 'started':
                saved.steps.append(status['postprocessor'])
            elif status['status'] == 'finished':
                saved.path = status['info_dict'].get('filepath') or saved.path

        options = self.options(progress_hooks=[progress], postprocessor_hooks=[step], **others)
        try:
            ydl = yt_dlp.YoutubeDL(options)
            info = ydl.extract_info(url, download=False)
            saved.info = ydl.sanitize_info(info)
            ydl.download([url])
        except Exception as error:
            saved.error = error
        return saved

    def saved(self, url: str, **others: Any) -> Saved:
        """A run that must succeed."""
        saved = self.save(url, **others)
        if saved.error:
            raise saved.error
        return saved

    def files(self) -> list[str]:
        return sorted(os.listdir(self.folder))

    def serve_dash(self) -> str:
        for name, content in clips.dash().items():
            self.serve('/' + name, content)
        return self.site.root + '/manifest.mpd'

    def serve_hls(self) -> str:
        for name, content in clips.hls().items():
            self.serve('/' + name, content)
        return self.serve('/master.m3u8', clips.MASTER)

    def content(self, name: str) -> bytes:
        with open(os.path.join(self.folder, name), 'rb') as file:
            return file.read()
