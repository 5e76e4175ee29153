# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Pages that would leave something dangerous on the disk, or read something private."""

from testsite import media_files, reply
from testsite.reply import html, json_ld, redirect, video_page


def launcher(_):
    return video_page("A file that would run", "/evil/clip.desktop")


def launcher_media(request):
    return media_files.file_reply(request, "h264-aac.mp4", content_type="video/mp4")


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
    "/hostile/media-desktop": launcher,
    "/evil/clip.desktop": launcher_media,
    "/local/media": local_media,
    "/local/redirect": local_redirect,
    "/local/playlist": local_playlist,
    "/local/live": local_live_playlist,
    "/local/index.m3u8": local_m3u8,
    "/local/live.m3u8": local_m3u8,
}
