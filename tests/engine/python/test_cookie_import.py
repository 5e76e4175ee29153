# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Cookies out of browsers' own databases and out of files, as the import answers them."""

import contextlib
import json
import os
import pathlib
import sqlite3
import tempfile
import time
import unittest
from typing import Any
from unittest import mock

from veltro_ytdlp import cookie_import
from yt_dlp.aes import aes_cbc_encrypt_bytes
from yt_dlp.cookies import LinuxChromeCookieDecryptor, YoutubeDLCookieJar

_LATER = 4_000_000_000
_PAST = 1_000_000_000
_FIREFOX = ('CREATE TABLE moz_cookies (id INTEGER PRIMARY KEY, originAttributes TEXT DEFAULT "", '
            'name TEXT, value TEXT, host TEXT, path TEXT, expiry INTEGER, isSecure INTEGER)')
_CHROMIUM = ('CREATE TABLE cookies (host_key TEXT, top_frame_site_key TEXT DEFAULT "", name TEXT, '
             'value TEXT, encrypted_value BLOB, path TEXT, expires_utc INTEGER, '
             'is_secure INTEGER)')


def firefox_profile(folder: pathlib.Path, *cookies: tuple, version: int = 12) -> sqlite3.Connection:
    """A profile with cookies (host, name, value[, expiry[, originAttributes]])."""
    folder.mkdir(parents=True, exist_ok=True)
    connection = sqlite3.connect(folder / 'cookies.sqlite')
    connection.execute('PRAGMA journal_mode = WAL')
    connection.execute(_FIREFOX)
    connection.execute(f'PRAGMA user_version = {version}')
    for host, name, value, *others in cookies:
        expiry, attributes = (*others, *(_LATER, '')[len(others):])
        connection.execute(
            'INSERT INTO moz_cookies (host, name, value, path, expiry, isSecure, originAttributes)'
            ' VALUES (?, ?, ?, "/", ?, 1, ?)', (host, name, value, expiry, attributes))
    connection.commit()
    return connection


def chromium_profile(folder: pathlib.Path, *cookies: tuple[str, str, Any]) -> None:
    """A profile with cookies (host, name, value); bytes are a value that was locked elsewhere."""
    folder.mkdir(parents=True, exist_ok=True)
    key = LinuxChromeCookieDecryptor.derive_key(b'peanuts')
    with contextlib.closing(sqlite3.connect(folder / 'Cookies')) as connection:
        connection.execute(_CHROMIUM)
        connection.execute('CREATE TABLE meta (key TEXT, value TEXT)')
        connection.execute('INSERT INTO meta VALUES ("version", "20")')
        for host, name, value in cookies:
            locked = value if isinstance(value, bytes) else b'v10' + aes_cbc_encrypt_bytes(
                value.encode(), key, b' ' * 16)
            connection.execute(
                'INSERT INTO cookies (host_key, name, value, encrypted_value, path, expires_utc, '
                'is_secure) VALUES (?, ?, "", ?, "/", ?, 1)',
                (host, name, locked, (_LATER + 11_644_473_600) * 1_000_000))
        connection.commit()


