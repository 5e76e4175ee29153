# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Cancelled runs stop, leave nothing that looks finished, and are continued without loss."""

import json
import os
import threading
import unittest
import unittest.mock
from collections.abc import Callable

import clips
from engine_case import EngineCase, Saved, yt_dlp
from testsite import reply


def at_fragment(index: int, of: str = '') -> Callable[[dict], bool]:
    """Cancels in the fragment with that index of the file whose name holds the text."""
    return lambda status: (status['status'] == 'downloading' and of in status['filename']
                           and status.get('fragment_index') == index)


class FragmentedDownloads(EngineCase):

    # Kind of page, piece that is cancelled, text in that piece's name, its first fragment.
    PIECES = (
        ('dash', 'video', '.f0.', '/seg-0-1.m4s'),
        ('dash', 'audio', '.f1.', '/seg-1-1.m4s'),
        ('hls', 'video', '.f200.', '/video-0.ts'),
        ('hls', 'audio', '.fa-sound.', '/audio-0.ts'),
    )

    def serve_stream(self, kind: str) -> str:
        return self.serve_dash() if kind == 'dash' else self.serve_hls()

    def assert_whole(self, url: str, saved: Saved) -> None:
        """The file has the packets of one that was saved without a break."""
        self.assertEqual(self.files(), [os.path.basename(saved.path)])
        self.use_folder('whole')
        self.assertEqual(clips.packets(saved.path), clips.packets(self.saved(url).path))

    def test_a_cancelled_stream_is_continued_where_it_was_left(self):
        for kind, piece, mark, first in self.PIECES:
            with self.subTest(kind=kind, piece=piece):
                self.use_folder(f'{kind}-{piece}')
                url = self.serve_stream(kind)
                broken = self.save(url, cancel=at_fragment(3, mark))
                self.assertIsInstance(broken.error, yt_dlp.utils.DownloadCancelled)
                names = self.files()
                self.assertEqual([name for name in names if '.new.' not in name], [])
                self.assertEqual({os.path.splitext(name)[1] for name in names if mark in name},
                                 {'.part', '.ytdl'})
                before = self.site.count(first)
                done = self.saved(url)
                self.assertEqual(self.site.count(first), before, 'fetched a second time')
                self.assert_whole(url, done)

    def cancelled_video(self) -> tuple[str, str]:
        """A stream that was cancelled in its video: its address and the path of the part."""
        url = self.serve_dash()
        self.save(url, cancel=at_fragment(3))
        part, = (name for name in self.files() if name.endswith('.part'))
        return url, os.path.join(self.folder, part)

    def test_a_fragment_that_was_half_written_is_not_kept(self):
        url, part = self.cancelled_video()
        with open(part, 'ab') as file:
            file.write(b'half a fragment')
        self.assert_whole(url, self.saved(url))

    def test_what_does_not_fit_together_is_begun_again(self):
        for fault in ('part too short', 'ledger unreadable', 'ledger missing'):
            with self.subTest(fault):
                self.use_folder(fault)
                url, part = self.cancelled_video()
                ledger = part.removesuffix('.part') + '.ytdl'
                if fault == 'part too short':
                    os.truncate(part, 100)
                elif fault == 'ledger unreadable':
                    open(ledger, 'w').close()
                else:
                    os.remove(ledger)
                self.assert_whole(url, self.saved(url))

    def test_a_fragment_that_cannot_be_written_is_asked_for_again(self):
        url = self.serve_dash()
        calls = []

        class Full:
            """A part whose third fragment meets a full disk after some bytes."""

            def __init__(self, stream):
                self._stream = stream

            def write(self, data):
                calls.append(len(data))
                if len(calls) == 3:
                    self._stream.write(data[:10])
                    raise OSError(28, 'No space left on device')
                return self._stream.write(data)

            def __getattr__(self, name):
                return getattr(self._stream, name)

        prepare = yt_dlp.downloader.fragment.FragmentFD._prepare_frag_download

        def prepared(downloader, ctx):
            prepare(downloader, ctx)
            ctx['dest_stream'] = Full(ctx['dest_stream'])

        with unittest.mock.patch.object(
                yt_dlp.downloader.fragment.FragmentFD, '_prepare_frag_download', prepared):
            broken = self.save(url)
        self.assertEqual(str(broken.error),
                         'ERROR: There is no space left in the downloads folder.')
        self.assert_whole(url, self.saved(url))


