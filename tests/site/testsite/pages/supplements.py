# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Subtitles and pictures beside the media, present and missing."""

from testsite.reply import video_page

CLIP = "/media/h264-aac.mp4"


def subtitles(title, address):
    return lambda _: video_page(title, CLIP, tracks=[("en", address)])


def thumbnail(title, address):
    return lambda request: video_page(
        title, CLIP, f'<meta property="og:image" content="{address.format(base=request.base)}">')


ROUTES = {
    "/subtitles/missing": subtitles("Subtitles that are gone", "/media/subtitles/gone.vtt"),
    "/subtitles/ttml": subtitles("TTML, which cannot be embedded", "/media/subtitles/en.ttml"),
    "/thumbnail/webp": thumbnail("A WebP picture", "{base}/media/cover.webp"),
    "/thumbnail/relative": thumbnail("A relative picture", "/media/cover.jpg"),
    "/thumbnail/missing": thumbnail("A missing picture", "{base}/media/gone.jpg"),
}
