# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What has to happen before yt_dlp is imported.

Its cryptography package asks the programs "file" and "ldconfig" about this machine while it is
imported, which costs a sixth of the whole import and finds out what is known here.
"""

import platform
import struct
import sys


def spare_processes() -> None:
    """Let the import of yt_dlp start no process."""
    bits = f'{8 * struct.calcsize("P")}bit'
    platform.architecture = lambda *_, **__: (bits, 'ELF')
    # Numbers of the system's own library; without it the package uses its own.
    sys.modules.setdefault('Cryptodome.Math._IntegerGMP', None)
