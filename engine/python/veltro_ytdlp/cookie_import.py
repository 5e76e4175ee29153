# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The cookies of a host, out of an installed browser or a cookies.txt file.

Each function answers with JSON: {"failure": KIND} or what it was asked for. The kinds are missing,
unreadable, locked (the desktop's keyring keeps the key), tooLarge, notCookies and none.
"""

import configparser
import contextlib
import glob
import http.cookiejar
import io
import json
import os
import shutil
import stat
import tempfile
import time
from collections.abc import Iterable, Iterator
from typing import Any

_FIREFOX_FILE = 'cookies.sqlite'
_CHROMIUM_FILE = 'Cookies'
_LARGEST_FILE = 64 << 20  # bytes; a hundred thousand cookies take a tenth of it
_HTTP_ONLY = '#HttpOnly_'
_FIELDS = 7

# Browsers that keep cookies as Firefox does, and where; it knows its own places itself.
_FIREFOX_FAMILY = (
    ('LibreWolf', ('~/.librewolf', '~/.var/app/io.gitlab.librewolf-community/.librewolf')),
    ('Waterfox', ('~/.waterfox', '~/.var/app/net.waterfox.waterfox/.waterfox')),
    ('Floorp', ('~/.floorp', '~/.var/app/one.ablaze.floorp/.floorp')),
    ('Zen', ('~/.zen', '~/.var/app/app.zen_browser.zen/.zen')),
)
# The same for Chromium, by the names under which yt-dlp knows them and their keys.
_CHROMIUM_FAMILY = (
    ('Brave', 'brave', ('~/.var/app/com.brave.Browser/config/BraveSoftware/Brave-Browser',
                        '~/snap/brave/current/.config/BraveSoftware/Brave-Browser')),
    ('Chrome', 'chrome', ('~/.var/app/com.google.Chrome/config/google-chrome',)),
    ('Chromium', 'chromium', ('~/.var/app/org.chromium.Chromium/config/chromium',
                              '~/snap/chromium/common/chromium')),
    ('Edge', 'edge', ('~/.var/app/com.microsoft.Edge/config/microsoft-edge',)),
    ('Opera', 'opera', ('~/.var/app/com.opera.Opera/config/opera',)),
    ('Vivaldi', 'vivaldi', ('~/.var/app/com.vivaldi.Vivaldi/config/vivaldi',)),
    ('Whale', 'whale', ()),
)


class _Failure(Exception):
    """Ends an import; the argument is its kind."""


class _Silence:
    """The logger of the readers. What they warn of shows in what they yield."""

    def debug(self, *_: Any, **__: Any) -> None: ...
    info = warning = error = debug


def browsers() -> str:
    """The profiles that have cookies, by browser, the one that was used last first."""
    found = [*_firefox_profiles(), *_chromium_profiles()]
    found.sort(key=lambda each: (each['browser'], -each.pop('used')))
    return json.dumps(found)


def from_browser(reader: str, folder: str, hosts: list[str]) -> str:
    """The cookies of the hosts in the profile that the folder holds."""
    return _answer(lambda domains: _browser_cookies(reader, folder, domains), hosts)


def from_file(path: str, hosts: list[str]) -> str:
    """The cookies of the hosts in a Netscape cookies.txt."""
    return _answer(lambda domains: _file_cookies(path, domains), hosts)


def _answer(read: Any, hosts: list[str]) -> str:
    domains = {host: _domains(host) for host in hosts}
    try:
        cookies = read(set().union(*domains.values()))
        sites = [site for site in (_site(host, domains[host], cookies) for host in hosts) if site]
        return json.dumps({'sites': sites} if sites else {'failure': 'none'})
    except _Failure as failure:
        return json.dumps({'failure': str(failure)})


def _domains(host: str) -> set[str]:
    """The domains of the cookies that a host receives: its own, and those above it."""
    host = host.lower()
    domains = {host}
    if ':' in host or host.rpartition('.')[2].isdigit():
        return domains  # an address has nothing above it
    labels = host.split('.')
    return domains | {'.' + '.'.join(labels[first:]) for first in range(len(labels))}


def _site(host: str, domains: set[str], cookies: Iterable[http.cookiejar.Cookie]) -> Any:
    """The cookies that one host receives, as the text of a cookie file."""
    from yt_dlp.cookies import YoutubeDLCookieJar

    jar = YoutubeDLCookieJar()
    for cookie in cookies:
        if cookie.domain.lower() in domains:
            jar.set_cookie(cookie)
    if not len(jar):
        return None
    text = io.StringIO()
    jar.save(text)
    return {'host': host, 'count': len(jar), 'text': text.getvalue()}


def _usable(cookies: Iterable[http.cookiejar.Cookie]) -> list[http.cookiejar.Cookie]:
    """Those that have not expired and that fit into a line."""
    now = time.time()
    return [cookie for cookie in cookies
            if not cookie.is_expired(now)
            and not any(ord(letter) < 32 or letter in '\x7f\ufffd'
                        for text in (cookie.domain, cookie.path, cookie.name, cookie.value or '')
                        for letter in text)]


# Browsers.

def _firefox_profiles() -> Iterator[dict[str, Any]]:
    from yt_dlp.cookies import _firefox_browser_dirs

    for browser, roots in (('Firefox', tuple(_firefox_browser_dirs())), *_FIREFOX_FAMILY):
        for root in map(os.path.expanduser, roots):
            names = _firefox_names(root)
            for pattern in ('', '*', 'Profiles/*'):
                for file in glob.glob(os.path.join(glob.escape(root), pattern, _FIREFOX_FILE)):
                    folder = os.path.dirname(file)
                    name = names.get(os.path.realpath(folder)) or os.path.basename(folder)
                    yield _profile(browser, name, 'firefox', file)


def _firefox_names(root: str) -> dict[str, str]:
    """What the user calls the profiles, by their folders."""
    parser = configparser.RawConfigParser(strict=False)
    try:
        parser.read(os.path.join(root, 'profiles.ini'), encoding='utf-8')
    except (configparser.Error, OSError, ValueError):
        return {}
    return {os.path.realpath(os.path.join(root, parser[section]['Path'])): parser[section]['Name']
            for section in parser.sections() if {'path', 'name'} <= set(parser[section])}


def _chromium_profiles() -> Iterator[dict[str, Any]]:
    from yt_dlp.cookies import _get_chromium_based_browser_settings

    for browser, reader, others in _CHROMIUM_FAMILY:
        own = _get_chromium_based_browser_settings(reader)['browser_dir']
        for root in (own, *map(os.path.expanduser, others)):
            names = _chromium_names(root)
            for pattern in ('', 'Network', '*', '*/Network'):
                for file in glob.glob(os.path.join(glob.escape(root), pattern, _CHROMIUM_FILE)):
                    key = os.path.relpath(os.path.dirname(file), root).split(os.sep)[0]
                    yield _profile(browser, names.get(key) or _plain_name(key), reader, file)


def _plain_name(key: str) -> str:
    return 'Default' if key in ('.', 'Network') else key


def _chromium_names(root: str) -> dict[str, str]:
    try:
        with open(os.path.join(root, 'Local State'), encoding='utf-8') as file:
            profiles = json.load(file)['profile']['info_cache']
        return {key: profile['name'] for key, profile in profiles.items()
                if isinstance(profile['name'], str)}
    except (OSError, ValueError, KeyError, TypeError, AttributeError):
        return {}


def _profile(browser: str, name: str, reader: str, file: str) -> dict[str, Any]:
    used = 0.0
    with contextlib.suppress(OSError):
        used = os.stat(file).st_mtime
    return {'browser': browser, 'profile': name, 'reader': reader,
            'folder': os.path.dirname(file), 'used': used}


def _browser_cookies(reader: str, folder: str,
                     domains: set[str]) -> list[http.cookiejar.Cookie]:
    import sqlite3

    file = _FIREFOX_FILE if reader == 'firefox' else _CHROMIUM_FILE
    try:
        with tempfile.TemporaryDirectory(prefix='veltro-') as scratch:
            _copy_database(folder, file, scratch)
            kept = _keep_only(os.path.join(scratch, file), reader, domains)
            cookies = _extract(reader, scratch)
    except FileNotFoundError:
        raise _Failure('missing') from None
    except (sqlite3.Error, OSError, ValueError, TypeError, AttributeError):
        # The readers take the tables' shape for granted.
        raise _Failure('unreadable') from None
    if kept and not cookies:
        raise _Failure('locked')
    return _usable(cookies)


def _copy_database(folder: str, name: str, scratch: str) -> None:
    """A running browser holds its database; what it wrote last is still in the log beside it."""
    shutil.copyfile(os.path.join(folder, name), os.path.join(scratch, name))
    for suffix in ('-wal', '-journal'):
        with contextlib.suppress(FileNotFoundError):
            shutil.copyfile(os.path.join(folder, name + suffix),
                            os.path.join(scratch, name + suffix))


def _keep_only(path: str, reader: str, domains: set[str]) -> int:
    """Drop from the copy what is of no concern, and fold the log into it; count the rest."""
    import sqlite3

    table, column = ('moz_cookies', 'host') if reader == 'firefox' else ('cookies', 'host_key')
    connection = sqlite3.connect(path)
    with contextlib.closing(connection):
        marks = ', '.join('?' * len(domains))
        connection.execute(f'DELETE FROM {table} WHERE {column} NOT IN ({marks})', [*domains])
        columns = {row[1] for row in connection.execute(f'PRAGMA table_info({table})')}
        if 'originAttributes' in columns:
            # What the site had set as a guest of other sites would hide its own.
            connection.execute(f"DELETE FROM {table} WHERE originAttributes LIKE '%partitionKey=%' "
                               "OR originAttributes LIKE '%privateBrowsingId=%'")
        if 'top_frame_site_key' in columns:
            connection.execute(f"DELETE FROM {table} WHERE top_frame_site_key <> ''")
        connection.commit()
        connection.execute('PRAGMA journal_mode = DELETE')
        return connection.execute(f'SELECT count(*) FROM {table}').fetchone()[0]


def _extract(reader: str, folder: str) -> list[http.cookiejar.Cookie]:
    from yt_dlp.cookies import extract_cookies_from_browser

    if reader == 'firefox':
        # A container is asked only when there is nothing outside of them.
        cookies = []
        for container in ('none', None):
            cookies = cookies or list(extract_cookies_from_browser(
                reader, folder, _Silence(), container=container))
        for cookie in cookies:
            cookie.expires = int(cookie.expires) if cookie.expires else None
        return cookies
    cookies = list(extract_cookies_from_browser(reader, folder, _Silence()))
    for cookie in cookies:
        # Microseconds since 1601; none for a cookie of the session.
        cookie.expires = cookie.expires and int(cookie.expires / 1_000_000 - 11_644_473_600)
    return cookies


# Files.

def _file_cookies(path: str, domains: set[str]) -> list[http.cookiejar.Cookie]:
    try:
        status = os.stat(path)
        if not stat.S_ISREG(status.st_mode):
            raise _Failure('unreadable')
        if status.st_size > _LARGEST_FILE:
            raise _Failure('tooLarge')
        with open(path, encoding='utf-8-sig', errors='replace') as file:
            cookies = [cookie for line in file if (cookie := _parse(line, domains)) is not None]
    except FileNotFoundError:
        raise _Failure('missing') from None
    except OSError:
        raise _Failure('unreadable') from None
    if not cookies:
        raise _Failure('notCookies')
    return _usable(cookie for cookie in cookies if cookie)


def _parse(line: str, domains: set[str]) -> http.cookiejar.Cookie | bool | None:
    """The line's cookie; False for one of other hosts, None when the line holds none."""
    line = line.rstrip('\r\n').removeprefix(_HTTP_ONLY)
    fields = line.split('\t')
    if line.startswith('#') or len(fields) not in (_FIELDS - 1, _FIELDS):
        return None
    domain, subdomains, path, secure, expires, name, value = (*fields, '')[:_FIELDS]
    flags = {subdomains.upper(), secure.upper()}
    seconds = expires.partition('.')[0]
    if not domain or not flags <= {'TRUE', 'FALSE'} or not seconds.lstrip('-').isdigit() \
            and seconds:
        return None
    # Some write the domain of a cookie for all hosts below it without its dot.
    domain = domain.lower()
    if subdomains.upper() == 'TRUE' and not domain.startswith('.'):
        domain = '.' + domain
    if domain not in domains:
        return False
    ends = int(seconds or 0)
    return http.cookiejar.Cookie(
        version=0, name=name, value=value, port=None, port_specified=False, domain=domain,
        domain_specified=True, domain_initial_dot=domain.startswith('.'), path=path,
        path_specified=bool(path), secure=secure.upper() == 'TRUE',
        expires=ends if ends > 0 else None, discard=False, comment=None, comment_url=None, rest={})
