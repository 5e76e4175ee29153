# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The HTTP and HTTPS servers: one thread a connection, on the loopback address only."""

import http.server
import socket
import socketserver
import ssl
import sys
import threading
import urllib.parse

from testsite import control, reply, routes

LOOPBACK = "127.0.0.1"


class Request:
    """One request as the pages see it."""

    def __init__(self, handler):
        self.site = handler.server.site
        self.secure = handler.server.secure
        self.method = handler.command
        self.headers = handler.headers
        self.range = handler.headers.get("Range")
        path, _, self.query_text = handler.path.partition("?")
        self.path = urllib.parse.unquote(path)
        self.query = dict(urllib.parse.parse_qsl(self.query_text, keep_blank_values=True))
        scheme = "https" if self.secure else "http"
        self.base = f"{scheme}://{LOOPBACK}:{handler.server.server_address[1]}"

    def number(self, name, default=None):
        """A whole number of the query; `default` where it is absent or none."""
        value = self.query.get(name, "")
        return int(value) if value.isascii() and value.isdigit() else default

    def cookie(self, name):
        for pair in self.headers.get("Cookie", "").split(";"):
            key, _, value = pair.strip().partition("=")
            if key == name:
                return value
        return None


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    server_version = "TestSite"
    sys_version = ""
    disable_nagle_algorithm = True
    timeout = 60  # seconds that an idle connection is kept

    def setup(self):
        super().setup()
        if self.server.secure:
            self.connection.do_handshake()

    def do_GET(self):
        request = Request(self)
        if request.path in control.ROUTES:
            quiet = {"sent": 0}
            reply.send(self, control.ROUTES[request.path](request), request, quiet,
                       request.site.gate)
            return
        entry = request.site.log.open(request)
        try:
            reply.send(self, self.answer(request), request, entry, request.site.gate)
            entry["state"] = "done"  # also where nothing was to be sent
        except OSError:  # the client has gone, which a cancelled download does
            entry["state"] = "dropped"
            self.close_connection = True

    do_HEAD = do_GET

    def answer(self, request):
        page = self.server.find(request.path)
        answer = page(request) if page else reply.status(404, "no such page")
        actions = request.site.rules.actions_for(request.path)
        if "status" in actions:
            return reply.status(actions["status"], "as a rule says")
        for name, value in actions.items():
            setattr(answer, name, value)
        return answer

    def log_message(self, *_):
        """The request log is for tests; nothing is written to the terminal."""


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 128

    def __init__(self, port, site, certificate=None, find=routes.find):
        super().__init__((LOOPBACK, port), Handler)
        self.site = site
        self.find = find
        self.secure = certificate is not None
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate / "cert.pem", certificate / "key.pem")
            # The handshake belongs to the connection's own thread, see Handler.setup().
            self.socket = context.wrap_socket(self.socket, server_side=True,
                                              do_handshake_on_connect=False)

    def server_bind(self):
        # The name of the host is not looked up: it is never shown, and a resolver may be slow.
        socketserver.TCPServer.server_bind(self)
        self.server_name, self.server_port = self.server_address

    def handle_error(self, request, client_address):
        # A client that breaks off, or that refuses the certificate, is what tests do; anything
        # else is a fault of a page, and is told on standard error.
        if not isinstance(sys.exc_info()[1], OSError):
            super().handle_error(request, client_address)

    def address(self):
        return f"{'https' if self.secure else 'http'}://{LOOPBACK}:{self.server_address[1]}"

    def start(self):
        threading.Thread(target=self.serve_forever, args=(0.05,), daemon=True).start()


def dead_port():
    """A socket that owns a port and never listens: whoever connects is refused at once."""
    holder = socket.socket()
    holder.bind((LOOPBACK, 0))
    return holder