class CookieImport(unittest.TestCase):

    def setUp(self) -> None:
        self.home = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.enterContext(mock.patch.dict(os.environ, {
            'HOME': str(self.home), 'XDG_CONFIG_HOME': str(self.home / '.config')}))
        self.firefox = self.home / '.mozilla/firefox/abcd.default'
        self.chromium = self.home / '.config/chromium/Default'

    def cookies(self, answer: str, host: str) -> dict[str, str]:
        """The names and values for a host, as yt-dlp reads the text."""
        for site in json.loads(answer)['sites']:
            if site['host'] == host:
                path = self.home / 'read.txt'
                path.write_text(site['text'], encoding='utf-8')
                jar = YoutubeDLCookieJar(str(path))
                jar.load()
                self.assertEqual(len(jar), site['count'])
                return {cookie.name: cookie.value for cookie in jar}
        return {}

    def read_file(self, text: str | bytes, *hosts: str) -> str:
        path = self.home / 'cookies.txt'
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return cookie_import.from_file(str(path), list(hosts))

    def assert_fails(self, kind: str, answer: str) -> None:
        self.assertEqual(json.loads(answer), {'failure': kind})

    def test_browsers_are_listed_with_the_names_that_the_user_gave(self):
        firefox_profile(self.firefox).close()
        firefox_profile(self.home / '.mozilla/firefox/other').close()
        (self.home / '.mozilla/firefox/profiles.ini').write_text(
            '[Profile0]\nName=Work & play\nIsRelative=1\nPath=abcd.default\n[General]\nVersion=2\n')
        firefox_profile(self.home / '.librewolf/x.default').close()
        chromium_profile(self.chromium)
        chromium_profile(self.home / '.config/google-chrome/Profile 1/Network')
        chromium_profile(self.home / '.config/opera')
        (self.home / '.config/google-chrome/Local State').write_text(json.dumps(
            {'profile': {'info_cache': {'Profile 1': {'name': 'Ann'}}}}))
        os.utime(self.firefox / 'cookies.sqlite', (_PAST, _PAST))
        found = json.loads(cookie_import.browsers())
        self.assertEqual([(each['browser'], each['profile']) for each in found], [
            ('Chrome', 'Ann'), ('Chromium', 'Default'), ('Firefox', 'other'),
            ('Firefox', 'Work & play'), ('LibreWolf', 'x.default'), ('Opera', 'Default')])
        for each in found:
            self.assert_fails('none', cookie_import.from_browser(
                each['reader'], each['folder'], ['example.com']))

    def test_a_home_without_browsers_and_broken_lists_of_profiles_do_no_harm(self):
        self.assertEqual(json.loads(cookie_import.browsers()), [])
        firefox_profile(self.firefox).close()
        (self.home / '.mozilla/firefox/profiles.ini').write_bytes(b'\xff\xfe no [ list')
        chromium_profile(self.chromium)
        (self.home / '.config/chromium/Local State').write_text('[1, 2]')
        self.assertEqual([each['profile'] for each in json.loads(cookie_import.browsers())],
                         ['Default', 'abcd.default'])

    def test_only_what_the_host_would_receive_is_taken(self):
        everything = (('example.com', 'own', '1'), ('.example.com', 'wide', '2'),
                      ('www.example.com', 'www', '3'), ('.www.example.com', 'widewww', '4'),
                      ('.com', 'top', '5'), ('example.org', 'other', '6'),
                      ('notexample.com', 'other', '7'), ('.sub.example.com', 'below', '8'))
        own = {'own': '1', 'wide': '2', 'top': '5'}
        www = {'www': '3', 'widewww': '4', 'wide': '2', 'top': '5'}
        firefox_profile(self.firefox, *everything).close()
        chromium_profile(self.chromium, *everything)
        lines = ''.join(f'{domain}\t{str(domain.startswith(".")).upper()}\t/\tTRUE\t0\t{name}\t'
                        f'{value}\n' for domain, name, value in everything)
        hosts = ['example.com', 'www.example.com']
        for answer in (cookie_import.from_browser('firefox', str(self.firefox), hosts),
                       cookie_import.from_browser('chromium', str(self.chromium), hosts),
                       self.read_file(lines, *hosts)):
            self.assertEqual(self.cookies(answer, 'example.com'), own)
            self.assertEqual(self.cookies(answer, 'www.example.com'), www)

    def test_what_a_running_browser_wrote_last_is_taken(self):
        connection = firefox_profile(self.firefox, ('example.com', 'old', '1'))
        connection.execute('PRAGMA wal_checkpoint')
        connection.execute('UPDATE moz_cookies SET name = "new"')
        connection.commit()
        answer = cookie_import.from_browser('firefox', str(self.firefox), ['example.com'])
        self.assertEqual(self.cookies(answer, 'example.com'), {'new': '1'})
        connection.close()

    def test_what_a_site_set_as_a_guest_does_not_hide_its_own(self):
        firefox_profile(
            self.firefox, ('example.com', 'id', 'own'),
            ('example.com', 'id', 'guest', _LATER, '^partitionKey=%28https%2Cother.org%29'),
            ('example.com', 'id', 'private', _LATER, '^privateBrowsingId=1'),
            ('example.com', 'id', 'contained', _LATER, '^userContextId=2'),
            ('only.example', 'id', 'contained', _LATER, '^userContextId=2')).close()
        answer = cookie_import.from_browser('firefox', str(self.firefox), ['example.com'])
        self.assertEqual(self.cookies(answer, 'example.com'), {'id': 'own'})
        answer = cookie_import.from_browser('firefox', str(self.firefox), ['only.example'])
        self.assertEqual(self.cookies(answer, 'only.example'), {'id': 'contained'})

    def test_what_has_expired_is_left_out_whatever_counts_the_time(self):
        now = int(time.time())
        for version, factor in ((12, 1), (16, 1000)):
            folder = self.home / f'profile{version}'
            firefox_profile(folder, ('example.com', 'stays', '1', (now + 1000) * factor),
                            ('example.com', 'gone', '2', (now - 1000) * factor),
                            version=version).close()
            answer = cookie_import.from_browser('firefox', str(folder), ['example.com'])
            self.assertEqual(self.cookies(answer, 'example.com'), {'stays': '1'})
        answer = self.read_file(f'example.com\tFALSE\t/\tFALSE\t{now + 1000}\tstays\t1\n'
                                f'example.com\tFALSE\t/\tFALSE\t{now - 1000}.5\tgone\t2\n'
                                'example.com\tFALSE\t/\tFALSE\t\tsession\t3\n'
                                'example.com\tFALSE\t/\tFALSE\t-1\tother\t4\n', 'example.com')
        self.assertEqual(self.cookies(answer, 'example.com'),
                         {'stays': '1', 'session': '3', 'other': '4'})

    def test_cookies_that_the_keyring_locks_are_told_apart_from_none(self):
        chromium_profile(self.chromium, ('example.com', 'id', b'v99 locked elsewhere'),
                         ('example.org', 'id', 'open'))
        folder = str(self.chromium)
        self.assert_fails('locked', cookie_import.from_browser('chromium', folder, ['example.com']))
        self.assert_fails('none', cookie_import.from_browser('chromium', folder, ['example.net']))
        answer = cookie_import.from_browser('chromium', folder, ['example.org'])
        self.assertEqual(self.cookies(answer, 'example.org'), {'id': 'open'})

    def test_a_database_that_is_none_or_is_gone_says_so(self):
        self.firefox.mkdir(parents=True)
        self.assert_fails('missing', cookie_import.from_browser(
            'firefox', str(self.firefox), ['example.com']))
        for content in (b'', b'no database at all', b'SQLite format 3\0' + bytes(5000)):
            (self.firefox / 'cookies.sqlite').write_bytes(content)
            self.assert_fails('unreadable', cookie_import.from_browser(
                'firefox', str(self.firefox), ['example.com']))

    def test_the_file_is_read_as_people_have_it(self):
        answer = self.read_file(
            '\ufeff# Netscape HTTP Cookie File\r\n\r\n'
            '#HttpOnly_.Example.com\tTRUE\t/\tTRUE\t0\thidden\t1\r\n'
            'example.com\tTRUE\t/\tFALSE\t0\tdotless\t2\r\n'
            'example.com\tFALSE\t/path\tFALSE\t0\tempty\t\r\n'
            'example.com\tFALSE\t/path\tFALSE\t0\tcut\r\n'
            'example.com FALSE / FALSE 0 blanks 3\r\n'
            'example.com\tPERHAPS\t/\tFALSE\t0\tflag\t4\r\n'
            'example.com\tFALSE\t/\tFALSE\tsoon\ttime\t5\r\n'
            'example.com\tFALSE\t/\tFALSE\t0\tcontrol\ta\x01b\r\n', 'example.com')
        self.assertEqual(self.cookies(answer, 'example.com'),
                         {'hidden': '1', 'dotless': '2', 'empty': '', 'cut': ''})

    def test_an_address_in_numbers_has_no_domain_above_it(self):
        lines = '.0.0.1\tTRUE\t/\tFALSE\t0\tno\t1\n127.0.0.1\tFALSE\t/\tFALSE\t0\tyes\t2\n'
        answer = self.read_file(lines, '127.0.0.1')
        self.assertEqual(self.cookies(answer, '127.0.0.1'), {'yes': '2'})

    def test_files_of_other_kinds_say_what_is_wrong(self):
        garbage = os.urandom(300_000)
        for content in ('', '# Netscape HTTP Cookie File\n', '[{"domain": "example.com"}]',
                        garbage, b'\0' * 10_000):
            self.assert_fails('notCookies', self.read_file(content, 'example.com'))
        self.assert_fails('none', self.read_file('other.org\tFALSE\t/\tFALSE\t0\ta\tb\n',
                                                 'example.com'))
        self.assert_fails('missing', cookie_import.from_file(str(self.home / 'no'), ['a.example']))
        self.assert_fails('unreadable', cookie_import.from_file(str(self.home), ['a.example']))
        pipe = self.home / 'pipe'
        os.mkfifo(pipe)
        self.assert_fails('unreadable', cookie_import.from_file(str(pipe), ['a.example']))
        large = self.home / 'large'
        with open(large, 'wb') as file:
            file.truncate(1 << 33)
        self.assert_fails('tooLarge', cookie_import.from_file(str(large), ['a.example']))

    def test_a_hundred_thousand_lines_among_garbage_are_no_matter(self):
        lines = [f'site{number}.example\tFALSE\t/\tFALSE\t0\tn\tv\n' for number in range(100_000)]
        lines[50_000:50_000] = ['garbage \ufffd\t\t\n'] * 1_000
        answer = self.read_file(''.join(lines), 'site77777.example')
        self.assertEqual(self.cookies(answer, 'site77777.example'), {'n': 'v'})


if __name__ == '__main__':
    unittest.main()
