# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Asks only those extractors that can have to do with an address or a page.

yt-dlp compiles about 1,700 expressions to see whose address it has been given, and loads as many
extractors to see whose player an unknown page holds: 1.3 of the 1.5 seconds of a first
extraction. Nearly every expression has some text in it that whatever matches must hold as well.
The index has that text for each; where it does not occur, the extractor need not be asked, and
the answers stay the same.

The index is made when the bundle is made (python3 -m veltro_ytdlp.extractor_index FILE), again
where yt-dlp or this file is another one. Without one everybody is asked.
"""

import hashlib
import itertools
import json
import re
import sys
from collections.abc import Iterable, Iterator
from typing import Any

from yt_dlp.version import __version__

from . import bundle

FILE_NAME = 'extractor_index.json'
_LAZY_MODULE = 'yt_dlp.extractor.lazy_extractors'
# Shorter texts are everywhere and rule nothing out.
_SHORTEST = 4
_EVERYWHERE = ('http', 'https')


def attach() -> None:
    """Put the index between yt-dlp and its extractors; again and again does no harm."""
    lazy = sys.modules.get(_LAZY_MODULE)
    if lazy is None or hasattr(lazy, 'veltro_index'):
        return
    lazy.veltro_index = index = _load()
    if index:
        _put_between(lazy.LazyLoadExtractor, index['addresses'], index['pages'])


def _load() -> dict[str, Any] | None:
    path = bundle.resource(FILE_NAME)
    try:
        with open(path or '', encoding='utf-8') as file:
            index = json.load(file)
        return index if index['version'] == __version__ else None
    except (OSError, ValueError, LookupError, TypeError):
        return None


def _put_between(base: type, addresses: dict[str, list], pages: dict[str, list]) -> None:
    original = base._match_valid_url.__func__
    page = _LowerCase()

    def match_valid_url(cls, url):
        texts = addresses.get(cls.__name__)
        if texts is not None and not _holds_one(url.lower(), texts):
            return None
        return original(cls, url)

    def extract_from_webpage(cls, ydl, url, webpage):
        texts = pages.get(cls.__name__)
        if texts is not None and not _holds_one(page.of(webpage), texts):
            return iter(())
        return cls.real_class.extract_from_webpage(ydl, url, webpage)

    base._match_valid_url = classmethod(match_valid_url)
    base.extract_from_webpage = classmethod(extract_from_webpage)


def _holds_one(text: str, wanted: Iterable[str]) -> bool:
    return any(each in text for each in wanted)


class _LowerCase:
    """Makes the page lower-case once for all extractors that look at it."""

    def __init__(self) -> None:
        self._last = ('', '')

    def of(self, page: str) -> str:
        last = self._last
        if last[0] is not page:
            self._last = last = (page, page.lower())
        return last[1]


def build() -> dict[str, Any]:
    """The index of this yt-dlp; loads all of its extractors."""
    from yt_dlp.extractor import gen_extractor_classes

    addresses, pages = {}, {}
    for lazy in gen_extractor_classes():
        extractor = getattr(lazy, 'real_class', lazy)
        _add(addresses, extractor, extractor._VALID_URL)
        if not _looks_in_its_own_way(extractor):
            _add(pages, extractor, extractor._EMBED_REGEX)
    with open(__file__, 'rb') as file:
        maker = hashlib.sha256(file.read()).hexdigest()
    return {'version': __version__, 'maker': maker, 'addresses': addresses, 'pages': pages}


def _add(table: dict[str, list[str]], extractor: type, expressions: Any) -> None:
    if expressions is None or isinstance(expressions, str):
        expressions = [expressions]
    if expressions is False or None in expressions:
        return
    texts = [required_texts(each) for each in expressions]
    if all(texts):
        table[extractor.__name__] = sorted(set(itertools.chain.from_iterable(texts)))


def _looks_in_its_own_way(extractor: type) -> bool:
    from yt_dlp.extractor.common import InfoExtractor

    names = ('extract_from_webpage', '_extract_from_webpage', '_extract_embed_urls')
    return any(getattr(getattr(extractor, name), '__func__', None)
               is not getattr(InfoExtractor, name).__func__ for name in names)


def required_texts(expression: str) -> list[str]:
    """Lower-case texts of which whatever matches holds at least one; none where nothing is
    certain."""
    return _texts(re._parser.parse(expression))


def _texts(tree: Any) -> list[str]:
    runs = [run for run in ''.join(_spelled(tree)).lower().split('\0')
            if len(run) >= _SHORTEST and run not in _EVERYWHERE]
    if runs:
        return [max(runs, key=len)]
    for choices in _choices(tree):
        texts = list(map(_texts, choices))
        if all(texts):
            return list(itertools.chain.from_iterable(texts))
    return []


def _spelled(tree: Any) -> Iterator[str]:
    """What is certain to stand in a match, in order, with a zero where something else may."""
    for kind, argument in tree:
        name = str(kind)
        if name == 'LITERAL':
            yield chr(argument)
        elif name == 'SUBPATTERN':
            yield from _spelled(argument[-1])
        elif name == 'ATOMIC_GROUP':
            yield from _spelled(argument)
        elif name.endswith('_REPEAT') and argument[0] > 0:
            yield '\0'
            yield from _spelled(argument[2])
            yield '\0'
        elif name not in ('AT', 'ASSERT', 'ASSERT_NOT'):  # those have no width
            yield '\0'


def _choices(tree: Any) -> Iterator[list]:
    """The alternatives of every choice that a match has to make."""
    for kind, argument in tree:
        name = str(kind)
        if name == 'BRANCH':
            yield argument[1]
        elif name == 'SUBPATTERN':
            yield from _choices(argument[-1])
        elif name.endswith('_REPEAT') and argument[0] > 0:
            yield from _choices(argument[2])


if __name__ == '__main__':
    with open(sys.argv[1], 'w', encoding='utf-8') as target:
        json.dump(build(), target, separators=(',', ':'))
