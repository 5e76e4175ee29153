# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Titles that want out of the folder, out of the line, or out of the file name's length."""

from testsite.reply import Reply, html, json_ld, video_tag

CLIP = "/media/h264-aac.mp4"

TITLES = {
    "slashes": "../../../etc/passwd and a\\b /c",
    "absolute": "/etc/passwd",
    "two-dots": "..",
    "dots": "........",
    "leading-dot": ".hidden",
    "leading-dash": "-rf --exec=touch",
    "nul": "Zero\0one",
    "controls": "Bell\a escape\x1b[31m delete\x7f tab\tend",
    "newline": "Line one\nLine two\r\nLine three",
    "bidi": "Innocent\u202egpj.exe\u202c \u2066isolated\u2069 \u200fmark",
    "cyrillic": "Ж" * 300,
    "latin": "a" * 400,
    "combining": "Z" + "\u0351" * 200,
    "decomposed": "Cafe\u0301",
    "emoji": "\U0001f469\u200d\U0001f469\u200d\U0001f467 family \U0001f3ac",
    "surrogate": "Half a \ud83d pair",
    "template": "%(id)s %(title)s %s %d %% %(ext)s",
    "shell": "$(touch owned) `id` ; rm -rf * & | > out \" ' !!",
    "markup": "<b onmouseover=alert(1)>Bold</b> & <script>",
    "separators": "a: b? c* d|e <f> \"g\"",
    "reserved": "CON",
    "home": "~root/x",
    "dashes": "--",
    "line-separator": "\u2028line",
    "empty": "",
    "blank": "   ",
    "extension": "movie.mp4.desktop",
}


def described(title):
    """The title by JSON-LD, which carries every character as it is."""
    return lambda request: html("A page", head=json_ld({
        "name": title, "author": title, "description": title, "duration": "PT2S",
        "contentUrl": request.base + CLIP}))


def with_entities(_):
    """NUL, bidi and escape as entities of the markup."""
    return Reply(body=("<!DOCTYPE html><html><head><title>Zero&#0;one &#x202e;turned &#x1b;[31m"
                       f"</title></head><body>{video_tag(CLIP)}</body></html>").encode())


ROUTES = {
    **{f"/title/{name}": described(title) for name, title in TITLES.items()},
    "/title/nul-entity": with_entities,
}
