# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a user waits for: the engine's start, a page's offer, a saved page."""

import pathlib
import subprocess
import tempfile

from measuring import paired, seconds, verdict

PROBED_PAGE = "/jsonld"
SAVED_PAGES = 20


def engine_start(place):
    ours, baseline = paired(
        lambda: seconds([place.engine, "ready"]),
        lambda: seconds(place.python("-c", "import yt_dlp"), env=place.python_environment()), 15)
    yield verdict(ours, baseline, "the interpreter importing yt_dlp", 1.2)


def first_probe(place):
    with place.site() as site:
        url = site + PROBED_PAGE
        ours, baseline = paired(
            lambda: seconds([place.engine, "probe", url]),
            lambda: seconds(place.python("-m", "yt_dlp", "-J", url),
                            env=place.python_environment()), 9)
        yield verdict(ours, baseline, "yt-dlp -J", 1.0)


def warm_probe(place):
    """What one more probe costs a process that has made some."""
    more = 20
    with place.site() as site:
        url = site + PROBED_PAGE

        def ours():
            one = seconds([place.engine, "probe", url])
            many = seconds([place.engine, "probe", *[url] * (more + 1)])
            return (many - one) / more

        ours, baseline = paired(
            ours, lambda: seconds(place.python("-m", "yt_dlp", "-J", url),
                                  env=place.python_environment()), 5)
        yield verdict(ours, baseline, "yt-dlp -J", 0.08)


def packet_hash(file):
    """A digest over all packets of a file, in order."""
    return subprocess.run(
        ["ffmpeg", "-v", "error", "-i", file, "-map", "0", "-c", "copy", "-f", "streamhash", "-"],
        check=True, capture_output=True, text=True).stdout


def differences(ours, baseline):
    """What two folders do not have in common: names, side files' bytes, media packets."""
    names = [sorted(entry.name for entry in folder.iterdir()) for folder in (ours, baseline)]
    if names[0] != names[1]:
        return [f"other files: {sorted(set(names[0]) ^ set(names[1]))[:4]}"]
    found = []
    for name in names[0]:
        pair = [str(folder / name) for folder in (ours, baseline)]
        if name.endswith(".mp4"):
            same = packet_hash(pair[0]) == packet_hash(pair[1])
        else:
            same = pathlib.Path(pair[0]).read_bytes() == pathlib.Path(pair[1]).read_bytes()
        if not same:
            found.append(f"other content: {name}")
    return found


def save(place):
    selector = ("bestvideo[vcodec~='^(avc1|h264)']+bestaudio[ext=m4a]/bestvideo*+bestaudio/best")
    options = ["-f", selector, "--merge-output-format", "mp4", "--no-playlist", "--sub-langs", "en",
               "--embed-subs", "--write-thumbnail", "--force-overwrites"]
    with place.site() as site, tempfile.TemporaryDirectory() as scratch:
        urls = [f"{site}/bench/{number}" for number in range(1, SAVED_PAGES + 1)]
        ours_dir, baseline_dir = (pathlib.Path(scratch, name) for name in ("ours", "baseline"))
        for folder in (ours_dir, baseline_dir):
            folder.mkdir()
        template = str(baseline_dir / "%(title)s [%(id)s].%(ext)s")
        ours, baseline = paired(
            lambda: seconds([place.engine, "save", *urls, "--dir", str(ours_dir)]),
            lambda: seconds(place.python("-m", "yt_dlp", *options, "-o", template, *urls),
                            env=place.python_environment()), 3)
        yield verdict(ours, baseline, "one yt-dlp process with the ffmpeg tool", "under 1.0")
        found = differences(ours_dir, baseline_dir)
        yield "; ".join(found[:4]) or "packets and side files are equal in both"
