# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Short clips and their manifests, made once by the stock tool from its own sources."""

import atexit
import functools
import json
import os
import shutil
import subprocess
import tempfile

_VIDEO = ('-f', 'lavfi', '-i', 'testsrc=size=320x180:rate=24:duration=4')
_AUDIO = ('-f', 'lavfi', '-i', 'sine=frequency=440:duration=4')
_H264 = ('-c:v', 'libx264', '-preset', 'ultrafast', '-pix_fmt', 'yuv420p', '-g', '12',
         '-keyint_min', '12', '-sc_threshold', '0')
_AAC = ('-c:a', 'aac', '-b:a', '64k')

SUBTITLES = 'WEBVTT\n\n00:00:00.000 --> 00:00:03.000\nA line to read\n'


@functools.cache
def _folder() -> str:
    folder = tempfile.mkdtemp(prefix='veltro-clips-')
    atexit.register(shutil.rmtree, folder, ignore_errors=True)
    return folder


def _make(*arguments: str, cwd: str | None = None) -> None:
    subprocess.run(('ffmpeg', '-v', 'error', '-y', *arguments), check=True, cwd=cwd or _folder(),
                   stdin=subprocess.DEVNULL)


def _read(*parts: str) -> bytes:
    with open(os.path.join(_folder(), *parts), 'rb') as file:
        return file.read()


@functools.cache
def movie() -> bytes:
    """H.264 and AAC in one mp4."""
    _make(*_VIDEO, *_AUDIO, *_H264, *_AAC, '-movflags', '+faststart', 'movie.mp4')
    return _read('movie.mp4')


@functools.cache
def picture() -> bytes:
    _make('-f', 'lavfi', '-i', 'testsrc=size=64x36:duration=1', '-frames:v', '1', 'picture.jpg')
    return _read('picture.jpg')


def _tree(name: str) -> dict[str, bytes]:
    return {file: _read(name, file) for file in os.listdir(os.path.join(_folder(), name))}


@functools.cache
def dash() -> dict[str, bytes]:
    """manifest.mpd with eight segments of H.264 video and of AAC audio."""
    os.makedirs(os.path.join(_folder(), 'dash'), exist_ok=True)
    _make(*_VIDEO, *_AUDIO, '-map', '0:v', '-map', '1:a', *_H264, *_AAC, '-f', 'dash',
          '-seg_duration', '0.5', '-use_template', '1', '-use_timeline', '0',
          '-adaptation_sets', 'id=0,streams=v id=1,streams=a',
          '-init_seg_name', 'init-$RepresentationID$.m4s',
          '-media_seg_name', 'seg-$RepresentationID$-$Number$.m4s', 'manifest.mpd',
          cwd=os.path.join(_folder(), 'dash'))
    return _tree('dash')


@functools.cache
def hls() -> dict[str, bytes]:
    """video.m3u8 and audio.m3u8 of transport streams, to be named by a master of the test's."""
    os.makedirs(os.path.join(_folder(), 'hls'), exist_ok=True)
    for name, source, codec in (('video', _VIDEO, _H264), ('audio', _AUDIO, _AAC)):
        _make(*source, *codec, '-f', 'hls', '-hls_time', '0.5', '-hls_list_size', '0',
              '-hls_segment_filename', f'{name}-%d.ts', f'{name}.m3u8',
              cwd=os.path.join(_folder(), 'hls'))
    return _tree('hls')


MASTER = """#EXTM3U
#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID="a",NAME="sound",DEFAULT=YES,URI="audio.m3u8"
#EXT-X-STREAM-INF:BANDWIDTH=200000,CODECS="avc1.42c00d,mp4a.40.2",RESOLUTION=320x180,AUDIO="a"
video.m3u8
"""


def packets(path: str) -> dict[str, list[str]]:
    """A digest of every packet of every stream, by the kind of stream."""
    output = subprocess.run(
        ('ffprobe', '-v', 'error', '-show_packets', '-show_data_hash', 'md5', '-of', 'json',
         '-show_entries', 'packet=codec_type,data_hash', path),
        check=True, capture_output=True).stdout
    found: dict[str, list[str]] = {}
    for packet in json.loads(output)['packets']:
        found.setdefault(packet['codec_type'], []).append(packet['data_hash'])
    return found
