# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Pages that can be saved: what stands in the folder afterwards."""

import unicodedata
import unittest

import harness
from harness import decoded, names, streams
from testsite.pages import titles

# Page, streams of the saved file, side files' endings.
SAVED = [
    ("/plain", ["h264", "aac"], []),
    ("/og-video", ["h264", "aac"], ["jpg"]),
    ("/direct/clip.mp4", ["h264", "aac"], []),
    ("/jsonld", ["h264", "aac", "mov_text"], ["jpg"]),
    ("/dash/h264-aac", ["h264", "aac"], ["jpg"]),
    ("/dash/vp9-opus", ["h264", "opus"], ["jpg"]),
    ("/dash/av1-opus", ["h264", "opus"], ["jpg"]),
    ("/hls/ts", ["h264", "aac", "mov_text"], ["jpg"]),
    ("/hls/fmp4", ["h264", "aac", "mov_text"], ["jpg"]),
    ("/hls/aes", ["h264", "aac"], ["jpg"]),
    ("/live/ends", ["h264", "aac"], ["jpg"]),
    ("/codec/vp9-opus", ["h264", "opus"], []),
    ("/codec/mpeg4-mp3", ["mpeg4", "mp3"], []),
    ("/audio/aac", ["aac"], []),
    ("/audio/opus", ["opus"], []),
    ("/audio/mp3-cover", ["mp3", "mjpeg"], []),
    ("/subtitles/missing", ["h264", "aac"], []),
    ("/subtitles/ttml", ["h264", "aac"], ["ttml"]),
    ("/thumbnail/relative", ["h264", "aac"], ["jpg"]),
    ("/thumbnail/missing", ["h264", "aac"], []),
    ("/redirect/chain", ["h264", "aac"], []),
    ("/no-ranges", ["h264"], []),
    ("/dropped", ["h264", "aac"], []),
    ("/charset/meta", ["h264", "aac"], []),
    ("/with%20space/%D0%B8%20%D0%BA%D0%B8%D1%80%D0%B8%D0%BB%D0%BB%D0%B8%D1%86%D0%B0",
     ["h264", "aac"], []),
]


class Pages(harness.Case):
    def test_a_page_becomes_one_playable_file(self):
        for page, codecs, endings in SAVED:
            with self.subTest(page), self.fresh() as folder:
                outcome = self.save(page)
                self.assertEqual(outcome.code, 0, outcome.error + outcome.log)
                file = outcome.files[0]
                self.assertEqual(sorted(streams(file)), sorted(codecs))
                self.assertTrue(decoded(file))
                others = [name for name in names(folder) if name != file.name]
                self.assertEqual(sorted(name.rsplit(".", 1)[1] for name in others), endings)
                self.assertEqual(file.parent, folder)

    def test_the_events_tell_the_story_in_order(self):
        outcome = self.save("/jsonld")
        kinds = [event["event"] for event in outcome.events]
        self.assertEqual((kinds[0], kinds[-1]), ("started", "finished"))
        self.assertEqual(kinds.count("started"), 1)
        self.assertIn("progress", kinds)
        self.assertIn("Merger", outcome.stages)
        self.assertEqual(outcome.events[0]["info"]["durationSeconds"], 2)
        for event in outcome.named("progress"):
            self.assertLessEqual(event["bytesDone"], event.get("bytesTotal", event["bytesDone"]))
        log = outcome.log
        for line in ("[veltro] download start url=", "[veltro] outTemplate=",
                     "[veltro] downloadsDir exists=yes",
                     "[veltro] YoutubeDL constructed; extract_info…",
                     "[veltro] extract_info returned: ok", "[veltro] ydl.download() starting…",
                     "[veltro] ydl.download() returned. finalPath=", "[veltro] result file path="):
            self.assertEqual(log.count(line), 1, line)

    def test_a_cancelled_run_keeps_what_it_has_and_goes_on_later(self):
        for page in ("/ranges", "/hls/muxed", "/dash/h264-aac"):
            with self.subTest(page), self.fresh() as folder:
                harness.ask_site("/_control?match=/media/&rate=20000")
                cancelled = self.save(page, "--cancel-after-bytes", "1")
                harness.ask_site("/_reset")
                self.assertEqual((cancelled.code, cancelled.error), (1, "cancelled: Cancelled."))
                endings = {name.rsplit(".", 1)[1] for name in names(folder)}
                self.assertEqual(endings - {"ytdl", "jpg"}, {"part"})
                resumed = self.save(page)
                self.assertEqual(resumed.code, 0, resumed.error)
                whole = decoded(resumed.files[0])
                self.assertFalse([name for name in names(folder) if ".part" in name])
            with self.fresh():
                self.assertEqual(decoded(self.save(page).files[0]), whole)

    def test_a_hostile_title_names_a_file_in_the_folder(self):
        outcome = self.save(*titles.ROUTES)
        self.assertEqual(outcome.error, "")
        self.assertEqual(len(outcome.files), len(titles.ROUTES))
        for file in outcome.files:
            self.assertEqual(file.parent, self.folder)
            self.assertTrue(file.is_file(), file)
            self.assertLessEqual(len(file.name.encode()), 255)
            self.assertFalse(file.name.startswith(("-", ".")), file.name)
            unseen = {sign for sign in file.name if unicodedata.category(sign)
                      in ("Cc", "Cf", "Cs", "Zl")}
            self.assertLessEqual(unseen, {"\u200d"}, file.name)  # which joins emoji
        inside = {self.folder, *self.folder.iterdir()}
        self.assertEqual({path for path in self.folder.rglob("*")} - inside, set())
        for line in outcome.log.rstrip("\n").split("\n"):
            self.assertRegex(line, r"^\[(veltro|ffmpeg)\] ")

    def test_cookies_open_a_page_and_its_file(self):
        cookies = harness.ROOT / "tests/site/cookies"
        self.assertIn("403", self.save("/cookies", "--cookies", cookies / "other.txt").error)
        outcome = self.save("/cookies", "--cookies", cookies / "session.txt")
        self.assertEqual(outcome.code, 0, outcome.error)


if __name__ == "__main__":
    unittest.main()
