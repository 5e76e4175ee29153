// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/run_control.h"
#include "platform/ffmpeg/scheduler.h"

namespace veltro::ffmpeg {

/// The lines that the tool prints about what a run is going to do, and about what it has done.
void reportMapping(const OutputFiles &outputs, const RunContext &run);
void reportResult(const OutputFiles &outputs, const RunContext &run);

}
