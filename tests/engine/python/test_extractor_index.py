# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The index of extractors rules out only those that have nothing to say."""

import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import textwrap
import unittest

import loopback
import python_init
from veltro_ytdlp import extractor_index

_HERE = os.path.dirname(os.path.abspath(__file__))
_PACKAGE = os.path.dirname(python_init.__file__)


class RequiredTexts(unittest.TestCase):

    def test_no_extractor_is_ruled_out_for_an_address_of_its_own(self):
        from yt_dlp.extractor import gen_extractor_classes

        index = extractor_index.build()
        asked = 0
        for lazy in gen_extractor_classes():
            extractor = getattr(lazy, 'real_class', lazy)
            texts = index['addresses'].get(extractor.__name__)
            for case in extractor.get_testcases(include_onlymatching=True):
                if texts and extractor._match_valid_url(case['url']):
                    asked += 1
                    self.assertTrue(any(text in case['url'].lower() for text in texts), case)
        self.assertGreater(asked, 5000)
        self.assertGreater(len(index['addresses']), 1500)

    def test_no_text_is_missing_from_anything_that_an_expression_matches(self):
        """Texts are drawn from each expression, those that it does match are looked at."""
        from yt_dlp.extractor import gen_extractor_classes

        draw, matched = random.Random(1), 0
        for lazy in gen_extractor_classes():
            extractor = getattr(lazy, 'real_class', lazy)
            addresses = extractor._VALID_URL or ()
            for expression in (*extractor._EMBED_REGEX,
                               *([addresses] if isinstance(addresses, str) else addresses)):
                texts = extractor_index.required_texts(expression)
                for case in (str, str, str.upper):
                    drawn = case(drawn_from(re._parser.parse(expression), draw))
                    if texts and re.search(expression, drawn):
                        matched += 1
                        self.assertTrue(any(text in drawn.lower() for text in texts), drawn)
        self.assertGreater(matched, 2000)


def drawn_from(tree: object, draw: random.Random) -> str:
    """A text along the expression; what looks around or back is left to luck."""
    parts = []
    for kind, argument in tree:
        name = str(kind)
        if name == 'LITERAL':
            parts.append(chr(argument))
        elif name == 'SUBPATTERN':
            parts.append(drawn_from(argument[-1], draw))
        elif name == 'BRANCH':
            parts.append(drawn_from(draw.choice(argument[1]), draw))
        elif name.endswith('_REPEAT'):
            for _ in range(draw.randint(argument[0], min(argument[0] + 2, argument[1]))):
                parts.append(drawn_from(argument[2], draw))
        elif name == 'IN':
            parts.append(drawn_from_set(argument, draw))
        elif name in ('ANY', 'NOT_LITERAL'):
            parts.append(draw.choice('a1-'))
    return ''.join(parts)


def drawn_from_set(members: list, draw: random.Random) -> str:
    kind, argument = draw.choice(members)
    if str(kind) == 'LITERAL':
        return chr(argument)
    if str(kind) == 'RANGE':
        return chr(draw.randint(*argument))
    return {'CATEGORY_DIGIT': '1', 'CATEGORY_SPACE': ' '}.get(str(argument), 'a')


class Bundle(unittest.TestCase):
    """A copy of the package with an index beside it, as the bundle has it."""

    SCRIPT = '''
        import json, sys
        import python_init, yt_dlp
        python_init.apply_after_import()
        seen = {}
        for url in sys.argv[1:]:
            ydl = yt_dlp.YoutubeDL({'quiet': True, 'no_warnings': True, 'skip_download': True})
            before = len(sys.modules)
            info = ydl.sanitize_info(ydl.extract_info(url, download=False, process=False))
            seen[url] = {key: info.get(key) for key in ('title', 'formats', 'entries', 'url')}
            seen.setdefault('loaded', len(sys.modules) - before)
        print(json.dumps(seen, default=str))
    '''

    def setUp(self) -> None:
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        shutil.copytree(_PACKAGE, self.folder, dirs_exist_ok=True)
        self.index = os.path.join(self.folder, extractor_index.FILE_NAME)

    def seen(self, *urls: str) -> dict:
        import json

        done = subprocess.run(
            [sys.executable, '-c', textwrap.dedent(self.SCRIPT), *urls], check=True, text=True,
            capture_output=True, timeout=60,
            env={**os.environ, 'PYTHONPATH': f'{self.folder}:{os.environ["PYTHONPATH"]}'})
        return json.loads(done.stdout)

    def test_pages_yield_the_same_and_far_less_is_loaded(self):
        pages = {
            '/video': '<title>One</title><video src="a.mp4"></video>',
            '/player': '<title>Two</title><iframe src="https://www.youtube.com/embed/BaW_jenozKc">',
            '/players': '<title>Three</title>'
                        '<iframe src="https://player.vimeo.com/video/56015672"></iframe>'
                        '<IFRAME SRC="//www.dailymotion.com/embed/video/x2bu0qx"></IFRAME>'
                        '<iframe src="https://streamable.com/o/dnd1"></iframe>',
        }
        with loopback.Site(pages) as site:
            urls = [site.root + path for path in pages]
            everyone = self.seen(*urls)
            subprocess.run([sys.executable, '-m', 'veltro_ytdlp.extractor_index', self.index],
                           check=True, cwd=self.folder)
            indexed = self.seen(*urls)
            loaded = everyone.pop('loaded'), indexed.pop('loaded')
            self.assertEqual(indexed, everyone)
            self.assertEqual(len(everyone[urls[2]]['entries']), 3)
            self.assertGreater(loaded[0], 5 * loaded[1])
            with open(self.index, 'w') as file:
                file.write('{"version": "2000.01.01", "addresses": {}, "pages": {}}')
            self.assertGreater(self.seen(urls[0])['loaded'], 500, 'another version was believed')


if __name__ == '__main__':
    unittest.main()
