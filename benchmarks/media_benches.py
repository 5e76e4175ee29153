# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the library asks of a saved file: a picture, what is in it; and what a day of it costs."""

import os

from measuring import paired, verdict
from runner_benches import bench_folder, make, media_runner, merge, tool

PAGE_SIZE = os.sysconf("SC_PAGE_SIZE")


def clip(place, size, rate):
    """A film as pages serve it: at their bit rates, with a key frame every five seconds."""
    return make(bench_folder(place), f"clip{size}-{rate}.mp4", "-f", "lavfi", "-i",
                f"testsrc2=s={size}:r=30:d=10", "-f", "lavfi", "-i", "sine=d=10", "-vf",
                "noise=alls=12:allf=t", "-c:v", "libx264", "-preset", "veryfast", "-g", "150",
                "-b:v", rate, "-maxrate", rate, "-bufsize", rate, "-pix_fmt", "yuv420p",
                "-c:a", "aac")


def stills(place, size, rate, name, reach):
    file = clip(place, size, rate)
    image = str(bench_folder(place) / "still.jpg")
    tools_way = ["-y", "-ss", "1", "-i", file, "-frames:v", "1", "-vf",
                 "scale='min(800,iw)':-2", "-q:v", "4.5", image]
    with media_runner(place) as run:
        times = paired(lambda: run(["still", file])[0], lambda: tool(tools_way)[0], 15)
    os.remove(image)
    yield f"{name}: " + verdict(*times, "the ffmpeg tool as a process", reach)


def still(place):
    yield from stills(place, "640x360", "700k", "360p", 0.15)
    yield from stills(place, "1920x1080", "4M", "1080p", 0.9)


def probing(file):
    """The command that yt-dlp looks into a file with."""
    return ["-hide_banner", "-show_format", "-show_streams", "-print_format", "json",
            "file:" + file]


def probe_file(place):
    command = probing(clip(place, "640x360", "700k"))
    with media_runner(place) as run:
        times = paired(lambda: run(["ffprobe", *command])[0],
                       lambda: tool(command, program="ffprobe")[0], 21)
    yield verdict(*times, "the ffprobe tool as a process", 0.1)


def resident(process):
    with open(f"/proc/{process}/statm", encoding="ascii") as numbers:
        return int(numbers.read().split()[1]) * PAGE_SIZE / 1e6


def memory(place):
    """Whether a process that looks into files and merges them all day grows."""
    file = clip(place, "640x360", "700k")
    output = str(bench_folder(place) / "merged.mp4")

    with media_runner(place) as run:
        def probe(times):
            for _ in range(times):
                run(["ffprobe", *probing(file)])

        def convert(times):
            for _ in range(times):
                run(merge(file, file, output))

        probe(20)
        convert(20)
        first = resident(run.process)
        probe(500)
        convert(100)
        second = resident(run.process)
        probe(500)
        third = resident(run.process)
    os.remove(output)
    yield (f"{first:.1f} MB at first, growth by 500 probes and 100 merges {second - first:.1f} MB, "
           f"at most 10; by 500 probes more {third - second:.1f} MB, at most 3")
