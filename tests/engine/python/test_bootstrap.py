# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The adjusted yt-dlp as the engine finds it after a bootstrap, one interpreter a case."""

import os
import shutil
import subprocess
import sys
import tempfile
import textwrap
import unittest

import clips
import python_init
from engine_case import EngineCase
from testsite import reply

_HERE = os.path.dirname(os.path.abspath(__file__))


def child(script: str, *arguments: str, **others: object) -> subprocess.CompletedProcess:
    """Run a script in an interpreter of its own, with this one's search path."""
    return subprocess.run([sys.executable, '-c', textwrap.dedent(script), *arguments], text=True,
                          stdin=subprocess.DEVNULL, timeout=60, capture_output=True, cwd=_HERE,
                          **others)


class Bootstrap(unittest.TestCase):

    def assert_silent(self, script: str, *arguments: str) -> None:
        done = child(script, *arguments)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, '', ''))

    def test_it_can_be_repeated(self):
        self.assert_silent('''
            import python_init, yt_dlp
            def shape():
                fd = yt_dlp.downloader.common.FileDownloader
                return (yt_dlp.YoutubeDL, fd._hook_progress, yt_dlp.utils.Popen.run.__func__,
                        yt_dlp.utils.Popen.__new__, yt_dlp.utils.Popen.__init__)
            python_init.apply_after_import()
            once = shape()
            python_init.apply_after_import()
            assert shape() == once
        ''')

    def test_a_name_that_moved_is_named_and_the_next_try_may_work(self):
        self.assert_silent('''
            import python_init, sys, yt_dlp
            base = sys.modules['yt_dlp.YoutubeDL'].YoutubeDL
            kept, base.existing_file = base.existing_file, None
            del base.existing_file
            fragment = yt_dlp.downloader.fragment.FragmentFD
            append, fragment._append_fragment = fragment._append_fragment, lambda self: None
            for _ in range(2):
                try:
                    python_init.apply_after_import()
                except RuntimeError as error:
                    assert 'YoutubeDL.existing_file' in str(error), error
                    assert 'FragmentFD._append_fragment' in str(error), error
                    assert str(error).count(';') == 1, error
                else:
                    raise AssertionError('nothing noticed')
            base.existing_file, fragment._append_fragment = kept, append
            python_init.apply_after_import()
            assert yt_dlp.YoutubeDL is not base
        ''')

    def test_it_loads_no_extractors_and_starts_nothing(self):
        self.assert_silent('''
            import sys
            events = []
            sys.addaudithook(lambda name, _: events.append(name))
            import python_init, yt_dlp
            python_init.apply_after_import()
            assert 'yt_dlp.extractor.lazy_extractors' not in sys.modules
            assert 'yt_dlp.extractor.generic' not in sys.modules
            started = {'subprocess.Popen', 'os.fork', 'os.posix_spawn', 'os.exec', 'socket.connect'}
            assert not started & set(events), started & set(events)
        ''')

    def test_plugins_and_settings_of_the_user_stay_out(self):
        with tempfile.TemporaryDirectory() as home:
            folder = os.path.join(home, 'yt-dlp', 'plugins', 'mine', 'yt_dlp_plugins', 'extractor')
            os.makedirs(folder)
            with open(os.path.join(folder, 'mine.py'), 'w') as file:
                file.write('raise SystemExit("a plugin was loaded")')
            with open(os.path.join(home, 'yt-dlp', 'config'), 'w') as file:
                file.write('--simulate\n')
            done = child('''
                import python_init, yt_dlp
                python_init.apply_after_import()
                assert 'simulate' not in yt_dlp.YoutubeDL({'verbose': True}).params
            ''', env={**os.environ, 'XDG_CONFIG_HOME': home})
            self.assertEqual((done.returncode, done.stderr), (0, ''))

    def test_the_bundled_javascript_runtime_finds_its_modules_beside_itself(self):
        with tempfile.TemporaryDirectory() as bundle:
            resources = os.path.join(bundle, 'Contents', 'Resources')
            shutil.copytree(os.path.dirname(python_init.__file__), resources)
            for name in ('python_init.py', 'veltro_ytdlp'):
                os.symlink(os.path.join(resources, name), os.path.join(bundle, name))
            os.makedirs(os.path.join(resources, 'deno', 'cache'))
            runtime = os.path.join(resources, 'deno', 'deno')
            with open(runtime, 'w') as file:
                file.write('#!/bin/sh\necho "deno 2.9.6 $DENO_DIR"\n')
            os.chmod(runtime, 0o700)
            done = child('''
                import os, python_init, yt_dlp
                python_init.apply_after_import()
                ydl = yt_dlp.YoutubeDL({'verbose': True})
                found = ydl._js_runtimes['deno'].info
                print(found.path, found.version, os.environ.get('DENO_DIR'))
                print(yt_dlp.utils.Popen.run([found.path], text=True, stdout=-1)[0])
            ''', env={**os.environ, 'PYTHONPATH': f'{bundle}:{os.environ["PYTHONPATH"]}'})
            self.assertEqual(done.stderr, '')
            path, version, environment, deno, number, modules = done.stdout.split()
            self.assertEqual((path, version), (runtime, '2.9.6'))
            self.assertEqual(environment, 'None')
            self.assertEqual(modules, os.path.join(resources, 'deno', 'cache'))

    def test_without_media_functions_a_step_fails_with_a_sentence(self):
        done = child('''
            import python_init, yt_dlp
            from yt_dlp.postprocessor.ffmpeg import FFmpegPostProcessor
            python_init.apply_after_import()
            try:
                FFmpegPostProcessor().run_ffmpeg('/dev/null', '/dev/null', [])
            except yt_dlp.utils.PostProcessingError as error:
                assert str(error) == 'The media functions of the program are missing.', error
            else:
                raise AssertionError('nothing noticed')
        ''')
        self.assertEqual((done.returncode, done.stderr), (0, ''))


