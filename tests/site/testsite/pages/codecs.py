# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""One file each for every pair of codecs, with and without picture or sound, and broken ones."""

from testsite.reply import html, video_page, video_tag


def video(title, name):
    return lambda _: video_page(title, "/media/" + name)


def audio(title, name):
    return lambda _: html(title, video_tag("/media/" + name, tag="audio"))


ROUTES = {
    "/codec/h264-only": video("H.264 and no sound", "h264.mp4"),
    "/codec/vp9-opus": video("VP9 and Opus", "vp9-opus.webm"),
    "/codec/av1-opus-mp4": video("AV1 and Opus in MP4", "av1-opus.mp4"),
    "/codec/av1-opus-webm": video("AV1 and Opus in WebM", "av1-opus.webm"),
    "/codec/hevc-aac": video("HEVC and AAC", "hevc-aac.mp4"),
    "/codec/mpeg4-mp3": video("MPEG-4 part 2 and MP3", "mpeg4-mp3.mp4"),
    "/audio/aac": audio("AAC alone", "aac.m4a"),
    "/audio/opus": audio("Opus alone", "opus.opus"),
    "/audio/opus-webm": audio("Opus in WebM", "opus.webm"),
    "/audio/mp3": audio("MP3 alone", "plain.mp3"),
    "/audio/mp3-cover": audio("MP3 with a cover", "cover.mp3"),
    "/audio/aac-cover": audio("AAC with a cover", "cover.m4a"),
    "/bad/empty": video("An empty file", "bad/empty.mp4"),
    "/bad/noise": video("Noise by the name of MP4", "bad/noise.mp4"),
    "/bad/scrambled": video("An index over noise", "bad/scrambled.mp4"),
    "/bad/cut": video("A file cut in half", "bad/cut.mp4"),
    "/bad/no-index": video("A file without its index", "bad/no-index.mp4"),
}
