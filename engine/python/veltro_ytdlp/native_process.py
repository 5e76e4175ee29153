# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Calls of the media functions in the shape in which yt-dlp handles a child process."""

import subprocess
import threading
import time
from collections.abc import Callable
from typing import Any

from . import native

FFMPEG = '__veltro_ffmpeg__'
FFPROBE = '__veltro_ffprobe__'
_TOOLS = {FFMPEG: 'ffmpeg', FFPROBE: 'ffprobe'}

# Between two looks at a running call; the end of the call is noticed at once.
_LOOK_SECONDS = 0.2

# yt-dlp asks once for the version and for what it finds in these lines; no call is worth that.
_INFORMATION = """\
{tool} version 5.1
  libavformat    59. 27.100 / 59. 27.100
Bitstream filters:
aac_adtstoasc
setts
"""


def serves(command: Any) -> bool:
    """Whether the command names one of the media functions and no program."""
    return isinstance(command, (list, tuple)) and bool(command) and command[0] in _TOOLS


def run(command: list[str]) -> native.Outcome:
    """Run the command on this thread and leave a log that always ends in a sentence."""
    tool, arguments = _TOOLS[command[0]], [str(argument) for argument in command[1:]]
    if arguments in (['-bsfs'], ['-version']):
        return native.Outcome(0, _INFORMATION.format(tool=tool), '')
    outcome = native.tools().run(tool, arguments)
    if outcome.code and not outcome.log.strip():
        sentence = f'The media step ended with code {outcome.code}.'
        return native.Outcome(outcome.code, outcome.output, sentence)
    return outcome


class _Input:
    """Standard input of a call, of which only the wish to quit is understood."""

    def __init__(self, stop: Callable[[], None]) -> None:
        self._stop = stop

    def write(self, data: bytes) -> int:
        if data in (b'q', 'q'):
            self._stop()
        return len(data)

    def flush(self) -> None:
        pass

    close = flush


class NativeProcess:
    """A call that runs on a thread of its own while its owner waits or looks on.

    Owned and used by the thread that made it; only the call itself runs elsewhere.
    """

    def __init__(self, command: list[str], look: Callable[['NativeProcess'], None] | None) -> None:
        self.args = command
        self.returncode: int | None = None
        self.log = ''
        self.stdin = _Input(self._cancel)
        self.stdout = self.stderr = None
        self._look = look
        self._thread = threading.Thread(target=self._work, name='veltro-ffmpeg', daemon=True)
        self._thread.start()
        self.pid = self._thread.native_id

    def _work(self) -> None:
        try:
            outcome = run(self.args)
        except Exception as error:
            outcome = native.Outcome(1, '', f'The media step failed: {error}')
        self.log = outcome.log
        self.returncode = outcome.code

    def _cancel(self) -> None:
        native.tools().cancel(self.pid)

    def progress(self) -> native.Progress | None:
        return native.tools().progress(self.pid)

    def poll(self) -> int | None:
        return None if self._thread.is_alive() else self.returncode

    def wait(self, timeout: float | None = None) -> int:
        """Wait for the end; what the owner's look raises ends the waiting, not the call."""
        end = None if timeout is None else time.monotonic() + timeout
        while self._thread.is_alive():
            left = _LOOK_SECONDS if end is None else min(_LOOK_SECONDS, end - time.monotonic())
            if left <= 0:
                raise subprocess.TimeoutExpired(self.args, timeout)
            self._thread.join(left)
            if self._look and self._thread.is_alive():
                self._look(self)
        return self.returncode

    def kill(self, *, timeout: float | None = 0) -> None:
        """Stop the call and wait until it has let go of its files."""
        while self._thread.is_alive():
            # A call that has not begun yet does not hear the first word.
            self._cancel()
            self._thread.join(_LOOK_SECONDS)

    terminate = kill

    def communicate(self, input: bytes | None = None, timeout: float | None = None) -> tuple:
        if input:
            self.stdin.write(input)
        self.wait(timeout)
        return '', self.log

    def communicate_or_kill(self, *args: Any, **kwargs: Any) -> tuple:
        try:
            return self.communicate(*args, **kwargs)
        except BaseException:
            self.kill()
            raise

    def __enter__(self) -> 'NativeProcess':
        return self

    def __exit__(self, *_: Any) -> None:
        self.wait()
