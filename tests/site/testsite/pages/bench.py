# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Twenty pages of about 5 MB each: on-demand DASH with audio and subtitles."""

import re

from testsite import reply
from testsite.pages import streams

PAGES = 20


def bench(request):
    """`/bench/N` is the page, `/bench/N.mpd` its manifest; all share the same files."""
    match = re.fullmatch(r"/bench/([1-9]\d?)(\.mpd)?", request.path)
    if not match or int(match[1]) > PAGES:
        return reply.status(404, f"there are {PAGES} pages")
    if match[2]:
        return manifest(request)
    return reply.json_ld_page(request, f"Bench page {match[1]}", request.path + ".mpd",
                              duration="PT20S")


def manifest(request):
    video = streams.representation(request, 1, "bench/video.mp4", ("video/mp4", "avc1.42c01e"),
                                   (640, 360))
    audio = streams.representation(request, 2, "bench/audio.m4a", streams.AAC)
    return streams.on_demand_mpd([video], audio, "/media/bench/en.vtt", seconds=20)


ROUTES = {"/bench/*": bench}
