#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Says what each page of a running site answers, and what yt-dlp makes of it.

    describe.py http://127.0.0.1:PORT [FOLDER OF YT-DLP]

prints the first columns of the tables in README.md; test_site.py compares them.
"""

import sys

sys.dont_write_bytecode = True

import collections
import http.client
import json
import re
import urllib.parse

from testsite import routes

# How a route is asked for where its own address would not do, or would take long.
EXAMPLES = {
    "/bench/*": "/bench/7",
    "/evil/*": "/evil/words.desktop",
    "/media/*": "/media/h264-aac.mp4",
    "/never": "/never?seconds=1",
    "/slow": "/slow?seconds=1",
    "/big": "/big?bytes=1000000",
}
TEXT_LENGTH = 64


def address(base, route):
    path, _, query = EXAMPLES.get(route, route).partition("?")
    return base + urllib.parse.quote(path) + ("?" + query if query else "")


def answer(base, route):
    """Status and type of the first answer, redirects not followed."""
    target = urllib.parse.urlsplit(address(base, route))
    connection = http.client.HTTPConnection(target.hostname, target.port, timeout=20)
    try:
        connection.request("GET", target.path + ("?" + target.query if target.query else ""))
        reply = connection.getresponse()
        kind = reply.getheader("Content-Type", "").partition(";")[0]
        return f"{reply.status} {kind}" if reply.status < 300 else str(reply.status)
    except http.client.RemoteDisconnected:
        return "nothing"
    finally:
        connection.close()


def shown(text, limit):
    """A text as printable ASCII that does not break a table."""
    escaped = json.dumps(text)[1:-1].replace("|", "\\u007c").replace("`", "\\u0060")
    return escaped if len(escaped) <= limit else escaped[:limit] + "..."


def codec_kind(entry):
    """What a format says about its streams: a codec may be a name, "none", or not told."""
    video, audio = entry.get("vcodec"), entry.get("acodec")
    if video is None or audio is None:
        return "audio" if video == "none" else "untold"
    kinds = {(True, True): "muxed", (True, False): "video", (False, True): "audio"}
    return kinds.get((video != "none", audio != "none"), "neither")


def video_summary(info):
    words = [info["ext"]]
    formats = info.get("formats")
    if formats is None:
        words.append("no formats key")
    else:
        counts = collections.Counter(map(codec_kind, formats))
        words.append("formats: " + ", ".join(f"{count} {kind}" for kind, count in counts.items()))
    if info.get("duration"):
        words.append(f"{info['duration']:g} s")
    if info.get("subtitles"):
        words.append("subtitles " + ", ".join(sorted(info["subtitles"])))
    words += [name for name, present in (("thumbnail", info.get("thumbnail")),
                                         ("author", info.get("uploader")),
                                         ("live", info.get("live_status") == "is_live")) if present]
    return "; ".join(words)


def summary(info):
    if "entries" not in info:
        return video_summary(info)
    entries = [video_summary(entry) for entry in info["entries"] if entry]
    return f"list of {len(entries)}: {entries[0]}"


def plain_error(error):
    """What of the error's text is the same in every version: the mark, where there is one."""
    mark = re.search("DRM protected|Unsupported URL|HTTP Error [0-9]+|closed connection|"
                     "while decompressing", str(error))
    return mark[0] if mark else shown(str(error), TEXT_LENGTH)


class Extractor:
    """The real yt-dlp, as a library, silent."""

    class Silence:
        def debug(self, _):
            """Nothing is printed."""

        warning = error = info = debug

    def __init__(self, folder):
        if folder:
            sys.path.insert(0, folder)
        import yt_dlp
        self._errors = (yt_dlp.utils.YoutubeDLError, yt_dlp.networking.exceptions.RequestError)
        self._ydl = yt_dlp.YoutubeDL({
            "logger": self.Silence(), "color": "no_color", "socket_timeout": 20, "retries": 0,
            "extractor_retries": 0, "quiet": True, "noprogress": True})

    def yields(self, base, route):
        ydl = self._ydl
        ydl.cookiejar.clear()  # one page's cookie must not open another
        try:
            info = ydl.sanitize_info(ydl.extract_info(address(base, route), download=False))
        except self._errors as error:
            return "error: " + plain_error(error)
        found = summary(info)
        if route.startswith("/title/"):
            found += f'; titled "{shown(info["title"], TEXT_LENGTH)}"'
        return found


def main():
    base = sys.argv[1].rstrip("/")
    extractor = Extractor(sys.argv[2] if len(sys.argv) > 2 else None)
    for route in routes.ROUTES:
        print(f"| `{route}` | {answer(base, route)} | `{extractor.yields(base, route)}` |",
              flush=True)


if __name__ == "__main__":
    main()
