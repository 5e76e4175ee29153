# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Finds what lies beside this package in the program's bundle."""

import functools
import os


@functools.cache
def resource(name: str) -> str | None:
    """The path of a file or folder of Contents/Resources, or None.

    This package may be reached through a link in the bundle root or lie in the source tree, so
    both the place it was imported from and the place it really lies in are looked at.
    """
    here = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    for folder in (here, os.path.join(here, 'Contents', 'Resources'), os.path.realpath(here)):
        path = os.path.join(folder, name)
        if os.path.exists(path):
            return path
    return None
