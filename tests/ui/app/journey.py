# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""From a link to a file that plays and is deleted: what happens on the way, however it is driven."""
import json
import subprocess

from accessible_tree import Tree
from testsite import reply, routes
from testsite.pages import streams
from window_session import SessionTest, Site, until

PAGE = "/tiers"
TITLE = "A page with two heights"
SECONDS = 20
SIZES = ((1280, 720), (854, 480))


def page(request):
    return reply.json_ld_page(request, TITLE, PAGE + ".mpd", duration=f"PT{SECONDS}S")


def manifest(request):
    videos = [streams.representation(request, height, f"{height}.mp4", streams.AVC,
                                     (width, height)) for width, height in SIZES]
    audio = streams.representation(request, 1, "audio.m4a", streams.AAC)
    return streams.on_demand_mpd(videos, audio, seconds=SECONDS)


def make_clips(folder):
    """A picture that never stands still, in each size, and a tone."""
    tool = ["ffmpeg", "-nostdin", "-loglevel", "error", "-f", "lavfi", "-i"]
    pieces = ["-movflags", "+frag_keyframe+empty_moov+default_base_moof+global_sidx"]
    for width, height in SIZES:
        subprocess.run([*tool, f"testsrc2=size={width}x{height}:rate=12:duration={SECONDS}",
                        "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-g",
                        "24", *pieces, str(folder / f"{height}.mp4")], check=True)
    subprocess.run([*tool, f"sine=frequency=440:duration={SECONDS}", "-c:a", "aac", *pieces,
                    str(folder / "audio.m4a")], check=True)


def height_of(file):
    done = subprocess.run(["ffprobe", "-v", "error", "-select_streams", "v", "-show_streams", "-of",
                           "json", str(file)], capture_output=True, check=True)
    return json.loads(done.stdout)["streams"][0]["height"]


class Journey(SessionTest):
    """The steps are the subclass's; what comes of each is looked at here."""

    def setUp(self):
        super().setUp()
        clips = self.session.home / "clips"
        clips.mkdir()
        make_clips(clips)
        routes.ROUTES.update({PAGE: page, PAGE + ".mpd": manifest})
        self.site = Site(self.stack, clips)
        self.tree = Tree(self.session)
        self.session.start_program()

    def travel(self):
        self.type_link(self.site.address + PAGE)
        self.choose_tier("480p")
        self.assertTrue(self.tree.get("radio button", "480p").is_checked)
        self.save()
        self.show_queue()
        until(lambda: "Done" in self.tree.get("list item", TITLE).description, "the row's end")
        file, = self.session.saved()
        self.assertEqual(height_of(file), 480)
        # The page is looked at once and saved once, and nothing is fetched that is not wanted.
        self.assertEqual(len(self.site.requests(PAGE)), 2)
        self.assertEqual(len(self.site.requests("/media/480.mp4")), 1)
        self.assertEqual(self.site.requests("/media/720.mp4"), [])

        self.show_library()
        self.tree.get("list item", TITLE)
        self.play()
        self.watch()
        self.pause()
        self.tree.get("push button", "Play")
        self.resume()
        self.tree.get("push button", "Pause")
        self.delete()
        self.tree.wait_until_gone("list item", TITLE)
        self.tree.get("label", "Empty library")
        until(lambda: not file.exists(), "the end of the file")

    def watch(self):
        """Its time goes on, and its picture with it."""
        position = self.tree.get("slider", "Position")
        begun = until(lambda: position.value, "the first second")
        first = until(self.picture, "a picture")
        until(lambda: position.value > begun, "the next moment")
        until(lambda: self.picture() not in (None, first), "another picture")

    def picture(self):
        """The upper half of what is played, which no control covers; None while it is plain."""
        left, top, width, height = self.tree.get("animation", "Video").area
        points = self.session.pixels(left, top, width, height // 2)
        colours = {points[at:at + 3] for at in range(0, len(points), 3)}
        return points if len(colours) > 20 else None
