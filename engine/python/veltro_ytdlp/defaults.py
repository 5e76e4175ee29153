# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What every YoutubeDL of the program is given beside the options that the engine sets."""

import os
from typing import Any

from . import bundle, log

# Seconds without a byte after which a connection counts as dead.
SOCKET_TIMEOUT_SECONDS = 20
# The library's own defaults are 0 tries and missing fragments passed over in silence.
RETRIES = 10

_EXTENSION_FIELD = '.%(ext)s'


def complete(options: dict[str, Any] | None) -> dict[str, Any]:
    """A copy of the engine's options with the program's defaults; the engine's own values win."""
    options = dict(options or {})
    fallbacks = {
        'allow_playlist_files': False,  # a list's own picture would lie beside its videos
        'cachedir': _cache_folder(),
        'color': 'no_color',
        'fragment_retries': RETRIES,
        'js_runtimes': _javascript_runtimes(),
        'logger': log.Log(warnings=not options.get('no_warnings')),
        'noprogress': True,
        'retries': RETRIES,
        'skip_unavailable_fragments': False,
        'socket_timeout': SOCKET_TIMEOUT_SECONDS,
    }
    for key, value in fallbacks.items():
        options.setdefault(key, value)
    _complete_template(options)
    _embed_subtitles(options)
    return options


def downloads_folder(options: dict[str, Any]) -> str | None:
    """The folder that nothing may leave, or None where nothing is saved (a probe)."""
    paths = options.get('paths')
    home = paths.get('home') if isinstance(paths, dict) else None
    if not home or options.get('skip_download'):
        return None
    return home.rstrip('/') or '/'


def _complete_template(options: dict[str, Any]) -> None:
    """Keep the folder in the template literal, and let every name end in its file's type."""
    folder, template = downloads_folder(options), options.get('outtmpl')
    if folder is None or not isinstance(template, str):
        return
    if not template.endswith(_EXTENSION_FIELD):
        template += _EXTENSION_FIELD
    prefix = folder.rstrip('/') + '/'
    if template.startswith(prefix):
        template = prefix.replace('%', '%%') + template[len(prefix):].lstrip('/')
    options['outtmpl'] = template


def _embed_subtitles(options: dict[str, Any]) -> None:
    """embedsubtitles is known to yt-dlp's command line only; here it gets its meaning.

    The step stands after the others, so that it sees the file that they leave.
    """
    if not options.get('embedsubtitles'):
        return
    step = {'key': 'FFmpegEmbedSubtitle', 'already_have_subtitle': False}
    options['postprocessors'] = [*options.get('postprocessors', ()), step]


def _javascript_runtimes() -> dict[str, dict[str, str]]:
    """The bundled runtime where there is one, else whatever PATH has; asked only when needed."""
    bundled = bundle.resource('deno/deno')
    return {'deno': {'path': bundled} if bundled else {}, 'node': {}}


def _cache_folder() -> str:
    """A folder of our own: the user's yt-dlp may be of another version."""
    root = os.environ.get('XDG_CACHE_HOME') or os.path.expanduser('~/.cache')
    return os.path.join(root, 'veltro', 'yt-dlp')
