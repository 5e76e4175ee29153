# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What is finished stays until something finished takes its place."""

import os
import unittest

import clips
from engine_case import EngineCase

_STEM = 'A title (1) [page-1]'
_SETTLED = (f'{_STEM}.en.vtt', f'{_STEM}.jpg', f'{_STEM}.mp4')
_NOTES = 'notes.txt'


class Overwriting(EngineCase):

    def settle(self, *names: str) -> dict[str, bytes]:
        """Put finished files of an earlier save into the folder; returns what they hold."""
        for name in (*names, _NOTES):
            with open(os.path.join(self.folder, name), 'wb') as file:
                file.write(b'old ' + name.encode())
        return self.held()

    def held(self) -> dict[str, bytes]:
        return {name: self.content(name) for name in self.files()}

    def test_a_second_save_replaces_the_file_and_what_lies_beside_it(self):
        self.settle(*_SETTLED)
        seen = []

        def look(status):
            if status['status'] != 'waiting':
                seen.append(self.content(f'{_STEM}.mp4')[:3])
            return False

        saved = self.save(self.video_page(), cancel=look, embedsubtitles=False)
        self.assertIsNone(saved.error)
        self.assertEqual(set(seen), {b'old'}, 'replaced before it was complete')
        self.assertEqual(self.files(), sorted((*_SETTLED, _NOTES)))
        self.assertEqual(self.content(f'{_STEM}.mp4'), clips.movie())
        self.assertEqual(self.content(f'{_STEM}.jpg'), clips.picture())
        self.assertEqual(self.content(f'{_STEM}.en.vtt').decode(), clips.SUBTITLES)

    def test_a_merged_file_replaces_the_one_that_was_there(self):
        self.settle('manifest [manifest].mp4')
        saved = self.saved(self.serve_dash())
        self.assertEqual(self.files(), ['manifest [manifest].mp4', _NOTES])
        self.assertEqual(len(clips.packets(saved.path)['video']), 96)

    def test_a_save_that_is_cancelled_changes_nothing(self):
        for name, url in (('whole', self.video_page()), ('pieces', self.serve_dash())):
            with self.subTest(name):
                self.use_folder(name)
                settled = self.settle(*_SETTLED, 'manifest [manifest].mp4')
                broken = self.save(url, cancel=lambda status: (
                    status['status'] == 'downloading' and not status['filename'].endswith('.vtt')))
                self.assertIsNotNone(broken.error)
                left = self.held()
                self.assertEqual({name: left.pop(name) for name in settled}, settled)
                self.assertEqual({os.path.splitext(name)[1] for name in left} - {'.ytdl'},
                                 {'.part'})

    def test_a_save_that_fails_changes_nothing_and_the_next_one_works(self):
        """Wherever it fails: the media is missing, empty, or cannot be put together."""
        failures = (
            ('missing', lambda: self.site.contents.pop('/movie.mp4'), self.video_page),
            ('empty', lambda: self.serve('/movie.mp4', b''), self.video_page),
            ('unmergeable', lambda: self.tools.failing.update({'-c': 'Invalid data\n'}),
             self.serve_dash),
        )
        for name, break_it, page in failures:
            with self.subTest(name):
                self.use_folder(name)
                url = page()
                settled = self.settle(*_SETTLED, 'manifest [manifest].mp4')
                break_it()
                self.assertIsNotNone(self.save(url).error)
                self.assertEqual(self.held(), settled)
                self.tools.failing.clear()
                self.serve('/movie.mp4', clips.movie())
                saved = self.saved(url, embedsubtitles=False)
                self.assertEqual(self.files(), sorted((*settled,)))
                self.assertEqual(len(clips.packets(saved.path)['video']), 96)

    def test_items_that_are_called_the_same_do_not_replace_each_other(self):
        media = [self.serve(f'/{name}.mp4', clips.movie()) for name in 'abc']
        feed = self.serve('/feed.rss', '<rss version="2.0"><channel><title>F</title>' + ''.join(
            f'<item><title>Same</title><link>{each}</link></item>' for each in media)
            + '</channel></rss>')
        settled = self.settle('Same.mp4')
        saved = self.saved(feed, outtmpl=f'{self.folder}/%(title)s.%(ext)s')
        self.assertEqual(self.files(),
                         sorted(('Same.mp4', 'Same (2).mp4', 'Same (3).mp4', _NOTES)))
        self.assertNotEqual(self.content('Same.mp4'), settled['Same.mp4'])
        self.assertEqual(os.path.basename(saved.path), 'Same (3).mp4')

    def test_what_cancelled_runs_in_other_qualities_left_goes_with_success(self):
        url = self.serve_dash()
        settled = self.settle(_SETTLED[0])
        cancel = lambda status: (status['status'] == 'downloading'
                                 and status.get('fragment_index') == 2)
        for selector in ('bestvideo', 'bestaudio', 'bestvideo+bestaudio'):
            self.save(url, cancel=cancel, format=selector)
        self.assertEqual(len(self.files()), len(settled) + 6)
        saved = self.saved(url, format='bestvideo')
        self.assertEqual(self.files(), sorted((*settled, os.path.basename(saved.path))))

    def test_a_post_processing_error_is_the_last_line_of_the_log(self):
        self.tools.failing['-c'] = 'frame=0\n\nThe codec is not supported\n'
        self.assertEqual(str(self.save(self.serve_dash()).error),
                         'ERROR: Postprocessing: The codec is not supported')
        self.tools.failing['-c'] = '\n'
        self.assertEqual(str(self.save(self.serve_dash()).error),
                         'ERROR: Postprocessing: The media step ended with code 1.')

    def test_sound_that_is_taken_out_gets_its_own_name(self):
        settled = self.settle(f'{_STEM}.mp4')
        step = {'key': 'FFmpegExtractAudio', 'preferredcodec': 'm4a', 'preferredquality': '192'}
        saved = self.saved(self.video_page(), postprocessors=[step], embedsubtitles=False,
                           writesubtitles=False, writethumbnail=False)
        self.assertEqual(os.path.basename(saved.path), f'{_STEM}.m4a')
        self.assertEqual(self.files(), sorted((*settled, f'{_STEM}.m4a')))
        self.assertEqual(list(clips.packets(saved.path)), ['audio'])
        self.assertEqual(self.content(f'{_STEM}.mp4'), settled[f'{_STEM}.mp4'])

    def test_a_folder_in_the_place_of_the_file_is_an_error_and_stays(self):
        os.makedirs(os.path.join(self.folder, f'{_STEM}.mp4', 'inner'))
        failed = self.save(self.video_page(), writethumbnail=False)
        self.assertEqual(str(failed.error), 'ERROR: Postprocessing: The finished file cannot take '
                                            'its name: Is a directory')
        self.assertEqual(self.files(), [f'{_STEM}.mp4'])


if __name__ == '__main__':
    unittest.main()
