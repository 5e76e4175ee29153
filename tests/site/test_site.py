#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests of the test site: test_site.py --media DIR [--yt-dlp FOLDER].

The site runs inside this process, with a clock that the tests turn, but for the tests of its life
as a program. Without a folder of yt-dlp the pages are asked, and what they yield is not checked.
"""

import sys

sys.dont_write_bytecode = True

import argparse
import http.client
import http.cookiejar
import json
import pathlib
import re
import signal
import socket
import ssl
import subprocess
import threading
import unittest
import urllib.error
import urllib.request

import describe
import make_media
from testsite import routes, server, state

HERE = pathlib.Path(__file__).resolve().parent
OPTIONS = argparse.Namespace(media=None, yt_dlp=None)
BODY = "/media/h264-aac.mp4"


def documented():
    """The rows of README.md: route, answer, yield."""
    rows = re.findall(r"^\| `(/[^`]*)` \| ([^|]+) \| `([^|]+)` \|",
                      (HERE / "README.md").read_text(encoding="utf-8"), re.MULTILINE)
    return {route: (answer, found) for route, answer, found in rows}


def probe(path, key):
    """What the stock tool says of each stream in a file, or behind an address."""
    done = subprocess.run(
        ["ffprobe", "-v", "error", "-count_packets", "-show_streams", "-of", "json", str(path)],
        capture_output=True, text=True, check=True)
    return [stream[key] for stream in json.loads(done.stdout)["streams"]]


class SiteTest(unittest.TestCase):
    """A running site, fresh for each test, and ways to ask it."""

    def setUp(self):
        self.now = 0.0
        self.site = state.Site(make_media.ensure(OPTIONS.media))
        self.site.clocks = state.Clocks(lambda: self.now)
        self.plain = server.Server(0, self.site)
        self.secure = server.Server(0, self.site, self.site.media / "tls")
        for running in (self.plain, self.secure):
            running.start()
            self.addCleanup(running.server_close)
            self.addCleanup(running.shutdown)

    def ask(self, address, method="GET", **headers):
        """Status, headers and body of one answer; redirects are not followed."""
        connection = http.client.HTTPConnection(*self.plain.server_address, timeout=20)
        self.addCleanup(connection.close)
        connection.request(method, address, headers=headers)
        reply = connection.getresponse()
        return reply.status, reply.headers, reply.read()

    def log(self):
        return [json.loads(line) for line in self.ask("/_log")[2].splitlines()]

    def wait_for_log(self, condition):
        """Asks until the log satisfies the condition; the test's own timeout is the limit."""
        while not condition(self.log()):
            pass


class Pages(SiteTest):
    def test_every_route_stands_in_the_readme_and_nothing_else_does(self):
        self.assertEqual(sorted(documented()), sorted(routes.ROUTES))

    def test_every_page_answers_as_the_readme_says(self):
        for route, (answer, _) in documented().items():
            with self.subTest(route):
                self.assertEqual(describe.answer(self.plain.address(), route), answer)

    def test_every_page_yields_what_the_readme_says(self):
        if not OPTIONS.yt_dlp:
            self.skipTest("no --yt-dlp was given")
        extractor = describe.Extractor(OPTIONS.yt_dlp)
        for route, (_, found) in documented().items():
            with self.subTest(route):
                self.assertEqual(extractor.yields(self.plain.address(), route), found)

    def test_a_page_for_members_opens_to_the_cookie_file(self):
        for name, status in (("session", 200), ("other", 403)):
            jar = http.cookiejar.MozillaCookieJar(HERE / f"cookies/{name}.txt")
            jar.load(ignore_discard=True)
            opener = urllib.request.build_opener(urllib.request.HTTPCookieProcessor(jar))
            for address in ("/cookies", BODY + "?cookie=session"):
                with self.subTest(name=name, address=address):
                    try:
                        seen = opener.open(self.plain.address() + address).status
                    except urllib.error.HTTPError as refused:
                        seen = refused.code
                    self.assertEqual(seen, status)
        with self.assertRaises(http.cookiejar.LoadError):
            http.cookiejar.MozillaCookieJar(HERE / "cookies/not-one.txt").load()

    def test_no_path_leads_out_of_the_media_folder(self):
        for path in ("/media/../../../etc/passwd", "/media//etc/passwd", "/media/tls/key.pem",
                     "/media/%2e%2e/%2e%2e/etc/passwd", "/media/"):
            with self.subTest(path):
                self.assertEqual(self.ask(path)[0], 404)


