# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""How things come over the wire: redirects, cookies, ranges, speeds, encodings."""

import gzip

from testsite import reply
from testsite.reply import redirect, video_page

CLIP = "/media/h264-aac.mp4"
LONG = "/media/bench/video.mp4"
CHAIN = (301, 302, 303, 307, 308)


def redirect_chain(request):
    """Every kind of redirect once, the last to the plain page."""
    step = request.number("step", 0)
    target = f"/redirect/chain?step={step + 1}" if step + 1 < len(CHAIN) else "/plain"
    return redirect(target, CHAIN[min(step, len(CHAIN) - 1)])


def redirect_loop(_):
    return redirect("/redirect/loop")


def redirect_clip(_):
    return redirect(CLIP)


def cookies(request):
    if request.cookie("session") != "ok":
        return reply.status(403, "log in first")
    return video_page("For members", CLIP + "?cookie=session")


def ranges(_):
    return video_page("With ranges", LONG)


def no_ranges(_):
    return video_page("Without ranges", LONG + "?ranges=0")


def held(request):
    return video_page("Held", f"{LONG}?hold={request.number('at', 1000000)}")


def truncated(_):
    """Less than promised, and a second request starts anew: cannot be saved."""
    return video_page("Less than promised", CLIP + "?ranges=0&cut=40000")


def dropped(_):
    """The connection breaks every 30000 bytes, and Range goes on: saved by resuming."""
    return video_page("In three pieces", CLIP + "?cut=30000")


def never(request):
    return reply.Reply(silent=request.number("seconds", reply.SILENT_SECONDS))


def compressed_badly(_):
    answer = video_page("A badly compressed page", CLIP, headers={"Content-Encoding": "gzip"})
    answer.body = gzip.compress(answer.body)[:-40] + b"\xff" * 40
    return answer


def charset_in_markup(_):
    """Cyrillic in windows-1251, which only the markup tells."""
    answer = video_page("Кодировка страницы", CLIP, '<meta charset="windows-1251">')
    answer.body = answer.body.decode().encode("cp1251")
    answer.content_type = "text/html"
    return answer


ROUTES = {
    "/redirect/chain": redirect_chain,
    "/redirect/loop": redirect_loop,
    "/redirect/clip.mp4": redirect_clip,
    "/cookies": cookies,
    "/ranges": ranges,
    "/no-ranges": no_ranges,
    "/held": held,
    "/truncated": truncated,
    "/dropped": dropped,
    "/never": never,
    "/gzip/broken": compressed_badly,
    "/charset/meta": charset_in_markup,
}
