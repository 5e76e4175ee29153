# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Pages that work, made the ways in which pages show media."""

import json

from testsite import media_files
from testsite.reply import html, json_ld, text, video_page, video_tag

CLIP = "/media/h264-aac.mp4"


def plain(_):
    return video_page("A plain video", CLIP)


def sources(_):
    return html("Two sizes", '<video><source src="/media/h264-aac.mp4" title="180p" height="180">'
                             '<source src="/media/h264-small.mp4" title="90p" height="90"></video>')


def several(_):
    return html("Several videos", "".join(map(video_tag, (
        CLIP, "/media/vp9-opus.webm", "/media/h264-small.mp4"))))


def several_one_missing(_):
    return html("Several videos, one missing", "".join(map(video_tag, (
        CLIP, "/media/nowhere.mp4", "/media/h264-small.mp4"))))


def og_video(request):
    return html("Open Graph", head=(
        '<meta property="og:title" content="An Open Graph video">'
        '<meta property="og:video:type" content="video/mp4">'
        f'<meta property="og:video" content="{request.base}{CLIP}">'
        f'<meta property="og:image" content="{request.base}/media/cover.jpg">'))


def jwplayer(request):
    size = (request.site.media / "h264-aac.mp4").stat().st_size
    setup = {"title": "A player's setup", "image": "/media/cover.jpg", "duration": 2,
             "sources": [{"file": CLIP, "label": "180p", "filesize": size},
                         {"file": "/media/h264-small.mp4", "label": "90p", "bitrate": 100000}],
             "tracks": [{"file": "/media/subtitles/en.vtt", "kind": "captions", "label": "en"}]}
    return html("A player", f"<script>jwplayer('x').setup({json.dumps(setup)});</script>")


def described(request):
    return html("Described file", head=json_ld({
        "name": "A described file", "author": "Test Author", "duration": "PT2S",
        "encodingFormat": "video/mp4", "contentUrl": request.base + CLIP}))


def direct(request):
    return media_files.file_reply(request, "h264-aac.mp4")


def direct_unnamed(request):
    return media_files.file_reply(request, "h264-aac.mp4", content_type="application/octet-stream")


def rss(request):
    items = "".join(
        f"<item><title>Episode {number}</title><link>{request.base}/plain</link>"
        f'<enclosure url="{request.base}{name}" type="video/mp4" length="1"/></item>'
        for number, name in ((1, CLIP), (2, "/media/h264-small.mp4")))
    return text(f'<?xml version="1.0"?><rss version="2.0"><channel><title>A feed</title>{items}'
                "</channel></rss>", "application/rss+xml")


def xspf(request):
    tracks = "".join(f"<track><location>{request.base}{name}</location><title>{title}</title>"
                     "<duration>2000</duration></track>"
                     for title, name in (("One", CLIP), ("Two", "/media/h264-small.mp4")))
    return text('<?xml version="1.0"?><playlist version="1" xmlns="http://xspf.org/ns/0/">'
                f"<title>A list</title><trackList>{tracks}</trackList></playlist>",
                "application/xspf+xml")


def no_media(_):
    return html("Nothing to see", "<p>Words, and no media at all.</p>")


def empty_page(_):
    return text("", "text/html; charset=utf-8")


ROUTES = {
    "/plain": plain,
    "/sources": sources,
    "/several": several,
    "/several/one-missing": several_one_missing,
    "/og-video": og_video,
    "/jwplayer": jwplayer,
    "/described": described,
    "/direct/clip.mp4": direct,
    "/direct/unnamed": direct_unnamed,
    "/rss": rss,
    "/xspf": xspf,
    "/no-media": no_media,
    "/empty-page": empty_page,
    "/with space/и кириллица": plain,
}