class Live(SiteTest):
    def playlist(self, query=""):
        return self.ask("/live/index.m3u8" + query)[2].decode().splitlines()

    def test_the_window_moves_with_the_clock_and_wraps_at_the_end_of_the_clip(self):
        start = self.playlist()
        self.assertEqual([line for line in start if line.startswith("/")],
                         [f"/media/hls/long/index{number}.ts" for number in (0, 1, 2)])
        self.now = 20.0  # 43 segments are out: 40 of the clip, and three of its second round
        later = self.playlist()
        self.assertIn("#EXT-X-MEDIA-SEQUENCE:37", later)
        self.assertEqual(later.index("#EXT-X-DISCONTINUITY") + 2,
                         later.index("/media/hls/long/index0.ts"))
        self.assertEqual(sum(line.startswith("/") for line in later), 6)
        self.now = 25.0
        self.assertIn("#EXT-X-DISCONTINUITY-SEQUENCE:1", self.playlist())
        self.assertNotIn("#EXT-X-ENDLIST", self.playlist())

    def test_a_stream_that_ends_does_so_after_the_segments_asked_for(self):
        self.assertNotIn("#EXT-X-ENDLIST", self.playlist("?after=8&key=x"))
        self.now = 60.0
        ended = self.playlist("?after=8&key=x")
        self.assertEqual(ended[-2:], ["/media/hls/long/index7.ts", "#EXT-X-ENDLIST"])
        self.assertNotIn("#EXT-X-ENDLIST", self.playlist("?after=8&key=y"))


class Transfer(SiteTest):
    def setUp(self):
        super().setUp()
        self.whole = (self.site.media / BODY.removeprefix("/media/")).read_bytes()

    def test_ranges_are_answered_unless_the_query_forbids(self):
        size = len(self.whole)
        for header, status, body in (
                ("bytes=0-99", 206, self.whole[:100]), ("bytes=1000-", 206, self.whole[1000:]),
                ("bytes=-10", 206, self.whole[-10:]), (f"bytes={size}-", 416, b"")):
            with self.subTest(header):
                answer = self.ask(BODY, Range=header)
                self.assertEqual((answer[0], answer[2]), (status, body))
        status, headers, body = self.ask(BODY + "?ranges=0", Range="bytes=1000-")
        self.assertEqual((status, body), (200, self.whole))
        self.assertNotIn("Accept-Ranges", headers)

    def test_head_promises_the_length_and_sends_nothing(self):
        status, headers, body = self.ask(BODY, "HEAD")
        self.assertEqual((status, body), (200, b""))
        self.assertEqual(headers["Content-Length"], str(len(self.whole)))

    def test_a_cut_file_breaks_off_before_the_promised_length(self):
        with self.assertRaises(http.client.IncompleteRead) as broken:
            self.ask(BODY + "?cut=30000")
        self.assertEqual(broken.exception.partial, self.whole[:30000])
        self.assertEqual(self.ask(BODY + "?cut=30000", Range="bytes=60000-")[2],
                         self.whole[60000:])

    def test_a_throttled_file_takes_its_time(self):
        clock = state.time.monotonic
        start = clock()
        self.ask(BODY + "?rate=400000")
        self.assertGreater(clock() - start, len(self.whole) / 400000 * 0.9)

    def test_a_held_file_stops_at_its_byte_until_the_release(self):
        answers = []
        asking = threading.Thread(
            target=lambda: answers.append(self.ask("/media/h264.mp4?hold=5000")))
        asking.start()
        self.wait_for_log(lambda log: log and log[0]["sent"] == 5000)
        self.assertEqual((self.log()[0]["state"], answers), ("open", []))
        self.ask("/_control?release")
        asking.join()
        self.assertEqual(answers[0][2], (self.site.media / "h264.mp4").read_bytes())

    def test_a_rule_acts_on_its_paths_as_often_as_it_says(self):
        self.ask("/_control?match=h264&status=503&times=2")
        self.assertEqual([self.ask(BODY)[0] for _ in range(3)], [503, 503, 200])
        self.ask("/_control?match=subtitles/en.vtt&status=404")
        self.assertEqual([self.ask(f"/media/subtitles/{name}.vtt")[0] for name in ("en", "de")],
                         [404, 200])
        for query in ("", "match=x", "status=404", "match=x&status=soon"):
            self.assertEqual(self.ask("/_control?" + query)[0], 400)

    def test_a_client_that_leaves_is_noted(self):
        with socket.create_connection(self.plain.server_address) as client:
            client.sendall(b"GET /media/bench/video.mp4?hold=1000 HTTP/1.1\r\nHost: x\r\n\r\n")
            client.recv(100)
        self.ask("/_control?release")
        self.wait_for_log(lambda log: log[0]["state"] == "dropped")


