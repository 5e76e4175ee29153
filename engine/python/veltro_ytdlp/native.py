# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The media functions that the host program exports, and the only use of ctypes.

A call releases the interpreter lock for as long as it runs, so that a probe goes on beside it.
The texts of a call belong to the thread that made it and last until that thread's next call.
"""

import dataclasses
import functools
import os
from typing import Any, Protocol

_MISSING = 'The media functions of the program are missing.'


@dataclasses.dataclass(frozen=True)
class Outcome:
    """What a finished call leaves: the tool's code (0, 1, or 255 when cancelled) and texts."""

    code: int
    output: str
    log: str


@dataclasses.dataclass(frozen=True)
class Progress:
    """How far a call has come: bytes written and seconds of the result."""

    size: int
    seconds: float


class Tools(Protocol):
    """What the rest of this package asks of the media functions."""

    def run(self, tool: str, arguments: list[str]) -> Outcome:
        """Run 'ffmpeg' or 'ffprobe' on this thread; arguments leave out the program's name."""

    def cancel(self, thread_id: int) -> None:
        """Stop the call of the thread with that kernel id; does nothing where none runs."""

    def progress(self, thread_id: int) -> Progress | None:
        """How far the call of that thread has come, or None where none runs."""


class HostTools:
    """The functions of the process that this interpreter lives in."""

    def __init__(self) -> None:
        import ctypes

        process = ctypes.CDLL(None)
        self._types = ctypes
        self._runs = {'ffmpeg': process.VeltroFFmpegRun, 'ffprobe': process.VeltroFFprobeRun}
        for run in self._runs.values():
            run.argtypes = (ctypes.c_int32, ctypes.POINTER(ctypes.c_char_p))
            run.restype = ctypes.c_int32
        self._output, self._log = process.VeltroFFmpegOutput, process.VeltroFFmpegLog
        self._output.restype = self._log.restype = ctypes.c_char_p
        self._cancel = process.VeltroFFmpegCancel
        self._cancel.argtypes, self._cancel.restype = (ctypes.c_int64,), None
        self._progress = process.VeltroFFmpegProgress
        self._progress.restype = ctypes.c_int32
        self._progress.argtypes = (
            ctypes.c_int64, ctypes.POINTER(ctypes.c_int64), ctypes.POINTER(ctypes.c_double))

    def run(self, tool: str, arguments: list[str]) -> Outcome:
        encoded = [os.fsencode(argument) for argument in arguments]
        vector = (self._types.c_char_p * len(encoded))(*encoded)
        code = self._runs[tool](len(encoded), vector)
        return Outcome(code, _text(self._output()), _text(self._log()))

    def cancel(self, thread_id: int) -> None:
        self._cancel(thread_id)

    def progress(self, thread_id: int) -> Progress | None:
        size, seconds = self._types.c_int64(), self._types.c_double()
        running = self._progress(thread_id, self._types.byref(size), self._types.byref(seconds))
        return Progress(size.value, seconds.value) if running else None


class MissingTools:
    """Stands in where the host exports nothing: every call fails with a sentence."""

    def run(self, tool: str, arguments: list[str]) -> Outcome:
        return Outcome(1, '', _MISSING)

    def cancel(self, thread_id: int) -> None:
        pass

    def progress(self, thread_id: int) -> Progress | None:
        return None


def _text(value: Any) -> str:
    return (value or b'').decode('utf-8', 'replace')


@functools.cache
def _host_tools() -> Tools:
    try:
        return HostTools()
    except (AttributeError, OSError):
        return MissingTools()


_substitute: Tools | None = None


def tools() -> Tools:
    """The media functions in use."""
    return _substitute or _host_tools()


def use(substitute: Tools | None) -> None:
    """Put other media functions in place, or the host's own again with None."""
    global _substitute
    _substitute = substitute
