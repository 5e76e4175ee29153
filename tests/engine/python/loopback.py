# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The test site's server, with pages that a test writes."""

import pathlib
from collections.abc import Callable

from testsite import reply, server, state

# What a test puts under a path: content, or a function from the request to the reply.
Content = bytes | str | Callable[[server.Request], reply.Reply]


class Site:
    """The pages of one test; use as a context manager."""

    def __init__(self, contents: dict[str, Content] | None = None) -> None:
        self.contents = dict(contents or {})
        self._state = state.Site(None)

    def __enter__(self) -> 'Site':
        self._server = server.Server(0, self._state, find=self._find)
        self._server.start()
        self.root = self._server.address()
        return self

    def __exit__(self, *_: object) -> None:
        self._server.shutdown()
        self._server.server_close()

    def _find(self, path: str) -> Callable[[server.Request], reply.Reply] | None:
        content = self.contents.get(path)
        if content is None or callable(content):
            return content
        data = content.encode() if isinstance(content, str) else content
        kind = reply.TYPES.get(pathlib.PurePath(path).suffix, reply.HTML)
        return lambda _: reply.Reply(content_type=kind, body=data, ranges=True)

    @property
    def requests(self) -> list[str]:
        return [entry['path'] for entry in self._state.log.entries()]

    def count(self, path: str) -> int:
        return self.requests.count(path)