class Log(SiteTest):
    def test_the_log_holds_what_was_asked_and_a_reset_forgets_it(self):
        self.ask("/plain?a=b", Cookie="session=ok")
        self.ask(BODY, Range="bytes=0-9")
        page, media = self.log()
        self.assertEqual((page["path"], page["query"], page["cookie"], page["range"]),
                         ("/plain", "a=b", "session=ok", None))
        self.assertEqual((media["range"], media["status"], media["sent"], media["state"]),
                         ("bytes=0-9", 206, 10, "done"))
        self.ask("/_control?match=plain&status=500")
        self.ask("/_reset")
        self.assertEqual(self.ask("/plain")[0], 200)
        self.assertEqual(len(self.log()), 1)


class Secure(SiteTest):
    def ask_securely(self, context):
        with urllib.request.urlopen(self.secure.address() + "/plain", context=context) as reply:
            return reply.read().decode()

    def test_the_certificate_is_refused_unless_it_is_trusted_by_name(self):
        with self.assertRaisesRegex(urllib.error.URLError, "CERTIFICATE_VERIFY_FAILED"):
            self.ask_securely(ssl.create_default_context())
        trusting = ssl.create_default_context(cafile=self.site.media / "tls/cert.pem")
        self.assertIn("A plain video", self.ask_securely(trusting))


class Media(SiteTest):
    def setUp(self):
        super().setUp()
        self.media = self.site.media

    def test_the_files_hold_the_streams_that_their_names_say(self):
        for name, codecs in (
                ("h264-aac.mp4", "h264 aac"), ("vp9-opus.webm", "vp9 opus"),
                ("av1-opus.mp4", "av1 opus"), ("av1-opus.webm", "av1 opus"),
                ("mpeg4-mp3.mp4", "mpeg4 mp3"), ("cover.mp3", "mp3 mjpeg"),
                ("cover.m4a", "aac mjpeg"), ("opus.opus", "opus"), ("cover.webp", "webp"),
                ("ondemand/video.mp4", "h264"), ("bench/audio.m4a", "aac")):
            with self.subTest(name):
                self.assertEqual(probe(self.media / name, "codec_name"), codecs.split())
        self.assertAlmostEqual((self.media / "bench/video.mp4").stat().st_size, 5e6, delta=2e5)

    def test_streams_in_segments_lose_no_packet_and_have_four_segments(self):
        packets = probe(self.media / "h264-aac.mp4", "nb_read_packets")
        for playlists in (["ts/video", "ts/audio"], ["fmp4/video", "fmp4/audio"], ["muxed/index"],
                          ["aes/index"]):
            with self.subTest(playlists):
                counted = []
                for name in playlists:
                    address = f"/media/hls/{name}.m3u8"
                    counted += probe(self.plain.address() + address, "nb_read_packets")
                    self.assertEqual(self.ask(address)[2].count(b"#EXTINF"), 4)
                self.assertEqual(counted, packets)
        for folder in make_media.DASH:
            with self.subTest(folder):
                chunks = list((self.media / folder).glob("chunk-*"))
                self.assertEqual(len(chunks), 4 * len(make_media.DASH[folder]))

    def test_a_second_making_changes_nothing(self):
        stamp = self.media / make_media.STAMP
        before = stamp.stat().st_mtime_ns
        subprocess.run([sys.executable, HERE / "make_media.py", self.media], check=True)
        self.assertEqual(stamp.stat().st_mtime_ns, before)


class Life(unittest.TestCase):
    """The site as a program: the ready line, and each way to end."""

    def start(self, *more):
        site = subprocess.Popen(
            [sys.executable, HERE / "site.py", "--media", OPTIONS.media, *more],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(site.stdout.close)
        self.addCleanup(site.stdin.close)
        return site, site.stdout.readline().split()

    def test_the_ready_line_names_two_sites_and_a_dead_port(self):
        site, (word, plain, _, dead) = self.start()
        self.assertEqual(word, "ready")
        self.assertEqual(urllib.request.urlopen(plain + "/plain").status, 200)
        with self.assertRaisesRegex(urllib.error.URLError, "refused"):
            urllib.request.urlopen(dead)
        site.stdin.close()
        self.assertEqual(site.wait(20), 0)

    def test_it_ends_on_the_signal_and_after_its_seconds(self):
        site, _ = self.start()
        site.send_signal(signal.SIGTERM)
        self.assertEqual(site.wait(20), 0)
        site, _ = self.start("--seconds", "0.1")
        self.assertEqual(site.wait(20), 0)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--media", required=True)
    parser.add_argument("--yt-dlp")
    _, rest = parser.parse_known_args(namespace=OPTIONS)
    unittest.main(argv=[sys.argv[0], *rest])
