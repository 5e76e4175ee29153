# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Pages that work, made the ways in which pages show media."""

from testsite import media_files
from testsite.reply import html, text, video_page

CLIP = "/media/h264-aac.mp4"


def plain(_):
    return video_page("A plain video", CLIP)


def sources(_):
    return html("Two sizes", '<video><source src="/media/h264-aac.mp4" title="180p" height="180">'
                             '<source src="/media/h264-small.mp4" title="90p" height="90"></video>')


def og_video(request):
    return html("Open Graph", head=(
        '<meta property="og:title" content="An Open Graph video">'
        '<meta property="og:video:type" content="video/mp4">'
        f'<meta property="og:video" content="{request.base}{CLIP}">'
        f'<meta property="og:image" content="{request.base}/media/cover.jpg">'))


def direct(request):
    return media_files.file_reply(request, "h264-aac.mp4")


def rss(request):
    items = "".join(
        f"<item><title>Episode {number}</title><link>{request.base}/plain</link>"
        f'<enclosure url="{request.base}{name}" type="video/mp4" length="1"/></item>'
        for number, name in ((1, CLIP), (2, "/media/h264-small.mp4")))
    return text(f'<?xml version="1.0"?><rss version="2.0"><channel><title>A feed</title>{items}'
                "</channel></rss>", "application/rss+xml")


def no_media(_):
    return html("Nothing to see", "<p>Words, and no media at all.</p>")


ROUTES = {
    "/plain": plain,
    "/sources": sources,
    "/og-video": og_video,
    "/direct/clip.mp4": direct,
    "/rss": rss,
    "/no-media": no_media,
    "/with space/и кириллица": plain,
}
