# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Media functions for the tests.

A plain interpreter has none, so the stock tools play them; the program itself never starts those.
"""

import re
import subprocess
import tempfile
import threading
from collections.abc import Iterable, Iterator

from veltro_ytdlp import native


class Watched:
    """Media functions whose commands a test can look at and let fail."""

    def __init__(self, tools: native.Tools) -> None:
        self.commands: list[list[str]] = []
        # The log of a command that fails because a word of it is a key.
        self.failing: dict[str, str] = {}
        self.cancel = tools.cancel
        self.progress = tools.progress
        self._tools = tools

    def run(self, tool: str, arguments: list[str]) -> native.Outcome:
        self.commands.append([tool, *arguments])
        for word, log in self.failing.items():
            if any(word in argument for argument in arguments):
                return native.Outcome(1, '', log)
        return self._tools.run(tool, arguments)


def media_tools() -> native.Tools:
    """The engine's own functions inside the engine, elsewhere the stock tools."""
    inside = isinstance(native.tools(), native.HostTools)
    return native.tools() if inside else StockTools()


class StockTools:
    """Runs each command as a child process of the thread that asked for it."""

    def __init__(self) -> None:
        self._running: dict[int, subprocess.Popen] = {}
        self._sizes: dict[int, int] = {}
        self._cancelled: set[int] = set()

    def run(self, tool: str, arguments: list[str]) -> native.Outcome:
        return self._run(tool, arguments, threading.get_native_id())

    def _run(self, tool: str, arguments: list[str], thread: int) -> native.Outcome:
        reports = ['-progress', 'pipe:1', '-stats_period', '0.1'] if tool == 'ffmpeg' else []
        with tempfile.TemporaryFile('w+', errors='replace') as log:
            process = subprocess.Popen(
                [tool, *reports, *arguments], text=True, errors='replace',
                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=log)
            self._running[thread] = process
            output = ''.join(self._followed(thread, process.stdout))
            process.wait()
            del self._running[thread]
            log.seek(0)
            return native.Outcome(self._code(thread, process), output, log.read())

    def _followed(self, thread: int, lines: Iterable[str]) -> Iterator[str]:
        """The lines of the output; those that tell how far the tool is are noted besides."""
        for line in lines:
            yield line
            if (told := re.match(r'total_size=(\d+)', line)):
                self._sizes[thread] = int(told[1])
        self._sizes.pop(thread, None)

    def _code(self, thread: int, process: subprocess.Popen) -> int:
        process.stdout.close()
        if thread not in self._cancelled:
            return process.returncode
        self._cancelled.discard(thread)
        return 255

    def cancel(self, thread_id: int) -> None:
        if thread_id in self._running:
            self._cancelled.add(thread_id)
            self._running[thread_id].terminate()

    def progress(self, thread_id: int) -> native.Progress | None:
        if thread_id not in self._running:
            return None
        return native.Progress(self._sizes.get(thread_id, 0), 1.0)
