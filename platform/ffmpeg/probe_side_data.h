// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/probe_report.h"

struct AVStream;

namespace veltro::ffmpeg {

/// Adds what stands beside a stream's packets, the display matrix (rotation) above all, if there
/// is any.
void addSideData(ReportSection &section, const AVStream &stream);

}
