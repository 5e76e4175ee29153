# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Pages and media that answer with an error."""

from testsite import reply
from testsite.reply import json_ld_page, video_page


def refused(code):
    return lambda _: reply.status(code, f"status {code}")


def missing_media(_):
    return video_page("A file that is gone", "/media/gone.mp4")


def missing_manifest(request):
    return json_ld_page(request, "A manifest that is gone", "/media/gone.mpd")


def broken_manifest(request):
    return json_ld_page(request, "A manifest that is none", "/broken.mpd")


def broken_mpd(_):
    return reply.text("<MPD><Period>", "application/dash+xml")


def refused_media(_):
    return video_page("A file that fails", "/status/500/clip.mp4")


def dead_media(request):
    """The file is on another port of this machine where nobody listens: port=N."""
    return video_page("A dead host", f"http://127.0.0.1:{request.number('port', 9)}/clip.mp4")


ROUTES = {
    **{f"/status/{code}": refused(code) for code in (403, 404, 410, 429, 500, 503)},
    "/status/500/clip.mp4": refused(500),
    "/missing/media": missing_media,
    "/missing/manifest": missing_manifest,
    "/broken/manifest": broken_manifest,
    "/broken.mpd": broken_mpd,
    "/media-fails": refused_media,
    "/dead-media": dead_media,
}