class Runs(EngineCase):

    def run_alone(self, before: str, url: str, **others: object) -> subprocess.CompletedProcess:
        """A run in an interpreter of its own, without any tool to start."""
        return child(before + textwrap.dedent('''
            import os, sys
            import python_init, yt_dlp
            python_init.apply_after_import()
            url, folder = sys.argv[1:]
            ydl = yt_dlp.YoutubeDL({
                'outtmpl': folder + '/%(title)s [%(id)s].%(ext)s',
                'paths': {'home': folder, 'temp': folder}, 'verbose': True, 'overwrites': True,
                'quiet': False, 'no_warnings': False, 'ffmpeg_location': '__veltro_ffmpeg__'})
            ydl.sanitize_info(ydl.extract_info(url, download=False))
            ydl.download([url])
            os._exit(0)
        '''), url, self.folder, **others)

    def test_a_run_starts_no_process_and_prints_single_tagged_lines(self):
        """An exit code of 3 names the program that was started."""
        done = self.run_alone(textwrap.dedent('''
            import os, sys
            def watch(name, arguments):
                if name in ('subprocess.Popen', 'os.fork', 'os.posix_spawn', 'os.exec'):
                    sys.stderr.write(repr(arguments))
                    sys.stderr.flush()
                    os._exit(3)
            sys.addaudithook(watch)
        '''), self.video_page('', ''))
        self.assertEqual((done.returncode, done.stdout), (0, ''), done.stderr)
        for line in done.stderr.splitlines():
            self.assertRegex(line, r'^\[veltro\] WARNING: ')
        self.assertEqual(self.files(), ['A title (1) [page-1].mp4'])

    def test_closed_outputs_do_not_end_a_run(self):
        done = self.run_alone('import os\nos.close(1)\nos.close(2)\n', self.video_page('', ''))
        self.assertEqual(done.returncode, 0)
        self.assertEqual(self.files(), ['A title (1) [page-1].mp4'])

    def test_a_cookie_file_is_read_and_never_written(self):
        def page(request):
            asked.append(request.headers.get('Cookie'))
            return reply.video_page('T', 'movie.mp4',
                                    headers={'Set-Cookie': 'new=1; Max-Age=9999'})

        asked = []
        self.serve('/movie.mp4', clips.movie())
        url = self.serve('/page.html', page)
        path = os.path.join(self.outer, 'cookies.txt')
        with open(path, 'w') as file:
            file.write('# Netscape HTTP Cookie File\n127.0.0.1\tFALSE\t/\tFALSE\t0\tkey\tvalue\n')
        before = os.stat(path)
        self.saved(url, cookiefile=path)
        self.assertEqual(asked, ['key=value'])
        after = os.stat(path)
        self.assertEqual((after.st_mtime_ns, after.st_ino, after.st_size),
                         (before.st_mtime_ns, before.st_ino, before.st_size))

    def test_a_file_that_holds_no_cookies_is_an_error_that_says_so(self):
        contents = {'a page': b'<html><body>sign in</body></html>\n' * 100, 'nothing': b'',
                    'data': bytes(range(256)) * 50, 'json': b'[{"name": "key"}]',
                    'words': b'one two\nthree\n'}
        url = self.video_page('', '')
        for name, content in contents.items():
            with self.subTest(name):
                path = os.path.join(self.outer, 'cookies.txt')
                with open(path, 'wb') as file:
                    file.write(content)
                self.assertEqual(
                    str(self.save(url, cookiefile=path).error),
                    'ERROR: The cookie file is not in the Netscape cookies.txt format.')
        self.assertEqual(self.site.requests, [])


if __name__ == '__main__':
    unittest.main()
