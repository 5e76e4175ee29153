# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The one way in which a function of yt-dlp is replaced."""

import functools
from collections.abc import Callable
from typing import Any

_MARK = '_veltro_replacement'


def replace(owner: type, name: str, make: Callable[[Callable], Callable]) -> None:
    """Put make(original) in the place of owner.name, unless that has been done before.

    Asking the name itself, and not a list of our own, keeps a repeated bootstrap harmless.
    """
    original = getattr(owner, name)
    if is_replaced(owner, name):
        return
    replacement = make(original)
    functools.update_wrapper(replacement, original)
    setattr(replacement, _MARK, True)
    setattr(owner, name, replacement)


def is_replaced(owner: Any, name: str) -> bool:
    """Whether owner.name is a replacement of ours."""
    return getattr(getattr(owner, name, None), _MARK, False)
