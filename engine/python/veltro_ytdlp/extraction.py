# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""One extraction for a run that first looks at a page and then saves it.

What the extractors returned while the engine looked is kept as it was before yt-dlp worked on
it. When the same address is then saved, the extractors' answers come from there and everything
after them happens as it would have happened a second time, errors and their wrapping included.
"""

import time
from collections.abc import Callable, Iterator
from typing import Any

from yt_dlp.extractor.common import InfoExtractor
from yt_dlp.utils import PagedList

from .patching import replace

# Addresses of media may stop working some time after they were handed out.
_FRESH_SECONDS = 600


def apply() -> None:
    replace(InfoExtractor, 'extract', _through_answers)


def _through_answers(original: Callable) -> Callable:
    def extract(self, url):
        answers = getattr(self._downloader, 'answers', None)
        return answers.extract(original, self, url) if answers else original(self, url)

    return extract


class Answers:
    """What the extractors returned for one address and for what it led to."""

    def __init__(self, url: str) -> None:
        self.url = url
        self.replaying = False
        self._kept: dict[tuple[str, str], list[tuple[float, Any]]] = {}
        self._depth = 0

    def extract(self, original: Callable, extractor: InfoExtractor, url: str) -> Any:
        """The extractor's answer: kept from before, or a new one."""
        if self._depth:  # an extractor that asks another one: part of the outer answer
            return original(extractor, url)
        key = extractor.ie_key(), url
        if self.replaying:
            return self._replayed(key) or original(extractor, url)
        self._depth += 1
        try:
            answer = original(extractor, url)
        finally:
            self._depth -= 1
        if isinstance(answer, dict):
            self._keep(key, answer)
        return answer

    def _keep(self, key: tuple[str, str], answer: dict[str, Any]) -> None:
        entries = answer.get('entries')
        if entries is not None and not isinstance(entries, (list, tuple, PagedList)):
            # A stream of entries can be read once: keep what the first reader takes from it.
            stream = _Stream(entries)
            answer['entries'] = stream.first()
            kept = {**copied({**answer, 'entries': None}), 'entries': stream.again()}
        else:
            kept = copied(answer)
        self._kept.setdefault(key, []).append((time.monotonic(), kept))

    def _replayed(self, key: tuple[str, str]) -> Any:
        while self._kept.get(key):
            kept_at, answer = self._kept[key].pop(0)
            if time.monotonic() - kept_at < _FRESH_SECONDS:
                return answer
        return None


class _Stream:
    """Entries that come one by one, read by two readers after each other."""

    def __init__(self, entries: Any) -> None:
        self._source = iter(entries)
        self._seen: list[Any] = []

    def first(self) -> Iterator[Any]:
        for entry in self._source:
            self._seen.append(copied(entry))
            yield entry

    def again(self) -> Iterator[Any]:
        yield from self._seen
        yield from self._source


def copied(value: Any) -> Any:
    """A copy of an answer as deep as yt-dlp changes it.

    Lists of fragments are long and never changed, and what is no plain container (a list that is
    read when needed, a function) cannot be copied: both are shared.
    """
    if isinstance(value, dict):
        copy = value.copy()
        for key, member in value.items():
            if key != 'fragments':
                copy[key] = copied(member)
        return copy
    if type(value) in (list, tuple):
        return type(value)(map(copied, value))
    return value


class OneExtraction:
    """The part of YoutubeDL that remembers the extraction which a run begins with."""

    answers: Answers | None = None

    def extract_info(self, url: str, download: bool = True, *args: Any, **kwargs: Any) -> Any:
        if download or self.answers or self.params.get('skip_download'):
            return super().extract_info(url, download, *args, **kwargs)
        self.answers = Answers(url)
        try:
            return super().extract_info(url, download, *args, **kwargs)
        except BaseException:
            self.answers = None
            raise

    def download(self, url_list: Any) -> int:
        addresses = [url_list] if isinstance(url_list, str) else list(url_list)
        if self.answers and addresses != [self.answers.url]:
            self.answers = None
        if self.answers:
            self.answers.replaying = True
        try:
            return super().download(addresses)
        finally:
            self.answers = None
