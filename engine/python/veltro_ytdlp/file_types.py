# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The kinds of file that a page may put into the downloads folder.

A type is listed when a desktop opens it with a player, a picture viewer or a text viewer. What a
desktop may run or render as a page (.desktop, .swf, .svg, .html) is missing on purpose.
"""

import re

VIDEO_EXTENSIONS = frozenset((
    '3g2', '3gp', 'asf', 'avi', 'divx', 'f4v', 'flv', 'ismv', 'm2t', 'm2ts', 'm2v', 'm4s', 'm4v',
    'mk3d', 'mkv', 'mov', 'mp4', 'mp4v', 'mpe', 'mpeg', 'mpeg1', 'mpeg2', 'mpeg4', 'mpg', 'mts',
    'mxf', 'ogm', 'ogv', 'qt', 'rm', 'rmvb', 'ts', 'unknown_video', 'vob', 'vp9', 'webm', 'wmv',
))
AUDIO_EXTENSIONS = frozenset((
    '3ga', 'aac', 'ac3', 'adts', 'aif', 'aiff', 'alac', 'amr', 'ape', 'au', 'dts', 'eac3', 'f4a',
    'f4b', 'flac', 'isma', 'm4a', 'm4b', 'm4r', 'mid', 'mka', 'mp1', 'mp2', 'mp3', 'mp4a', 'mpa',
    'mpga', 'oga', 'ogg', 'ogx', 'opus', 'ra', 'spx', 'vorbis', 'wav', 'weba', 'wma',
))
IMAGE_EXTENSIONS = frozenset((
    'avif', 'bmp', 'gif', 'heic', 'heif', 'ico', 'jfif', 'jpe', 'jpeg', 'jpg', 'jxl', 'png', 'tif',
    'tiff', 'webp',
))
SUBTITLE_EXTENSIONS = frozenset((
    'ass', 'dfxp', 'json3', 'lrc', 'sami', 'sbv', 'scc', 'smi', 'srt', 'srv1', 'srv2', 'srv3',
    'ssa', 'sub', 'ttml', 'vtt',
))
MEDIA_EXTENSIONS = VIDEO_EXTENSIONS | AUDIO_EXTENSIONS


def named(extension: object) -> str:
    """The extension as a text may show it; it comes from a page and may be anything."""
    if isinstance(extension, str) and re.fullmatch(r'\w{1,16}', extension):
        return f'the type .{extension}'
    return 'an unknown type'
