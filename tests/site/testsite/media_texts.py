# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The media files that are texts: subtitles, master playlists, the key of the encrypted stream."""

CUES = {
    "en": ("First words", "Last words"),
    "en-US": ("First words, y'all", "Last words, y'all"),
    "de": ("Erste Worte", "Letzte Worte"),
}

KEY = bytes(range(16))

# The URI that the playlist shows, the file that ffmpeg reads, the initialisation vector.
KEY_INFO = "key.bin\nhls/aes/key.bin\n000102030405060708090a0b0c0d0e0f\n"

# FairPlay's mark: yt-dlp must call this protected, whatever its segments hold.
FAIRPLAY = """#EXTM3U
#EXT-X-VERSION:5
#EXT-X-TARGETDURATION:1
#EXT-X-PLAYLIST-TYPE:VOD
#EXT-X-KEY:METHOD=SAMPLE-AES,URI="skd://veltro-test",KEYFORMAT="com.apple.streamingkeydelivery",\
KEYFORMATVERSIONS="1"
#EXTINF:0.5,
../muxed/index0.ts
#EXT-X-ENDLIST
"""

FAIRPLAY_MASTER = """#EXTM3U
#EXT-X-SESSION-KEY:METHOD=SAMPLE-AES,URI="skd://veltro-test",\
KEYFORMAT="com.apple.streamingkeydelivery",KEYFORMATVERSIONS="1"
#EXT-X-STREAM-INF:BANDWIDTH=400000,RESOLUTION=320x180,CODECS="avc1.4d400d,mp4a.40.2"
index.m3u8
"""


def webvtt(language, offset=0):
    first, last = CUES[language]
    return (f"WEBVTT\n\n00:00:0{offset}.100 --> 00:00:0{offset}.900\n{first}\n\n"
            f"00:00:0{offset + 1}.100 --> 00:00:0{offset + 1}.900\n{last}\n")


def subrip(language):
    first, last = CUES[language]
    return (f"1\n00:00:00,100 --> 00:00:00,900\n{first}\n\n"
            f"2\n00:00:01,100 --> 00:00:01,900\n{last}\n")


def ttml(language):
    first, last = CUES[language]
    return ('<?xml version="1.0" encoding="utf-8"?>\n'
            f'<tt xmlns="http://www.w3.org/ns/ttml" xml:lang="{language}"><body><div>\n'
            f'<p begin="00:00:00.100" end="00:00:00.900">{first}</p>\n'
            f'<p begin="00:00:01.100" end="00:00:01.900">{last}</p>\n'
            '</div></body></tt>\n')


def bench_webvtt():
    cues = "".join(f"\n00:00:{second:02}.000 --> 00:00:{second:02}.900\nSecond {second}\n"
                   for second in range(20))
    return "WEBVTT\n" + cues


def webvtt_segment(number):
    """One second of the English track, with the clock of the transport stream in its head."""
    text = CUES["en"][number]
    return ("WEBVTT\nX-TIMESTAMP-MAP=MPEGTS:126000,LOCAL:00:00:00.000\n\n"
            f"00:00:0{number}.100 --> 00:00:0{number}.900\n{text}\n")


def subtitle_playlist():
    return ("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:1\n#EXT-X-PLAYLIST-TYPE:VOD\n"
            "#EXTINF:1.0,\nen-0.vtt\n#EXTINF:1.0,\nen-1.vtt\n#EXT-X-ENDLIST\n")


def master(variants):
    """A master playlist with one separate audio rendition and English subtitles."""
    lines = [
        "#EXTM3U", "#EXT-X-VERSION:6", "#EXT-X-INDEPENDENT-SEGMENTS",
        '#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID="sound",NAME="English",LANGUAGE="en",DEFAULT=YES,'
        'AUTOSELECT=YES,URI="audio.m3u8"',
        '#EXT-X-MEDIA:TYPE=SUBTITLES,GROUP-ID="words",NAME="English",LANGUAGE="en",DEFAULT=NO,'
        'AUTOSELECT=YES,URI="en.m3u8"',
    ]
    for uri, size, bandwidth in variants:
        lines += [f'#EXT-X-STREAM-INF:BANDWIDTH={bandwidth},RESOLUTION={size},FRAME-RATE=24.000,'
                  'CODECS="avc1.4d400d,mp4a.40.2",AUDIO="sound",SUBTITLES="words"', uri]
    return "\n".join(lines) + "\n"


def encoded(files):
    return {name: text if isinstance(text, bytes) else text.encode()
            for name, text in files.items()}


FILES = encoded({
    "subtitles/en.vtt": webvtt("en"),
    "subtitles/en-US.vtt": webvtt("en-US"),
    "subtitles/de.vtt": webvtt("de"),
    "subtitles/en.srt": subrip("en"),
    "subtitles/en.ttml": ttml("en"),
    "ondemand/en.vtt": webvtt("en"),
    "bench/en.vtt": bench_webvtt(),
    "hls/aes/key.bin": KEY,
    "hls/aes/key.info": KEY_INFO,
    "hls/drm/index.m3u8": FAIRPLAY,
    "hls/drm/master.m3u8": FAIRPLAY_MASTER,
    "hls/ts/master.m3u8": master([("video.m3u8", "320x180", 400000),
                                  ("small.m3u8", "160x90", 150000)]),
    "hls/fmp4/master.m3u8": master([("video.m3u8", "320x180", 400000)]),
    **{f"hls/{kind}/en.m3u8": subtitle_playlist() for kind in ("ts", "fmp4")},
    **{f"hls/{kind}/en-{number}.vtt": webvtt_segment(number)
       for kind in ("ts", "fmp4") for number in (0, 1)},
})
