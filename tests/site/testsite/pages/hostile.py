# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Addresses that would leave something dangerous on the disk, or read something private."""

from testsite import media_files, reply
from testsite.reply import html, json_ld, redirect, video_page

CLIP = "/media/h264-aac.mp4"
LAUNCHER = "[Desktop Entry]\nType=Application\nName=Words\nExec=touch owned\n"
LINK = "[InternetShortcut]\nURL=file:///etc/passwd\n"
SCRIPT = "#!/bin/sh\ntouch owned\n"
EXTENSIONS = ("desktop", "exe", "sh", "url", "html")


def subtitle(extension):
    return lambda _: video_page("Words that would run", CLIP,
                                tracks=[("en", f"/evil/words.{extension}")])


def media(extension):
    return lambda _: video_page("A file that would run", f"/evil/clip.{extension}")


def described(extension):
    """The extension comes as a fact about the media, not from its address."""
    return lambda request: html("Described", head=json_ld({
        "name": "A described launcher", "encodingFormat": f"video/{extension}",
        "contentUrl": f"{request.base}/evil/clip.{extension}"}))


def thumbnail(extension):
    return lambda request: video_page(
        "A picture that would run", CLIP,
        f'<meta property="og:image" content="{request.base}/evil/words.{extension}">')


def language(_):
    """The language becomes part of a side file's name."""
    return video_page("A language that climbs", CLIP,
                      tracks=[("en", "/media/subtitles/en.vtt"),
                              ("../../en", "/media/subtitles/en.vtt")])


def evil_file(request):
    """`words.*` is what the name says, `clip.*` is a clip whatever its name says."""
    if request.path.startswith("/evil/clip."):
        return media_files.file_reply(request, "h264-aac.mp4", content_type="video/mp4")
    words = {"/evil/words.url": LINK, "/evil/words.sh": SCRIPT}.get(request.path, LAUNCHER)
    return reply.text(words, "application/octet-stream")


def local_media(_):
    return video_page("A local file", "file:///etc/hostname")


def local_redirect(_):
    return redirect("file:///etc/hostname")


def local_playlist(request):
    return html("A playlist of local files", head=json_ld({
        "name": "Local files", "contentUrl": request.base + "/local/index.m3u8"}))


def local_live_playlist(request):
    return html("A live playlist of local files", head=json_ld({
        "name": "Local files, live", "contentUrl": request.base + "/local/live.m3u8"}))


def local_m3u8(request):
    """Whoever opens what it names reads this machine; the live one is left to FFmpeg."""
    end = "" if request.path.endswith("live.m3u8") else "#EXT-X-ENDLIST\n"
    return reply.text("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:2\n"
                      f"#EXTINF:2,\nfile:///etc/hostname\n{end}",
                      "application/vnd.apple.mpegurl")


ROUTES = {
    **{f"/hostile/subtitle-{name}": subtitle(name) for name in EXTENSIONS},
    **{f"/hostile/media-{name}": media(name) for name in EXTENSIONS},
    "/hostile/described-desktop": described("desktop"),
    "/hostile/thumbnail-desktop": thumbnail("desktop"),
    "/hostile/language": language,
    "/local/media": local_media,
    "/local/redirect": local_redirect,
    "/local/playlist": local_playlist,
    "/local/live": local_live_playlist,
    "/local/index.m3u8": local_m3u8,
    "/local/live.m3u8": local_m3u8,
    "/evil/*": evil_file,
}
