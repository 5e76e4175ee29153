# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a page function returns, and the ways in which it reaches the client."""

import dataclasses
import html as entities
import io
import json
import pathlib
import re
import time

HTML = "text/html; charset=utf-8"
SILENT_SECONDS = 30
CHUNK = 64 * 1024

TYPES = {
    ".mp4": "video/mp4", ".m4s": "video/mp4", ".webm": "video/webm", ".m4a": "audio/mp4",
    ".mp3": "audio/mpeg", ".opus": "audio/ogg", ".ts": "video/mp2t",
    ".m3u8": "application/vnd.apple.mpegurl", ".mpd": "application/dash+xml",
    ".vtt": "text/vtt; charset=utf-8", ".srt": "application/x-subrip",
    ".ttml": "application/ttml+xml", ".jpg": "image/jpeg", ".webp": "image/webp",
    ".png": "image/png",
}


@dataclasses.dataclass
class Reply:
    """A status, headers, and a body that is either bytes or a file, with its faults."""

    status: int = 200
    content_type: str = HTML
    body: bytes = b""
    file: pathlib.Path | None = None
    headers: dict = dataclasses.field(default_factory=dict)
    ranges: bool | None = None  # answers a Range with that part; unless said, files alone do
    rate: int = 0  # bytes a second, 0 for no limit
    hold: int | None = None  # waits for the release before this byte of the whole body
    cut: int | None = None  # closes the connection after so many bytes, whatever was promised
    silent: float | None = None  # closes the connection without a word after so many seconds


def text_type(path):
    return TYPES.get(path.suffix, "application/octet-stream")


def text(body, content_type="text/plain; charset=utf-8", **more):
    return Reply(content_type=content_type, body=body.encode(), **more)


def status(code, words="", **headers):
    return Reply(status=code, body=words.encode(), content_type="text/plain; charset=utf-8",
                 headers=headers)


def redirect(target, code=302):
    return Reply(status=code, headers={"Location": target})


def html(title, body="", head="", **more):
    """A whole page; the title is escaped, head and body are markup."""
    page = (f"<!DOCTYPE html>\n<html><head><title>{entities.escape(title)}</title>{head}</head>\n"
            f"<body>{body}</body></html>\n")
    return Reply(body=page.encode(), **more)


def video_tag(src, tracks=(), tag="video"):
    """`tracks` are pairs of language and address."""
    inner = "".join(f'<track kind="subtitles" srclang="{language}" src="{entities.escape(track)}">'
                    for language, track in tracks)
    return f'<{tag} controls><source src="{entities.escape(src)}">{inner}</{tag}>'


def video_page(title, src, head="", tracks=(), **more):
    return html(title, video_tag(src, tracks), head, **more)


def json_ld(fields):
    """The script element of a VideoObject; `</` is kept from ending it."""
    described = {"@context": "https://schema.org", "@type": "VideoObject", **fields}
    return ('<script type="application/ld+json">'
            + json.dumps(described).replace("</", "<\\/") + "</script>")


def json_ld_page(request, title, media, **fields):
    """The page that offers most: name, author, duration, picture, and `media` as its content."""
    described = {"name": title, "author": {"@type": "Person", "name": "Test Author"},
                 "duration": "PT2S", "thumbnailUrl": request.base + "/media/cover.jpg",
                 "uploadDate": "2026-01-02", "contentUrl": request.base + media, **fields}
    return html(title, head=json_ld(described))


def requested_part(header, size):
    """The first and past-the-last byte that a Range header asks for; None when it cannot be."""
    match = re.fullmatch(r"bytes=(\d*)-(\d*)", header.strip())
    if not match or not any(match.groups()):
        return None
    first, last = match.groups()
    if not first:
        return (max(0, size - int(last)), size)
    end = min(size, int(last) + 1) if last else size
    return (int(first), end) if int(first) < end else None


def send(handler, reply, request, entry, gate):
    """Writes the reply; `entry` of the request log counts what leaves."""
    if reply.silent is not None:
        gate.wait(reply.silent)
        handler.close_connection = True
        return
    size = reply.file.stat().st_size if reply.file else len(reply.body)
    first, end, code = 0, size, reply.status
    headers = {"Content-Type": reply.content_type, **reply.headers}
    if reply.ranges or (reply.file and reply.ranges is None):
        headers.setdefault("Accept-Ranges", "bytes")
        if request.range and code == 200:
            part = requested_part(request.range, size)
            first, end = part or (0, 0)
            code = 206 if part else 416
            shown = f"{first}-{end - 1}" if part else "*"
            headers["Content-Range"] = f"bytes {shown}/{size}"
    entry["status"] = code
    bodiless = request.method == "HEAD" or first == end
    note(entry, 0, bodiless)
    send_head(handler, code, {**headers, "Content-Length": end - first})
    if not bodiless:
        send_body(handler, reply, first, end, entry, gate)


def send_head(handler, code, headers):
    handler.send_response(code)
    for name, value in headers.items():
        handler.send_header(name, str(value))
    handler.end_headers()


def send_body(handler, reply, first, end, entry, gate):
    stop = end if reply.cut is None else min(end, first + reply.cut)
    hold = reply.hold if reply.hold is not None and first <= reply.hold < end else None
    position = first
    chunk = max(1, reply.rate // 20) if reply.rate else CHUNK
    with open_body(reply) as body:
        body.seek(first)
        while position < stop:
            if position == hold:
                gate.wait()
                hold = None
            limit = stop if hold is None else min(stop, hold)
            piece = body.read(min(chunk, limit - position))
            position += len(piece)
            note(entry, len(piece), position == stop)
            handler.wfile.write(piece)
            if reply.rate:
                time.sleep(len(piece) / reply.rate)
    if stop < end:
        handler.close_connection = True


def note(entry, count, last):
    """Before the write, so that the log knows whatever a client has in hand."""
    entry["sent"] += count
    if last:
        entry["state"] = "done"


def open_body(reply):
    return open(reply.file, "rb") if reply.file else io.BytesIO(reply.body)
