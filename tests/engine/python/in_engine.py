# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs tests inside the engine's own interpreter: veltro-engine python in_engine.py MODULE…"""

import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
program = unittest.main(module=None, argv=['in_engine', *sys.argv[1:]], exit=False,
                        warnings='ignore')
sys.exit(0 if program.result.wasSuccessful() else 1)
