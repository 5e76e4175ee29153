# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What saved files wait for: merging two streams, and making a file playable."""

import contextlib
import os
import re
import resource
import subprocess
import time

from measuring import paired, verdict

# Conversions lower their own priority by this much; the tool is started so.
STEP_BACK = 7
PLAYABLE = ["-b:v", "4M", "-allow_sw", "1", "-pix_fmt", "yuv420p", "-c:a", "copy",
            "-movflags", "+faststart"]


@contextlib.contextmanager
def media_runner(place):
    """A process that runs command lines one after another, as the program does: a function that
    takes one and returns its wall and its processor seconds. "ffprobe" or "still" before the words
    makes them those of a probe, or the name of a file that a still is taken of."""
    process = subprocess.Popen([str(place.bundle / "veltro-bench-media")], stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE, text=True)

    def run(arguments):
        process.stdin.write("\n".join(arguments) + "\n\n")
        process.stdin.flush()
        code, wall, processor = process.stdout.readline().split()
        if code != "0":
            raise RuntimeError(f"the command ended with {code}")
        return float(wall), float(processor)

    run.process = process.pid
    try:
        yield run
    finally:
        process.stdin.close()
        process.wait(30)


def tool(arguments, step_back=0, program="ffmpeg"):
    """A stock tool's wall and processor seconds."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    begin = time.monotonic()
    subprocess.run(["nice", "-n", str(step_back), program, *arguments], check=True,
                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wall = time.monotonic() - begin
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return wall, after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def make(folder, name, *arguments):
    """A file that is made once and kept."""
    made = folder / name
    if not made.exists():
        part = made.with_name("part." + name)
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", *arguments, str(part)],
                       check=True)
        os.replace(part, made)
    return str(made)


def bench_folder(place):
    folder = place.root / "build/bench"
    folder.mkdir(parents=True, exist_ok=True)
    return folder


def merge(video, audio, output):
    """The command of a merge, as it comes from yt-dlp."""
    return ["-y", "-loglevel", "repeat+info", "-i", "file:" + video, "-i", "file:" + audio,
            "-c", "copy", "-map", "0:v:0", "-map", "1:a:0", "-movflags", "+faststart",
            "file:" + output]


def merging(place, size, reach, pairs):
    """Merging a picture of about this many bytes with sound of the same length."""
    folder = bench_folder(place)
    seconds = 20
    # Noise that no encoder can do anything about, at the bit rate that gives the size.
    rate = str(size * 8 // seconds)
    video = make(folder, f"video{size >> 20}.mp4", "-f", "lavfi", "-i",
                 f"testsrc2=s=1280x720:r=30:d={seconds}", "-vf", "noise=alls=100:allf=t",
                 "-c:v", "libx264", "-preset", "ultrafast",
                 "-g", "60", "-pix_fmt", "yuv420p", "-b:v", rate, "-minrate", rate,
                 "-maxrate", rate, "-bufsize", rate)
    audio = make(folder, "sound.m4a", "-f", "lavfi", "-i", f"sine=d={seconds}")
    ours, theirs = (str(folder / f"{name}.mp4") for name in ("ours", "theirs"))
    with media_runner(place) as run:
        times = paired(lambda: run(merge(video, audio, ours))[0],
                       lambda: tool(merge(video, audio, theirs))[0], pairs)
    megabytes = os.path.getsize(theirs) / 1e6
    yield f"{megabytes:.1f} MB: " + verdict(*times, "the ffmpeg tool as a process", reach)
    yield "the files are " + ("equal" if same(ours, theirs) else "NOT EQUAL")
    for file in (ours, theirs):
        os.remove(file)


def same(a, b):
    return subprocess.run(["cmp", "-s", a, b], check=False).returncode == 0


def remux(place):
    yield from merging(place, 2_000_000, 0.25, 21)
    # The large file is made by repeating, and goes with the bench.
    folder = bench_folder(place)
    small = make(folder, "noise.mp4", "-f", "lavfi", "-i", "testsrc2=s=1280x720:r=30:d=1",
                 "-vf", "noise=alls=100:allf=t", "-c:v", "libx264", "-preset", "ultrafast",
                 "-qp", "12", "-pix_fmt", "yuv420p")
    rounds = max(1, 500_000_000 // os.path.getsize(small))
    large = str(folder / "video500.mp4")
    sound = str(folder / "sound500.m4a")
    ours, theirs = (str(folder / f"{name}.mp4") for name in ("ours", "theirs"))
    try:
        tool(["-y", "-stream_loop", str(rounds - 1), "-i", small, "-c", "copy", large])
        tool(["-y", "-f", "lavfi", "-i", f"sine=d={rounds}", sound])
        with media_runner(place) as run:
            times = paired(lambda: run(merge(large, sound, ours))[0],
                           lambda: tool(merge(large, sound, theirs))[0], 7)
        megabytes = os.path.getsize(theirs) / 1e6
        yield f"{megabytes:.0f} MB: " + verdict(*times, "the ffmpeg tool as a process", 1.0)
        yield "the files are " + ("equal" if same(ours, theirs) else "NOT EQUAL")
    finally:
        for file in (large, sound, ours, theirs):
            with contextlib.suppress(FileNotFoundError):
                os.remove(file)


def film(place):
    """20 seconds of 1080p at 30 frames a second, VP9 with Opus, somewhat noisy."""
    return make(bench_folder(place), "film.webm", "-f", "lavfi", "-i",
                "testsrc2=d=20:s=1920x1080:r=30", "-f", "lavfi", "-i", "sine=d=20", "-vf",
                "noise=alls=12:allf=t", "-c:v", "libvpx-vp9", "-deadline", "realtime", "-cpu-used",
                "8", "-row-mt", "1", "-b:v", "4M", "-c:a", "libopus")


def playable(source, encoder, output):
    return ["-y", "-hide_banner", "-i", source, "-c:v", *encoder, *PLAYABLE, output]


def without_own_option(arguments):
    """Only our own parser knows one of the arguments."""
    at = arguments.index("-allow_sw")
    return arguments[:at] + arguments[at + 2:]


def codecs_alone(place, source):
    """The processor seconds of decoding alone and of encoding alone, with the same settings."""
    raw = str(bench_folder(place) / "film.y4m")
    try:
        decode = tool(["-y", "-i", source, "-map", "0:v", "-f", "null", "-"], STEP_BACK)[1]
        tool(["-y", "-i", source, "-map", "0:v", raw])
        encode = tool(["-y", "-i", raw, "-c:v", "libx264", "-preset", "veryfast", "-b:v", "4M",
                       "-pix_fmt", "yuv420p", "-f", "null", "-"], STEP_BACK)[1]
    finally:
        with contextlib.suppress(FileNotFoundError):
            os.remove(raw)
    return decode, encode


def transcode(place):
    source = film(place)
    folder = bench_folder(place)
    ours, theirs = (str(folder / f"{name}.mp4") for name in ("ours", "theirs"))
    # What our conversion chooses where the arguments say nothing: the preset, and a variable rate
    # that keeps the source's timestamps.
    equal = ["libx264", "-preset", "veryfast", "-vsync", "passthrough", "-enc_time_base", "-1"]
    with media_runner(place) as run:
        costs = paired(
            lambda: run(playable(source, ["h264_videotoolbox"], ours)),
            lambda: tool(without_own_option(playable(source, equal, theirs)), STEP_BACK), 7)
    times, processor = ([[cost[kind] for cost in side] for side in costs] for kind in (0, 1))
    yield verdict(*times, "the ffmpeg tool at the same settings", 1.0)
    yield "processor time: " + verdict(*processor, "the same", "about 1.0")
    decode, encode = codecs_alone(place, source)
    limit = (decode + encode) / os.cpu_count()
    yield (f"limit {limit:.2f} s (decoding {decode:.2f} s, encoding {encode:.2f} s of processor "
           f"time over {os.cpu_count()} cores), ratio of the best {min(times[0]) / limit:.3f}, to "
           "reach 1.15")


def ssim(file, source):
    answer = subprocess.run(
        ["ffmpeg", "-nostdin", "-hide_banner", "-i", file, "-i", source, "-lavfi",
         "[0:v]setpts=N/30/TB[a];[1:v]setpts=N/30/TB[b];[a][b]ssim", "-f", "null", "-"],
        check=True, capture_output=True, text=True)
    return float(re.search(r"All:([0-9.]+)", answer.stderr).group(1))


def transcode_as_used(place):
    source = film(place)
    folder = bench_folder(place)
    ours, theirs = (str(folder / f"{name}.mp4") for name in ("ours", "theirs"))
    with media_runner(place) as run:
        times = paired(
            lambda: run(playable(source, ["h264_videotoolbox"], ours))[0],
            lambda: tool(without_own_option(playable(source, ["libx264"], theirs)),
                         STEP_BACK)[0], 5)
    yield verdict(*times, "the ffmpeg tool with its own defaults", 0.6)
    likeness = [ssim(file, source) for file in (ours, theirs)]
    yield (f"SSIM {likeness[0]:.4f} against {likeness[1]:.4f}, "
           f"a loss of {likeness[1] - likeness[0]:.4f}, at most 0.005")
