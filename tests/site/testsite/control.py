# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The addresses by which a test watches and steers the site. They are not in the request log."""

from testsite import reply
from testsite.state import Rules


def log(request):
    return reply.text(request.site.log.lines(), "application/x-ndjson")


def reset(request):
    request.site.reset()
    return reply.text("reset\n")


def control(request):
    """`release`, or `match=TEXT` with an action and perhaps `times=N`."""
    if "release" in request.query:
        request.site.gate.release()
        return reply.text("released\n")
    actions = {name: request.number(name) for name in Rules.ACTIONS if name in request.query}
    if not request.query.get("match") or not actions or None in actions.values():
        return reply.status(400, "release, or match=TEXT and one of status, rate, hold, cut\n")
    request.site.rules.add(request.query["match"], request.number("times", -1), actions)
    return reply.text("ruled\n")


ROUTES = {"/_log": log, "/_reset": reset, "/_control": control}
