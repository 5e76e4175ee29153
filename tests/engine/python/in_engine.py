# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs tests inside the engine's own interpreter: veltro-engine python in_engine.py MODULE…"""

import os
import sys
import unittest

_HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [_HERE, os.path.join(_HERE, '../../site')]
program = unittest.main(module=None, argv=['in_engine', *sys.argv[1:]], exit=False,
                        warnings='ignore')
sys.exit(0 if program.result.wasSuccessful() else 1)
