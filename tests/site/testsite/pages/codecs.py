# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""One file each: codecs that play and that do not, sound alone, broken files."""

from testsite.reply import html, video_page, video_tag


def video(title, name):
    return lambda _: video_page(title, "/media/" + name)


def audio(title, name):
    return lambda _: html(title, video_tag("/media/" + name, tag="audio"))


ROUTES = {
    "/codec/vp9-opus": video("VP9 and Opus", "vp9-opus.webm"),
    "/codec/mpeg4-mp3": video("MPEG-4 part 2 and MP3", "mpeg4-mp3.mp4"),
    "/audio/aac": audio("AAC alone", "aac.m4a"),
    "/audio/opus": audio("Opus alone", "opus.opus"),
    "/audio/mp3": audio("MP3 alone", "plain.mp3"),
    "/audio/mp3-cover": audio("MP3 with a cover", "cover.mp3"),
    "/bad/noise": video("Noise by the name of MP4", "bad/noise.mp4"),
    "/bad/scrambled": video("An index over noise", "bad/scrambled.mp4"),
    "/bad/cut": video("A file cut in half", "bad/cut.mp4"),
    "/bad/no-index": video("A file without its index", "bad/no-index.mp4"),
}
