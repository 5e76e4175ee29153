# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Whatever a page says, its files lie in the downloads folder under names that can be read."""

import json
import os
import unittest

import clips
from engine_case import EngineCase, Saved
from testsite import reply

_OUTSIDE = ('ERROR: The file would be written outside the downloads folder, so nothing was '
            'saved.')


class Names(EngineCase):

    def setUp(self) -> None:
        super().setUp()
        self.root = self.outer
        self.media = self.serve('/movie.mp4', clips.movie())
        self.serve('/picture.jpg', clips.picture())
        self.serve('/en.vtt', clips.SUBTITLES)

    def described(self, title: str, media: str = '', **others: str) -> str:
        """A page that describes its video in words of its own choice."""
        description = {'@context': 'https://schema.org', '@type': 'VideoObject', 'name': title,
                       'contentUrl': media or self.media,
                       'thumbnailUrl': f'{self.site.root}/picture.jpg', **others}
        return self.page('', head=f'<script type="application/ld+json">'
                                  f'{json.dumps(description)}</script>')

    def use_place(self, name: str) -> None:
        """Start over with a downloads folder inside a folder with nothing else in it."""
        self.outer = os.path.join(self.root, name)
        self.use_folder('down')

    def everything(self) -> list[str]:
        """Every file under the folder that holds the downloads folder."""
        return sorted(os.path.relpath(os.path.join(folder, name), self.outer)
                      for folder, _, names in os.walk(self.outer) for name in names)

    def assert_contained(self, saved: Saved) -> None:
        """Both files lie in the folder itself."""
        self.assertIsNone(saved.error)
        names = self.files()
        self.assertEqual([os.path.splitext(name)[1] for name in names], ['.jpg', '.mp4'])
        self.assertEqual(self.everything(), [f'{os.path.basename(self.folder)}/{name}'
                                             for name in names])
        self.assertEqual(os.path.dirname(saved.path), self.folder)

    def test_long_titles_are_shortened_between_signs(self):
        family = '\U0001f469\u200d\U0001f469\u200d\U0001f467\u200d\U0001f466'
        titles = {'cyrillic': 'Ы' * 300, 'latin': 'x' * 400, 'joined': family * 30,
                  'marks': 'e\u0301' * 200, 'flags': '\U0001f1e9\U0001f1ea' * 60,
                  'one sign with many marks': 'e' + '\u0301' * 400}
        for kind, title in titles.items():
            with self.subTest(kind):
                self.use_folder(kind)
                page = self.described(title, media=self.serve_hls())
                saved = self.save(page)
                self.assertIsNone(saved.error)
                name = os.path.basename(saved.path)
                self.assertLessEqual(len(name.encode()), 255)
                self.assertRegex(name, r' \[page\]\.mp4$')
                kept = name.removesuffix(' [page].mp4')
                self.assertTrue(title.startswith(kept))
                if kind != 'one sign with many marks':
                    period = {'joined': len(family), 'marks': 2, 'flags': 2}.get(kind, 1)
                    self.assertEqual(len(kept) % period, 0)
                    self.assertGreater(len(name.encode()), 150)

    def test_folders_are_taken_literally(self):
        for folder in ('50% off %(title)s', '$HOME', '~', 'a b', '日本 語', '%', "quote's"):
            with self.subTest(folder):
                self.use_place(f'in {folder}')
                os.rmdir(self.folder)
                self.use_folder(folder)
                self.assert_contained(self.save(self.described('Plain')))

    def test_a_template_may_make_folders_but_not_leave_the_folder(self):
        url = self.described('Plain', author='Some/one')
        inside = self.save(url, outtmpl=f'{self.folder}/%(extractor)s/%(title)s.%(ext)s')
        self.assertEqual(os.path.relpath(inside.path, self.folder), 'generic/Plain.mp4')
        before = self.everything()
        os.symlink(self.outer, os.path.join(self.folder, 'link'))
        for place in ('..', 'link', 'a/../..'):
            with self.subTest(place):
                failed = self.save(url, outtmpl=f'{self.folder}/{place}/%(title)s.%(ext)s')
                self.assertEqual(str(failed.error), _OUTSIDE)
                self.assertEqual(self.everything(), before)

    def test_a_template_without_a_type_still_gives_one(self):
        saved = self.save(self.described('Plain'), outtmpl=f'{self.folder}/%(title)s')
        self.assertEqual(os.path.basename(saved.path), 'Plain.mp4')

    def test_a_link_in_the_place_of_an_unfinished_file_is_not_followed(self):
        victim = os.path.join(self.outer, 'victim')
        with open(victim, 'w') as file:
            file.write('precious')
        url = self.described('Plain')
        broken = self.save(url, cancel=lambda status: status['status'] == 'downloading')
        part, = (name for name in self.files() if name.endswith('.part'))
        os.remove(os.path.join(self.folder, part))
        os.symlink(victim, os.path.join(self.folder, part))
        failed = self.save(url)
        self.assertIsNotNone(broken.error)
        self.assertEqual(str(failed.error), _OUTSIDE)
        with open(victim) as file:
            self.assertEqual(file.read(), 'precious')

    def test_media_of_other_kinds_is_refused_before_a_byte_is_asked_for(self):
        for kind in ('desktop', 'exe', 'swf', 'sh', 'html'):
            with self.subTest(kind):
                self.serve(f'/run.{kind}', b'[Desktop Entry]\nExec=true\n')
                failed = self.save(self.page(f'<video src="run.{kind}"></video>'))
                self.assertIn(f'a file of the type .{kind}', str(failed.error))
                self.assertEqual(self.files(), [])
                self.assertEqual(self.site.count(f'/run.{kind}'), 0)

    def test_a_file_of_unknown_kind_is_what_its_server_says(self):
        kinds = {'video/webm': 'webm', 'application/octet-stream': 'unknown_video',
                 'text/plain': None, 'text/html; charset=utf-8': None}
        for kind, extension in kinds.items():
            with self.subTest(kind):
                self.use_place(kind.replace('/', ' '))
                media = self.serve('/watch', lambda _: reply.Reply(
                    content_type=kind, body=clips.movie()))
                saved = self.save(self.described('Plain', media=media))
                if extension is None:
                    self.assertIn('neither video nor audio', str(saved.error))
                    self.assertEqual(self.files(), [])
                else:
                    self.assertEqual(os.path.basename(saved.path), f'Plain [page].{extension}')

    def test_a_folder_that_cannot_be_written_to_is_named_as_the_reason(self):
        readable = '/proc/self'  # the one folder that even root cannot write to
        failed = self.save(self.described('Plain'), outtmpl=f'{readable}/%(title)s.%(ext)s',
                           paths={'home': readable, 'temp': readable})
        self.assertEqual(str(failed.error), 'ERROR: The downloads folder cannot be written to.')


if __name__ == '__main__':
    unittest.main()
