# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The media themselves, with the faults that a query asks for."""

from testsite import reply


def file_reply(request, name, **more):
    """One file of the media folder; nothing outside of it, and never a key of the server."""
    folder = request.site.media.resolve()
    path = (folder / name).resolve()
    if not path.is_relative_to(folder) or path.parent.name == "tls" or not path.is_file():
        return reply.status(404, "no such file")
    return reply.Reply(file=path, **{"content_type": reply.text_type(path), **more})


def media(request):
    """`ranges=0`, `rate=`, `hold=`, `cut=` and `cookie=session` act on any file."""
    if request.query.get("cookie") == "session" and request.cookie("session") != "ok":
        return reply.status(403, "log in first")
    answer = file_reply(request, request.path.removeprefix("/media/"))
    answer.ranges = request.query.get("ranges") != "0"
    answer.rate = request.number("rate", 0)
    answer.hold = request.number("hold")
    answer.cut = request.number("cut")
    return answer


ROUTES = {"/media/*": media}
