# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Pages and media that answer with an error."""

from testsite import reply
from testsite.reply import video_page


def refused(code):
    return lambda _: reply.status(code, f"status {code}")


def missing_media(_):
    return video_page("A file that is gone", "/media/gone.mp4")


def refused_media(_):
    return video_page("A file that fails", "/status/500/clip.mp4")


ROUTES = {
    **{f"/status/{code}": refused(code) for code in (403, 404, 500, 503)},
    "/status/500/clip.mp4": refused(500),
    "/missing/media": missing_media,
    "/media-fails": refused_media,
}
