#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Serves the test site: site.py --media DIR [--port N] [--seconds N].

Writes one line to standard output when it answers:

    ready http://127.0.0.1:A https://127.0.0.1:B http://127.0.0.1:C

with the plain site, the same over TLS with a certificate that nobody signed, and a port where
every connection is refused. It ends by itself after the seconds, when standard input closes, and
on SIGTERM or SIGINT, so that no test can leave it behind.
"""

import sys

sys.dont_write_bytecode = True

import argparse
import os
import pathlib
import signal
import threading

import make_media
from testsite import server, state


def arguments():
    parser = argparse.ArgumentParser(description="Serves the test site on the loopback address.")
    parser.add_argument("--port", type=int, default=0, help="0 takes a free one")
    parser.add_argument("--media", required=True, type=pathlib.Path, help="made when it is empty")
    parser.add_argument("--seconds", type=float, default=600, help="the longest life")
    return parser.parse_args()


def watch_input(ended):
    """Ends the site with whoever holds the other end of its standard input."""
    while os.read(sys.stdin.fileno(), 4096):
        pass
    ended.set()


def main():
    options = arguments()
    ended = threading.Event()
    for number in (signal.SIGTERM, signal.SIGINT):
        signal.signal(number, lambda *_: ended.set())
    threading.Thread(target=watch_input, args=(ended,), daemon=True).start()
    site = state.Site(make_media.ensure(options.media))
    plain = server.Server(options.port, site)
    secure = server.Server(0, site, site.media / "tls")
    with server.dead_port() as dead:
        plain.start()
        secure.start()
        print(f"ready {plain.address()} {secure.address()} "
              f"http://{server.LOOPBACK}:{dead.getsockname()[1]}", flush=True)
        ended.wait(options.seconds)


if __name__ == "__main__":
    main()
