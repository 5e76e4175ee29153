#!/usr/bin/python3
# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes the media of the test site once: make_media.py OUT.

Everything is made by the stock ffmpeg tool from its own sources: clips of two seconds at 180
lines, and one set of about 5 MB for the bench. A stamp in OUT names the recipe that filled it, so
a second call does nothing, and a lock keeps parallel callers from making the same twice.
"""

import sys

sys.dont_write_bytecode = True

import concurrent.futures
import fcntl
import hashlib
import os
import pathlib
import random
import shutil
import subprocess

from testsite import media_texts

HERE = pathlib.Path(__file__).resolve().parent
STAMP = "made.stamp"
LOCK = ".lock"

PICTURE = "testsrc2=size=320x180:rate=24:duration=2"
SMALL_PICTURE = "testsrc2=size=160x90:rate=24:duration=2"
LONG_PICTURE = "testsrc2=size=160x90:rate=24:duration=20"
BENCH_PICTURE = "testsrc2=size=640x360:rate=24:duration=20,noise=alls=20"
# A little shorter than the picture: with the encoder's padding it still fits four segments.
TONE = "sine=frequency=440:sample_rate=48000:duration=1.95,aformat=channel_layouts=stereo"
LONG_TONE = "sine=frequency=440:sample_rate=48000:duration=20,aformat=channel_layouts=stereo"

# Half a second between key frames, so that a clip of two seconds has four segments.
X264 = ["-c:v", "libx264", "-preset", "veryfast", "-profile:v", "main", "-level", "1.3",
        "-pix_fmt", "yuv420p", "-g", "12", "-keyint_min", "12", "-sc_threshold", "0"]
AAC = ["-c:a", "aac", "-b:a", "64k"]
HLS = ["-c", "copy", "-f", "hls", "-hls_time", "0.5", "-hls_list_size", "0",
       "-hls_playlist_type", "vod"]
ON_DEMAND = ["-c", "copy", "-movflags", "+frag_keyframe+empty_moov+default_base_moof+global_sidx"]


def ffmpeg(out, *arguments):
    """Runs the stock tool in the folder `out`; its own words are the error."""
    command = ["ffmpeg", "-nostdin", "-hide_banner", "-loglevel", "error", "-y", *arguments]
    done = subprocess.run(command, cwd=out, capture_output=True, text=True, check=False)
    if done.returncode:
        raise RuntimeError(f"{' '.join(command)}\n{done.stderr}")


def picture(source, *encoder):
    return ["-f", "lavfi", "-i", source, *encoder, "-threads", "1", "-bitexact"]


def tone(source, *encoder):
    return ["-f", "lavfi", "-i", source, *encoder, "-bitexact"]


def copy(*inputs):
    arguments = []
    for name in inputs:
        arguments += ["-i", name]
    for index in range(len(inputs)):
        arguments += ["-map", str(index)]
    return [*arguments, "-c", "copy", "-bitexact"]


ENCODES = {
    "h264.mp4": picture(PICTURE, *X264),
    "h264-small.mp4": picture(SMALL_PICTURE, *X264),
    "h264-long.mp4": picture(LONG_PICTURE, *X264),
    "vp9.webm": picture(PICTURE, "-c:v", "libvpx-vp9", "-b:v", "150k", "-g", "12",
                        "-deadline", "realtime", "-cpu-used", "8"),
    "av1.mp4": picture(PICTURE, "-c:v", "libsvtav1", "-preset", "10", "-crf", "45", "-g", "12"),
    "hevc.mp4": picture(PICTURE, "-c:v", "libx265", "-preset", "ultrafast", "-tag:v", "hvc1",
                        "-x265-params", "log-level=error:keyint=12"),
    "mpeg4.mp4": picture(PICTURE, "-c:v", "mpeg4", "-q:v", "6"),
    "aac.m4a": tone(TONE, *AAC),
    "aac-long.m4a": tone(LONG_TONE, *AAC),
    "opus.webm": tone(TONE, "-c:a", "libopus", "-b:a", "48k"),
    "opus.opus": tone(TONE, "-c:a", "libopus", "-b:a", "48k"),
    "plain.mp3": tone(TONE, "-c:a", "libmp3lame", "-b:a", "64k"),
    "cover.jpg": picture("testsrc2=size=320x180:rate=1:duration=1", "-frames:v", "1", "-q:v", "4"),
    "cover.webp": picture("testsrc2=size=320x180:rate=1:duration=1", "-frames:v", "1"),
    "cover.png": picture("testsrc2=size=320x180:rate=1:duration=1", "-frames:v", "1"),
    # A constant rate, so that the size is known: 2 Mbit/s for 20 s is 5 MB.
    "bench/video-source.mp4": picture(
        BENCH_PICTURE, "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p",
        "-g", "48", "-b:v", "2M", "-minrate", "2M", "-maxrate", "2M", "-bufsize", "2M",
        "-x264-params", "nal-hrd=cbr"),
    "bench/audio-source.m4a": tone(LONG_TONE, "-c:a", "aac", "-b:a", "128k"),
}

# The encoders that an ffmpeg may lack: their pages answer 404 then.
OPTIONAL = {"hevc.mp4", "hevc-aac.mp4"}

COPIES = {
    "h264-aac.mp4": [*copy("h264.mp4", "aac.m4a"), "-movflags", "+faststart"],
    "h264-aac-index-last.mp4": copy("h264.mp4", "aac.m4a"),
    "vp9-opus.webm": copy("vp9.webm", "opus.webm"),
    "av1-opus.mp4": copy("av1.mp4", "opus.webm"),
    "av1-opus.webm": copy("av1.mp4", "opus.webm"),
    "hevc-aac.mp4": copy("hevc.mp4", "aac.m4a"),
    "mpeg4-mp3.mp4": copy("mpeg4.mp4", "plain.mp3"),
    "cover.mp3": [*copy("plain.mp3", "cover.jpg"), "-id3v2_version", "3",
                  "-disposition:v", "attached_pic"],
    "cover.m4a": [*copy("aac.m4a", "cover.jpg"), "-disposition:v", "attached_pic"],
    "ondemand/video.mp4": ["-i", "h264.mp4", *ON_DEMAND],
    "ondemand/video-small.mp4": ["-i", "h264-small.mp4", *ON_DEMAND],
    "ondemand/audio.m4a": ["-i", "aac.m4a", *ON_DEMAND],
    "bench/video.mp4": ["-i", "bench/video-source.mp4", *ON_DEMAND],
    "bench/audio.m4a": ["-i", "bench/audio-source.m4a", *ON_DEMAND],
    "hls/muxed/index.m3u8": ["-i", "h264-aac.mp4", *HLS],
    "hls/long/index.m3u8": ["-i", "h264-long.mp4", "-i", "aac-long.m4a", *HLS],
    "hls/aes/index.m3u8": ["-i", "h264-aac.mp4", *HLS, "-hls_key_info_file", "hls/aes/key.info"],
    "hls/ts/video.m3u8": ["-i", "h264.mp4", *HLS],
    "hls/ts/small.m3u8": ["-i", "h264-small.mp4", *HLS],
    "hls/ts/audio.m3u8": ["-i", "aac.m4a", *HLS],
    "hls/fmp4/video.m3u8": ["-i", "h264.mp4", *HLS, "-hls_segment_type", "fmp4",
                            "-hls_fmp4_init_filename", "video-init.mp4"],
    "hls/fmp4/audio.m3u8": ["-i", "aac.m4a", *HLS, "-hls_segment_type", "fmp4",
                            "-hls_fmp4_init_filename", "audio-init.mp4"],
}

# Segmented DASH: the folder, and the inputs of its adaptation sets (video first, audio last).
DASH = {
    "dash/h264-aac": ["h264.mp4", "h264-small.mp4", "aac.m4a"],
    "dash/vp9-opus": ["vp9.webm", "opus.webm"],
    "dash/av1-opus": ["av1.mp4", "opus.webm"],
}


def encode(out, name, arguments):
    """Makes one file; a missing optional encoder or input leaves the file out."""
    try:
        ffmpeg(out, *arguments, name)
    except RuntimeError:
        if name not in OPTIONAL:
            raise
        (out / name).unlink(missing_ok=True)


def segment_dash(out, folder, inputs):
    arguments = []
    for name in inputs:
        arguments += ["-i", name]
    for index in range(len(inputs)):
        arguments += ["-map", str(index)]
    video = ",".join(str(index) for index in range(len(inputs) - 1))
    ffmpeg(out, *arguments, "-c", "copy", "-f", "dash", "-seg_duration", "0.5",
           "-use_template", "1", "-use_timeline", "0", "-dash_segment_type", "mp4",
           "-adaptation_sets", f"id=0,streams={video} id=1,streams={len(inputs) - 1}",
           "-init_seg_name", "init-$RepresentationID$.m4s",
           "-media_seg_name", "chunk-$RepresentationID$-$Number$.m4s", f"{folder}/manifest.mpd")


def mend_target_durations(out):
    """ffmpeg rounds half a second to 0, but no segment may be longer than its target."""
    for playlist in out.glob("hls/*/*.m3u8"):
        text = playlist.read_text(encoding="utf-8")
        playlist.write_text(text.replace("TARGETDURATION:0", "TARGETDURATION:1"), encoding="utf-8")


def write_bad_files(out):
    """Files that no reader can finish, each in its own way."""
    bad = out / "bad"
    whole = (out / "h264-aac.mp4").read_bytes()
    late = (out / "h264-aac-index-last.mp4").read_bytes()
    noise = random.Random(1).randbytes(20000)
    payload = whole.index(b"mdat") + 4
    scrambled = random.Random(2).randbytes(len(whole) - payload)
    (bad / "empty.mp4").write_bytes(b"")
    (bad / "noise.mp4").write_bytes(noise)
    (bad / "scrambled.mp4").write_bytes(whole[:payload] + scrambled)
    (bad / "cut.mp4").write_bytes(whole[:payload + (len(whole) - payload) // 2])
    (bad / "no-index.mp4").write_bytes(late[:len(late) // 2])


def write_certificate(out):
    """A certificate for 127.0.0.1 that nobody signed but itself."""
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
         "-nodes", "-days", "3650", "-subj", "/CN=127.0.0.1",
         "-addext", "subjectAltName=IP:127.0.0.1,DNS:localhost",
         "-keyout", "key.pem", "-out", "cert.pem"],
        cwd=out / "tls", capture_output=True, check=True)


def fill(out):
    """Makes every file of the folder, encodes first, since all else copies them."""
    for name in [*ENCODES, *COPIES, *(f"{folder}/x" for folder in DASH),
                 *media_texts.FILES, "bad/x", "tls/x"]:
        (out / name).parent.mkdir(parents=True, exist_ok=True)
    for name, text in media_texts.FILES.items():
        (out / name).write_bytes(text)
    write_certificate(out)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(lambda item: encode(out, *item), ENCODES.items()))
        list(pool.map(lambda item: encode(out, *item),
                      (item for item in COPIES.items() if "hls/" not in item[0])))
        list(pool.map(lambda item: encode(out, *item),
                      (item for item in COPIES.items() if "hls/" in item[0])))
        list(pool.map(lambda item: segment_dash(out, *item), DASH.items()))
    mend_target_durations(out)
    write_bad_files(out)


def recipe():
    """A digest of everything that decides what the folder holds."""
    digest = hashlib.sha256()
    for source in (HERE / "make_media.py", HERE / "testsite/media_texts.py"):
        digest.update(source.read_bytes())
    return digest.hexdigest()


def ensure(out):
    """Fills `out` unless its stamp says that this recipe did. Any number of processes may call."""
    out = pathlib.Path(out)
    out.mkdir(parents=True, exist_ok=True)
    stamp = out / STAMP
    with open(out / LOCK, "w", encoding="utf-8") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if stamp.exists() and stamp.read_text(encoding="utf-8") == recipe():
            return out
        for entry in out.iterdir():
            if entry.is_dir():
                shutil.rmtree(entry)
            elif entry.name != LOCK:
                entry.unlink()
        fill(out)
        stamp.write_text(recipe(), encoding="utf-8")
    return out


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: make_media.py OUT")
    ensure(sys.argv[1])