class WholeFiles(EngineCase):

    def test_a_cancelled_file_is_continued_and_another_quality_is_not_mixed_in(self):
        other = clips.movie()[::-1]
        self.serve('/movie.mp4', clips.movie())
        self.serve('/other.mp4', other)
        url = self.page('<video><source src="other.mp4" label="b" res="90">'
                        '<source src="movie.mp4" label="a" res="180"></video>')
        cancel = lambda status: (status['status'] == 'downloading'
                                 and status['downloaded_bytes'] > 50_000)
        plain = {'embedsubtitles': False, 'writesubtitles': False}
        for selector, content in (('worst', other), ('best', clips.movie())):
            self.save(url, cancel=cancel, format='best', **plain)
            part, = self.files()
            kept = os.path.getsize(os.path.join(self.folder, part))
            self.assertTrue(part.endswith('.part') and kept > 50_000)
            done = self.saved(url, format=selector, **plain)
            first = next(each for each in done.events if each['status'] == 'downloading')
            self.assertEqual(first['downloaded_bytes'] > kept, selector == 'best')
            self.assertEqual(self.content(os.path.basename(done.path)), content)
            os.remove(done.path)

    def test_a_file_that_was_cancelled_at_its_end_is_not_fetched_again(self):
        self.serve('/movie.mp4', clips.movie())
        url = self.page('<video src="movie.mp4"></video>')
        self.save(url, cancel=lambda status: status['status'] == 'finished')
        self.assertEqual([name for name in self.files() if '.f0.' not in name], [])
        done = self.saved(url)
        self.assertEqual(self.site.count('/movie.mp4'), 1)
        self.assertEqual(self.files(), [os.path.basename(done.path)])

    def test_waiting_for_a_server_can_be_cancelled(self):
        self.serve('/movie.mp4', lambda _: reply.status(503))
        url = self.page('<video src="movie.mp4"></video>')
        broken = self.save(url, cancel=lambda _: self.site.count('/movie.mp4') == 2)
        self.assertIsInstance(broken.error, yt_dlp.utils.DownloadCancelled)
        self.assertEqual(self.site.count('/movie.mp4'), 2)


class LiveStreams(EngineCase):

    def setUp(self):
        super().setUp()
        self.ended = threading.Event()
        self.addCleanup(self.ended.set)
        segments = [name for name in clips.hls() if name.startswith('video-')]
        for name in segments:
            self.serve('/' + name, clips.hls()[name])

        def live(_):
            """A playlist that never says that it ends, until the test says so."""
            lines = [f'#EXTINF:0.5,\nvideo-{number}.ts' for number in range(len(segments))]
            end = '#EXT-X-ENDLIST' if self.ended.is_set() else ''
            return reply.text('\n'.join(('#EXTM3U', '#EXT-X-TARGETDURATION:1',
                                         '#EXT-X-MEDIA-SEQUENCE:0', *lines, end)),
                              'application/vnd.apple.mpegurl')

        self.url = self.serve('/live.m3u8', live)

    def test_a_live_stream_reports_bytes_and_is_saved_when_it_ends(self):
        def end(status):
            if status['status'] == 'downloading' and status['downloaded_bytes']:
                self.ended.set()
            return False

        saved = self.save(self.url, cancel=end)
        self.assertIsNone(saved.error)
        self.assertTrue(any(event['downloaded_bytes'] for event in saved.events))
        self.assertEqual(self.files(), [os.path.basename(saved.path)])
        self.assertTrue(clips.packets(saved.path)['video'])

    def test_a_cancelled_live_stream_ends_at_once_and_leaves_nothing(self):
        cancel = lambda status: status['status'] == 'downloading' and status['downloaded_bytes']
        broken = self.save(self.url, cancel=cancel)
        self.assertIsInstance(broken.error, yt_dlp.utils.DownloadCancelled)
        self.assertEqual(self.files(), [])
        self.assertEqual([thread.name for thread in threading.enumerate()
                          if thread.name == 'veltro-ffmpeg'], [])

    def test_a_live_stream_that_breaks_says_why(self):
        self.tools.failing['live.m3u8'] = 'frame=1\nThe server went away\n'
        broken = self.save(self.url)
        self.assertEqual(str(broken.error),
                         'ERROR: The stream could not be saved: The server went away')


if __name__ == '__main__':
    unittest.main()
