# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The engine's adjustments of yt-dlp, one module a topic.

A module with apply() replaces something that yt-dlp's own objects reach by name; the others hold
a part of the YoutubeDL class that the engine constructs (see youtube_dl.py for how they meet).
"""
