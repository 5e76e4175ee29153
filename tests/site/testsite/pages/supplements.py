# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Subtitles and pictures beside the media, present and missing."""

from testsite.reply import html, video_page, video_tag

CLIP = "/media/h264-aac.mp4"


def subtitles(title, **tracks):
    """A page function; the names of `tracks` are languages, with _ for the hyphen."""
    pairs = [(language.replace("_", "-"), address) for language, address in tracks.items()]
    return lambda _: video_page(title, CLIP, tracks=pairs)


def thumbnail(title, address):
    return lambda request: video_page(
        title, CLIP, f'<meta property="og:image" content="{address.format(base=request.base)}">')


def poster(_):
    return video_page("A poster", CLIP, poster="/media/cover.jpg")


def several_with_subtitles(_):
    track = [("en", "/media/subtitles/en.vtt")]
    return html("Several with subtitles", video_tag(CLIP, tracks=track)
                + video_tag("/media/h264-small.mp4", tracks=track))


ROUTES = {
    "/subtitles": subtitles("Three languages", en="/media/subtitles/en.vtt",
                            de="/media/subtitles/de.vtt", en_US="/media/subtitles/en-US.vtt"),
    "/subtitles/regional": subtitles("American only", en_US="/media/subtitles/en-US.vtt"),
    "/subtitles/missing": subtitles("Subtitles that are gone", en="/media/subtitles/gone.vtt"),
    "/subtitles/srt": subtitles("SubRip", en="/media/subtitles/en.srt"),
    "/subtitles/ttml": subtitles("TTML", en="/media/subtitles/en.ttml"),
    "/subtitles/not-one": subtitles("A picture as subtitles", en="/media/cover.jpg?x=.vtt"),
    "/subtitles/several": several_with_subtitles,
    "/thumbnail/poster": poster,
    "/thumbnail/jpeg": thumbnail("A JPEG picture", "{base}/media/cover.jpg"),
    "/thumbnail/webp": thumbnail("A WebP picture", "{base}/media/cover.webp"),
    "/thumbnail/png": thumbnail("A PNG picture", "{base}/media/cover.png"),
    "/thumbnail/relative": thumbnail("A relative picture", "/media/cover.jpg"),
    "/thumbnail/missing": thumbnail("A missing picture", "{base}/media/gone.jpg"),
    "/thumbnail/not-one": thumbnail("A page as a picture", "{base}/plain?x=.jpg"),
}
