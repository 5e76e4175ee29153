// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/probe_report.h"

struct AVFormatContext;

namespace veltro::ffmpeg {

/// What a probe tells of an opened file whose streams are known. A LocaleScope must be in force.

/// @param selection a stream specifier; empty takes every stream. It has been checked before.
[[nodiscard]] ReportSection describeStreams(AVFormatContext &input, const std::string &selection);
[[nodiscard]] ReportSection describeFormat(AVFormatContext &input);

}
