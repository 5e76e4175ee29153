# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Subtitles and pictures are saved where they can be and never end a run."""

import os
import unittest

import clips
from engine_case import EngineCase, Saved
from testsite import reply

_MEDIA = 'A title (1) [page-1].mp4'


class Supplements(EngineCase):

    def saved_page(self, video: str = '', track: str = '', head: str = '') -> Saved:
        return self.saved(self.video_page(video, track, head))

    def test_subtitles_are_put_into_the_file(self):
        saved = self.saved_page(track='<track srclang="en" src="en.vtt">')
        self.assertEqual(self.files(), [_MEDIA])
        self.assertIn('subtitle', clips.packets(saved.path))
        self.assertEqual(saved.steps, ['EmbedSubtitle', 'MoveFiles'])

    def test_subtitles_stay_beside_the_file_where_they_do_not_fit(self):
        self.tools.failing['-0:s'] = 'Subtitle codec is not supported\n'
        saved = self.saved_page(track='<track srclang="en" src="en.vtt">')
        self.assertEqual(self.files(), ['A title (1) [page-1].en.vtt', _MEDIA])
        self.assertEqual(self.content('A title (1) [page-1].en.vtt').decode(), clips.SUBTITLES)
        self.assertEqual(saved.path, f'{self.folder}/{_MEDIA}')

    def test_subtitles_that_cannot_be_had_do_not_end_the_run(self):
        self.serve('/empty.vtt', b'')
        self.serve('/broken.m3u8', b'\xff\xfe not a playlist')
        for source in ('missing.vtt', 'empty.vtt', 'broken.m3u8', 'http://127.0.0.1:1/x.vtt',
                       'gopher://x/x.vtt'):
            with self.subTest(source):
                self.use_folder(source.replace('/', '_'))
                self.saved_page(track=f'<track srclang="en" src="{source}">')
                self.assertEqual(self.files(), [_MEDIA])

    def test_side_files_of_other_kinds_are_left_out(self):
        for kind in ('desktop', 'exe', 'sh', 'url', 'svg'):
            with self.subTest(kind):
                self.use_folder(kind)
                self.serve(f'/x.{kind}', b'[Desktop Entry]\nType=Application\nExec=true\n')
                self.saved_page(f'poster="x.{kind}"', f'<track srclang="en" src="x.{kind}">')
                self.assertEqual(self.files(), [_MEDIA])

    def test_a_language_does_not_lead_out_of_the_folder(self):
        self.saved_page(track='<track srclang="en" src="en.vtt">'
                              '<track srclang="../../en" src="en.vtt">')
        self.assertEqual(self.files(), [_MEDIA])
        self.assertEqual(os.listdir(self.outer), ['down'])

    def test_pictures_are_found_from_relative_addresses(self):
        for head, video in (('<meta property="og:image" content="picture.jpg">', ''),
                            ('<meta property="og:image" content="/picture.jpg">', ''),
                            ('', 'poster="picture.jpg"')):
            with self.subTest(head or video):
                self.use_folder(str(len(head)))
                url = self.video_page(video, '', head)
                self.assertEqual(self.probe(url)['thumbnail'], f'{self.site.root}/picture.jpg')
                self.saved(url)
                self.assertEqual(self.content('A title (1) [page-1].jpg'), clips.picture())

    def test_pictures_that_cannot_be_had_do_not_end_the_run(self):
        self.serve('/empty.jpg', b'')
        for source in ('missing.jpg', 'empty.jpg', 'gopher://x/y.jpg', 'http://127.0.0.1:1/x.jpg',
                       'javascript:alert(1)', 'http://[/x.jpg'):
            with self.subTest(source):
                self.use_folder(source.replace('/', '_'))
                self.saved_page(head=f'<meta property="og:image" content="{source}">')
                self.assertEqual(self.files(), [_MEDIA])

    def test_a_picture_is_named_by_its_kind_where_its_address_says_nothing(self):
        self.serve('/picture.php', lambda _: reply.Reply(
            content_type='image/jpeg', body=clips.picture()))
        self.saved_page(video='poster="picture.php?id=1"')
        self.assertEqual(self.files(), ['A title (1) [page-1].jpg', _MEDIA])


if __name__ == '__main__':
    unittest.main()
