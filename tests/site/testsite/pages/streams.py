# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""DASH and HLS, on demand and live, clear, encrypted and protected."""

from testsite import media_files
from testsite.reply import json_ld_page, status, text

WINDOW = 6  # segments that a live playlist shows
SEGMENT_SECONDS = 0.5
LIVE_SEGMENTS = 40

PROTECTION = (
    '<ContentProtection schemeIdUri="urn:mpeg:dash:mp4protection:2011" value="cenc"/>'
    '<ContentProtection schemeIdUri="urn:uuid:edef8ba9-79d6-4ace-a3c8-27dcd51d21ed"/>')

AVC = ("video/mp4", "avc1.4d400d")
AAC = ("audio/mp4", "mp4a.40.2")


def representation(request, number, name, kind, size=None):
    """One file with its length, the way in which an on-demand manifest names it."""
    mime, codecs = kind
    length = (request.site.media / name).stat().st_size
    frame = f'width="{size[0]}" height="{size[1]}"' if size else 'audioSamplingRate="48000"'
    return (f'<Representation id="{number}" mimeType="{mime}" codecs="{codecs}" '
            f'bandwidth="{length * 4}" {frame}>'
            f'<BaseURL yt:contentLength="{length}">/media/{name}</BaseURL><SegmentBase/>'
            "</Representation>")


def on_demand_mpd(videos, audio, words="", seconds=2):
    """A static manifest: an adaptation set each for video, audio and, when given, a text."""
    spoken = (f'<AdaptationSet contentType="text" lang="en"><Representation id="en" '
              f'mimeType="text/vtt" bandwidth="256"><BaseURL>{words}</BaseURL></Representation>'
              "</AdaptationSet>") if words else ""
    return text(
        '<?xml version="1.0" encoding="utf-8"?>'
        '<MPD xmlns="urn:mpeg:dash:schema:mpd:2011" xmlns:yt="http://youtube.com/yt/2012/10/10" '
        'profiles="urn:mpeg:dash:profile:isoff-on-demand:2011" type="static" '
        f'mediaPresentationDuration="PT{seconds}S" minBufferTime="PT1S"><Period>'
        f'<AdaptationSet contentType="video">{"".join(videos)}</AdaptationSet>'
        f'<AdaptationSet contentType="audio" lang="en">{audio}</AdaptationSet>'
        f"{spoken}</Period></MPD>", "application/dash+xml")


def ondemand_manifest(request):
    return on_demand_mpd(
        [representation(request, 1, "ondemand/video.mp4", AVC, (320, 180)),
         representation(request, 2, "ondemand/video-small.mp4", AVC, (160, 90))],
        representation(request, 3, "ondemand/audio.m4a", AAC), "/media/ondemand/en.vtt")


def protected_manifest(request):
    manifest = (request.site.media / "dash/h264-aac/manifest.mpd").read_text(encoding="utf-8")
    manifest = manifest.replace("<Period ", "<BaseURL>/media/dash/h264-aac/</BaseURL><Period ")
    return text(manifest.replace("<Representation ", PROTECTION + "<Representation "),
                "application/dash+xml")


def stream(title, manifest):
    """A page function: a described page whose content is that manifest."""
    return lambda request: json_ld_page(request, title, manifest)


def dash(title, folder):
    return stream(title, f"/media/dash/{folder}/manifest.mpd")


def hls(title, playlist):
    return stream(title, f"/media/hls/{playlist}.m3u8")


def live_playlist(request):
    """A window over the long clip that moves with the clock and wraps at the clip's end.

    `after=N` ends the stream with its N-th segment; `key=` names a clock of its own.
    """
    key = request.query.get("key", "")
    published = 3 + int(request.site.clocks.seconds(key) / SEGMENT_SECONDS)
    after = request.number("after")
    last = published if after is None else min(published, after)
    first = max(0, last - WINDOW)
    lines = ["#EXTM3U", "#EXT-X-VERSION:3", "#EXT-X-TARGETDURATION:1",
             f"#EXT-X-MEDIA-SEQUENCE:{first}",
             f"#EXT-X-DISCONTINUITY-SEQUENCE:{max(0, first - 1) // LIVE_SEGMENTS}"]
    for number in range(first, last):
        if number and number % LIVE_SEGMENTS == 0:
            lines.append("#EXT-X-DISCONTINUITY")
        lines += [f"#EXTINF:{SEGMENT_SECONDS},",
                  f"/media/hls/long/index{number % LIVE_SEGMENTS}.ts"]
    if last == after:
        lines.append("#EXT-X-ENDLIST")
    return text("\n".join(lines) + "\n", "application/vnd.apple.mpegurl",
                headers={"Cache-Control": "no-store"})


def live_ends(request):
    after = request.number("after", 8)
    return json_ld_page(request, "A live stream that ends",
                        f"/live/index.m3u8?key=ends&after={after}", duration=None)


def missing_segment(request):
    """The muxed clip, where the third of four segments is gone."""
    answer = media_files.file_reply(request, "hls/muxed/index.m3u8")
    playlist = answer.file.read_text(encoding="utf-8")
    playlist = playlist.replace("index2.ts", "gone.ts").replace("index", "/media/hls/muxed/index")
    return text(playlist, answer.content_type)


def gone(_):
    return status(404, "gone")


ROUTES = {
    "/jsonld": stream("A described video", "/ondemand.mpd"),
    "/ondemand.mpd": ondemand_manifest,
    "/dash/h264-aac": dash("DASH, H.264 and AAC", "h264-aac"),
    "/dash/vp9-opus": dash("DASH, VP9 and Opus", "vp9-opus"),
    "/dash/av1-opus": dash("DASH, AV1 and Opus", "av1-opus"),
    "/hls/ts": hls("HLS with separate audio", "ts/master"),
    "/hls/fmp4": hls("HLS in fragmented MP4", "fmp4/master"),
    "/hls/muxed": hls("HLS in one piece", "muxed/index"),
    "/hls/aes": hls("HLS under AES-128", "aes/index"),
    "/hls/missing-segment": stream("HLS with a missing segment", "/hls/missing-segment.m3u8"),
    "/hls/missing-segment.m3u8": missing_segment,
    "/hls/gone.ts": gone,
    "/live/ends": live_ends,
    "/live/index.m3u8": live_playlist,
    "/drm/hls": hls("Protected HLS", "drm/index"),
    "/drm/dash": stream("Protected DASH", "/drm/manifest.mpd"),
    "/drm/manifest.mpd": protected_manifest,
}
