# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""How things come over the wire: redirects, cookies, ranges, speeds, encodings."""

import gzip

from testsite import reply
from testsite.reply import html, redirect, video_page, video_tag

CLIP = "/media/h264-aac.mp4"
LONG = "/media/bench/video.mp4"
CHAIN = (301, 302, 303, 307, 308)
BIG_LIMIT = 64 * 1024 * 1024


def redirect_chain(request):
    """Every kind of redirect once, the last to the plain page."""
    step = request.number("step", 0)
    target = f"/redirect/chain?step={step + 1}" if step + 1 < len(CHAIN) else "/plain"
    return redirect(target, CHAIN[min(step, len(CHAIN) - 1)])


def redirect_loop(_):
    return redirect("/redirect/loop")


def redirect_refresh(_):
    return html("Elsewhere", head='<meta http-equiv="refresh" content="0; url=/plain">')


def redirect_media(_):
    return video_page("A moved file", "/redirect/clip.mp4")


def redirect_clip(_):
    return redirect(CLIP)


def cookies(request):
    if request.cookie("session") != "ok":
        return reply.status(403, "log in first")
    return video_page("For members", CLIP + "?cookie=session")


def cookies_given(_):
    return video_page("A cookie for everybody", CLIP + "?cookie=session",
                      headers={"Set-Cookie": "session=ok; Path=/"})


def cookies_media(_):
    return video_page("A public page, a private file", CLIP + "?cookie=session")


def ranges(_):
    return video_page("With ranges", LONG)


def no_ranges(_):
    return video_page("Without ranges", LONG + "?ranges=0")


def throttled(request):
    return video_page("Slowly", f"{LONG}?rate={request.number('rate', 200000)}")


def held(request):
    return video_page("Held", f"{LONG}?hold={request.number('at', 1000000)}")


def truncated(_):
    return video_page("Less than promised", CLIP + "?ranges=0&cut=40000")


def dropped(_):
    return video_page("In three pieces", CLIP + "?cut=30000")


def slow(request):
    """The page itself comes in drips, over some two seconds."""
    answer = video_page("A slow page", CLIP, "<!--" + "x" * 2000 + "-->")
    answer.rate = max(1, int(len(answer.body) / request.number("seconds", 2)))
    return answer


def never(request):
    return reply.Reply(silent=request.number("seconds", reply.SILENT_SECONDS))


def big(request):
    """A page whose video comes after `bytes` of words."""
    size = min(request.number("bytes", 8 * 1024 * 1024), BIG_LIMIT)
    return html("A big page", "<p>word</p>\n" * (size // 12) + video_tag(CLIP))


def compressed(_):
    answer = video_page("A compressed page", CLIP, headers={"Content-Encoding": "gzip"})
    answer.body = gzip.compress(answer.body)
    return answer


def compressed_badly(_):
    answer = video_page("A badly compressed page", CLIP, headers={"Content-Encoding": "gzip"})
    answer.body = gzip.compress(answer.body)[:-40] + b"\xff" * 40
    return answer


def in_charset(named, codec, head=""):
    """A page of Cyrillic words in `codec`, whose header names the charset `named`, or none."""
    def page(_):
        answer = video_page("Кодировка страницы", CLIP, head)
        answer.body = answer.body.decode().encode(codec)
        answer.content_type = f"text/html; charset={named}" if named else "text/html"
        return answer
    return page


def media_as_text(_):
    return video_page("A video by the name of text", CLIP + "?type=text/plain")


def page_as_bytes(_):
    return video_page("A page by the name of bytes", CLIP, content_type="application/octet-stream")


ROUTES = {
    "/redirect/chain": redirect_chain,
    "/redirect/loop": redirect_loop,
    "/redirect/refresh": redirect_refresh,
    "/redirect/media": redirect_media,
    "/redirect/clip.mp4": redirect_clip,
    "/cookies": cookies,
    "/cookies/given": cookies_given,
    "/cookies/media": cookies_media,
    "/ranges": ranges,
    "/no-ranges": no_ranges,
    "/throttled": throttled,
    "/held": held,
    "/truncated": truncated,
    "/dropped": dropped,
    "/slow": slow,
    "/never": never,
    "/big": big,
    "/gzip": compressed,
    "/gzip/broken": compressed_badly,
    "/charset/header": in_charset("windows-1251", "cp1251"),
    "/charset/meta": in_charset("", "cp1251", '<meta charset="windows-1251">'),
    "/charset/wrong": in_charset("utf-8", "cp1251"),
    "/type/media-as-text": media_as_text,
    "/type/page-as-bytes": page_as_bytes,
}
