#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes what veltro-fuzz begins with: make_corpus.py FOLDER.

FOLDER/files are small files of every kind that is read, made by the stock tool and always the same;
FOLDER/media are those that command lines name, FOLDER/arguments.txt are the command lines.
"""
import shutil
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent

VIDEO = "-f lavfi -i testsrc2=d=0.4:s=64x48:r=10"
SOUND = "-f lavfi -i sine=d=0.4"
BOTH = f"{VIDEO} {SOUND}"
H264 = "-c:v libx264 -preset ultrafast -bf 2 -pix_fmt yuv420p"
VP9 = "-c:v libvpx-vp9 -deadline realtime -cpu-used 8"

SUBTITLES = "1\n00:00:00,050 --> 00:00:00,150\nHello\n\n2\n00:00:00,200 --> 00:00:00,300\n<i>Two</i>\n"
CHAPTERS = (";FFMETADATA1\ntitle=A title\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=200\ntitle=one\n"
            "[CHAPTER]\nTIMEBASE=1/1000\nSTART=200\nEND=400\ntitle=two\n")

TEXTS = {
    "text.srt": SUBTITLES,
    "text.vtt": "WEBVTT\n\nNOTE a note\n\n00:00.050 --> 00:00.150 align:start\n<b>Hello</b>\n",
    "chapters.meta": CHAPTERS,
    "list.mp4": "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nsegment.ts\n#EXT-X-ENDLIST\n",
    "script.mp4": "ffconcat version 1.0\nfile segment.ts\n",
    "session.mp4": "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\n"
                   "m=audio 5004 RTP/AVP 0\n",
    "manifest.mp4": '<?xml version="1.0"?>\n<MPD><Period><AdaptationSet><Representation>'
                    "<BaseURL>segment.ts</BaseURL></Representation></AdaptationSet></Period></MPD>\n",
}

MEDIA = [
    f"{BOTH} {H264} -c:a aac plain.mp4",
    "-i plain.mp4 -c copy -movflags frag_keyframe+empty_moov+default_base_moof fragments.mp4",
    "-i plain.mp4 -i text.srt -i chapters.meta -map 0 -map 1 -map_metadata 2 -c copy"
    " -c:s mov_text -metadata:s:v rotate=90 -movflags +faststart full.mp4",
    "-i plain.mp4 -c copy a.ts -c copy a.flv -c copy a.mov",
    f"{BOTH} {VP9} -c:a libopus a.webm",
    "-i a.webm -i text.srt -i chapters.meta -map 0 -map 1 -map_metadata 2 -attach text.vtt"
    " -metadata:s:t mimetype=text/vtt -c copy full.mkv",
    f"{BOTH} -c:v libvpx -deadline realtime -c:a libvorbis vp8.webm",
    f"{VIDEO} -c:v libaom-av1 -cpu-used 8 -frames:v 2 av1.mp4",
    f"{VIDEO} -c:v libx265 -preset ultrafast -x265-params log-level=none hevc.mp4",
    f"{VIDEO} -c:v libx264 -preset ultrafast -pix_fmt yuv422p10 ten.mkv",
    f"{VIDEO} -c:v ffv1 -pix_fmt gbrp odd.mkv",
    f"{BOTH} -c:v mpeg4 -c:a libmp3lame a.avi",
    f"{BOTH} -c:v mpeg2video -c:a mp2 a.mpg",
    f"{BOTH} -c:v flv -c:a libmp3lame -ar 22050 old.flv",
    f"{BOTH} -c:v libtheora -c:a libvorbis a.ogv",
    f"{BOTH} -c:v wmv2 -c:a wmav2 a.wmv",
    f"{VIDEO} -c:v libx264 -preset ultrafast bare.h264",
    f"{SOUND} a.mp3 a.aac a.flac a.wav a.m4a",
    f"{SOUND} -c:a libopus a.opus -c:a libvorbis a.ogg -c:a ac3 a.ac3",
    f"{VIDEO} -frames:v 1 a.png -frames:v 1 a.jpg a.gif",
    "-i a.mp3 -i a.jpg -map 0 -map 1 -c copy -id3v2_version 3 cover.mp3",
    "-i a.m4a -i a.jpg -map 0 -map 1 -c copy -disposition:v attached_pic cover.m4a",
    "-i text.srt text.ass",
]

NAMED = ["plain.mp4", "a.ts", "a.webm", "a.m4a", "a.mp3", "full.mkv", "text.srt", "text.vtt",
         "chapters.meta", "a.jpg", "a.png"]


def main(folder):
    shutil.rmtree(folder, ignore_errors=True)
    files = folder / "files"
    media = folder / "media"
    files.mkdir(parents=True)
    media.mkdir()
    for name, text in TEXTS.items():
        (files / name).write_text(text, encoding="utf-8")
    for command in MEDIA:
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", "-threads", "1",
                        *command.split()], check=True, cwd=files)
    for name in NAMED:
        shutil.copyfile(files / name, media / name)
    (media / "list.ffconcat").write_text("ffconcat version 1.0\nfile plain.mp4\nfile plain.mp4\n",
                                         encoding="utf-8")
    shutil.copyfile(HERE / "arguments.txt", folder / "arguments.txt")
    for found in sorted((HERE / "found").glob("*")):
        if found.suffix not in ("", ".arguments"):
            shutil.copyfile(found, files / found.name)


if __name__ == "__main__":
    main(Path(sys.argv[1]))
