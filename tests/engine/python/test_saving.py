# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A page is extracted once and saved as yt-dlp itself would save it."""

import os
import sys
import unittest

import clips
from engine_case import EngineCase, yt_dlp
from testsite import reply

PlainYoutubeDL = sys.modules['yt_dlp.YoutubeDL'].YoutubeDL


class OneExtraction(EngineCase):

    def list_page(self) -> str:
        for name in ('one', 'two', 'three'):
            self.serve(f'/{name}.mp4', clips.movie())
        return self.page(''.join(f'<video src="{name}.mp4"></video>'
                                 for name in ('one', 'two', 'three')))

    def link_page(self) -> str:
        """A page that leads to another address, which yt-dlp resolves while processing."""
        target = self.serve_hls()
        return self.serve('/moved.html', lambda _: reply.redirect(target))

    def plainly_saved(self, kind: str, url: str) -> tuple[list[str], dict]:
        """What yt-dlp's own class saves when it extracts the page for the second time."""
        self.use_folder(f'plain {kind}')
        step = {'key': 'FFmpegEmbedSubtitle', 'already_have_subtitle': False}
        ydl = PlainYoutubeDL(self.options(postprocessors=[step], verbose=False, quiet=True,
                                         noprogress=True, no_warnings=True))
        ydl.extract_info(url, download=False)
        ydl.download([url])
        names = self.files()
        return names, {name: self.digest(name) for name in names}

    def digest(self, name: str) -> object:
        if name.endswith('.mp4'):
            return clips.packets(os.path.join(self.folder, name))
        return self.content(name)

    def test_the_result_is_that_of_a_second_extraction(self):
        pages = {'video': self.video_page, 'list': self.list_page, 'link': self.link_page,
                 'dash': self.serve_dash, 'hls': self.serve_hls}
        for kind, page in pages.items():
            with self.subTest(kind):
                url = page()
                self.use_folder(kind)
                saved = self.saved(url)
                names = self.files()
                self.assertEqual(os.path.dirname(saved.path), self.folder)
                self.assertIn(os.path.basename(saved.path), names)
                digests = {name: self.digest(name) for name in names}
                self.assertEqual((names, digests), self.plainly_saved(kind, url))

    def test_a_run_asks_for_its_page_once(self):
        self.saved(self.video_page())
        self.assertEqual(sorted(self.site.requests),
                         ['/en.vtt', '/movie.mp4', '/page.html', '/picture.jpg'])

    def test_a_page_of_several_videos_saves_all_and_reports_the_last(self):
        saved = self.saved(self.list_page())
        self.assertEqual(self.site.count('/page.html'), 1)
        self.assertEqual(len(saved.info['entries']), 3)
        self.assertEqual(self.files(), [f'A title ({n}) [page-{n}].mp4' for n in (1, 2, 3)])
        self.assertEqual(os.path.basename(saved.path), 'A title (3) [page-3].mp4')

    def test_an_address_that_was_not_looked_at_is_extracted_when_it_is_saved(self):
        looked_at, url = self.video_page(), self.serve_hls()
        ydl = yt_dlp.YoutubeDL(self.options())
        ydl.extract_info(looked_at, download=False)
        ydl.download([url])
        self.assertEqual(self.files(), ['master [master].mp4'])
        self.assertEqual(self.site.count('/page.html'), 1)

    def test_errors_keep_the_wrapping_of_yt_dlp(self):
        url = self.page('<video src="gone.mp4"></video>')
        failed = self.save(url)
        self.assertIsInstance(failed.error, yt_dlp.utils.DownloadError)
        self.assertEqual(str(failed.error),
                         'ERROR: unable to download video data: HTTP Error 404: Not Found')
        self.assertEqual(self.files(), [])

    def test_a_fragment_that_is_missing_fails_the_run(self):
        url = self.serve_dash()
        del self.site.contents['/seg-0-4.m4s']
        failed = self.save(url)
        self.assertEqual(str(failed.error), 'ERROR: HTTP Error 404: Not Found. Giving up after '
                                            '10 retries')
        self.assertEqual({os.path.splitext(name)[1] for name in self.files()}, {'.part', '.ytdl'})

    def test_error_texts_are_free_of_advice_for_the_command_line(self):
        missing = self.save(self.site.root + '/nowhere')
        self.assertEqual(str(missing.error), 'ERROR: [generic] nowhere: Unable to download '
                                             'webpage: HTTP Error 404: Not Found')
        closed = self.save('http://127.0.0.1:1/')
        self.assertEqual(str(closed.error),
                         'ERROR: [generic] 127.0.0: Unable to download webpage: Connection '
                         'refused')
        unknown = self.save(self.serve_hls(), format='nonsense')
        self.assertRegex(str(unknown.error), 'Requested format is not available$')
        nowhere = self.save('words without an address')
        self.assertEqual(str(nowhere.error), "ERROR: [generic] 'words without an address' is not "
                                             'a valid URL')
        local = self.save('file:///etc/passwd')
        self.assertRegex(str(local.error), 'disabled by default in yt-dlp for security reasons$')
        nothing = self.save(self.page('nothing to see'))
        self.assertEqual(str(nothing.error),
                         f'ERROR: Unsupported URL: {self.site.root}/page.html')


class MediaFunctions(EngineCase):

    def test_they_take_any_name_and_say_why_they_fail(self):
        missing = self.tools.run('ffprobe', ['file:Ы \udcff.mp4'])
        self.assertEqual((missing.code, missing.output), (1, ''))
        self.assertRegex(missing.log, 'file:Ы .+mp4: No such file or directory\n$')
        self.assertIsNone(self.tools.progress(1))


class Formats(EngineCase):

    def test_a_page_without_a_list_offers_its_single_item(self):
        media = self.serve('/movie.mp4', clips.movie())
        page = self.page('', head=f'<meta property="og:video" content="{media}">'
                                  '<meta property="og:title" content="T">')
        for url in (media, page):
            with self.subTest(url):
                info = self.probe(url)
                only, = info['formats']
                self.assertEqual((only['url'], only['ext']), (media, 'mp4'))
                # Both read as unknown, and neither as "none", by the engine's rules.
                self.assertEqual((only['vcodec'], only['acodec']), (None, None))
                self.assertTrue(only['format_id'])
                for selector in ('best', only['format_id']):
                    saved = self.saved(url, format=selector, embedsubtitles=False)
                    self.assertEqual(self.content(os.path.basename(saved.path)), clips.movie())

    def test_every_format_says_of_both_codecs_what_is_known(self):
        self.serve('/movie.mp4', clips.movie())
        url = self.page('<video src="movie.mp4"></video>')
        for each in (*self.probe(url)['formats'], *self.probe(self.serve_dash())['formats']):
            self.assertLessEqual({'vcodec', 'acodec'}, each.keys())

    def test_every_entry_of_a_list_has_formats(self):
        media = self.serve('/movie.mp4', clips.movie())
        feed = self.serve('/feed.rss', f'''<?xml version="1.0"?><rss version="2.0"><channel>
            <title>Feed</title>
            <item><title>First</title><link>{media}</link></item>
            <item><title>Second</title><link>{media}?2</link></item></channel></rss>''')
        entries = self.probe(feed)['entries']
        self.assertEqual([len(entry['formats']) for entry in entries], [1, 1])


if __name__ == '__main__':
    unittest.main()
