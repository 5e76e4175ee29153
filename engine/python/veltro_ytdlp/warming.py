# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Does ahead what the first extraction of an unknown page would do."""

import contextlib
import encodings.idna  # noqa: F401 - looked up with the first name of a host
import gc

import yt_dlp

_PAGE = '<html></html>'
_ADDRESS = 'http://localhost/'


def warm_up() -> None:
    """Ask every extractor about an address and a page that are nobody's, and no server."""
    ydl = yt_dlp.YoutubeDL({'quiet': True, 'no_warnings': True, 'skip_download': True})
    for extractor in ydl._ies.values():
        extractor.suitable(_ADDRESS)
    list(ydl.get_info_extractor('Generic')._extract_embeds(_ADDRESS, _PAGE) or ())
    with contextlib.suppress(Exception):  # certificates that cannot be read are told of later
        for handler in ydl._request_director.handlers.values():
            handler._make_sslcontext()
    del ydl
    # What is loaded stays; looking through it again would make each later collection long.
    gc.collect()
    gc.freeze()
