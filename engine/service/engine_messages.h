// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>

#include <exception>

namespace veltro {

/// An error's own text: for an exception of the interpreter its message, for any other error its
/// description. REQUIRES: inside an interpreter job.
[[nodiscard]] QString rawEngineMessage(const std::exception &error);

/// The error's text in a form short enough to show: without yt-dlp's marker, extractor name and
/// video identifier, and at most 220 characters long. REQUIRES: inside an interpreter job.
[[nodiscard]] QString cleanEngineMessage(const std::exception &error);

/// The shortening itself, for a text in hand. Any thread.
[[nodiscard]] QString cleanEngineText(QString text);

/// Whether the error says that the media is protected. REQUIRES: inside an interpreter job.
[[nodiscard]] bool isDRMFailure(const std::exception &error);

}
