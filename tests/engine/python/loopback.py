# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A small web site on 127.0.0.1 whose pages a test writes."""

import http.server
import re
import threading
from collections.abc import Callable

# What a test puts under a path: content, or a function of the request handler.
Content = bytes | str | Callable[['Handler'], None]

_TYPES = {'mp4': 'video/mp4', 'm4a': 'audio/mp4', 'm4s': 'video/mp4', 'mpd': 'application/dash+xml',
          'm3u8': 'application/vnd.apple.mpegurl', 'ts': 'video/mp2t', 'vtt': 'text/vtt',
          'jpg': 'image/jpeg', 'html': 'text/html; charset=utf-8', 'webm': 'video/webm'}


class Handler(http.server.BaseHTTPRequestHandler):
    """Serves what the site holds, whole or a range of it."""

    protocol_version = 'HTTP/1.1'

    def do_GET(self) -> None:
        site = self.server.site
        path = self.path.partition('?')[0]
        with site.lock:
            site.requests.append(path)
            content = site.contents.get(path)
        if content is None:
            self.answer(404, b'', 'text/plain')
        elif callable(content):
            content(self)
        else:
            self.serve(content)

    do_HEAD = do_GET

    def serve(self, content: bytes | str) -> None:
        data = content.encode() if isinstance(content, str) else content
        kind = _TYPES.get(self.path.partition('?')[0].rpartition('.')[2], 'text/html')
        wanted = re.fullmatch(r'bytes=(\d+)-(\d*)', self.headers.get('Range', ''))
        if not wanted:
            self.answer(200, data, kind, {'Accept-Ranges': 'bytes'})
            return
        first, last = int(wanted[1]), int(wanted[2] or len(data) - 1)
        if first >= len(data):
            self.answer(416, b'', kind, {'Content-Range': f'bytes */{len(data)}'})
            return
        last = min(last, len(data) - 1)
        self.answer(206, data[first:last + 1], kind,
                    {'Content-Range': f'bytes {first}-{last}/{len(data)}'})

    def answer(self, status: int, data: bytes, kind: str, headers: dict | None = None) -> None:
        self.send_response(status)
        self.send_header('Content-Type', kind)
        self.send_header('Content-Length', str(len(data)))
        for name, value in (headers or {}).items():
            self.send_header(name, value)
        self.end_headers()
        if self.command != 'HEAD':
            self.wfile.write(data)

    def log_message(self, *_: object) -> None:
        pass


class _Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *_: object) -> None:
        """A client that cancels closes its connection; that is no fault of the site."""


class Site:
    """The pages of one test; use as a context manager."""

    def __init__(self, contents: dict[str, Content] | None = None) -> None:
        self.contents = dict(contents or {})
        self.requests: list[str] = []
        self.lock = threading.Lock()

    def __enter__(self) -> 'Site':
        self._server = _Server(('127.0.0.1', 0), Handler)
        self._server.site = self
        self.root = f'http://127.0.0.1:{self._server.server_port}'
        self._thread = threading.Thread(target=self._server.serve_forever, args=(0.02,))
        self._thread.start()
        return self

    def __exit__(self, *_: object) -> None:
        self._server.shutdown()
        self._thread.join()
        self._server.server_close()

    def count(self, path: str) -> int:
        with self.lock:
            return self.requests.count(path)
