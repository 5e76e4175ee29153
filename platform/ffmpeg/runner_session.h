// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/media_tools.h"

#include <memory>

namespace veltro::ffmpeg {

/// A session that runs one ffmpeg command line with the libraries of this process.
[[nodiscard]] std::unique_ptr<Session> makeRunnerSession();

}
