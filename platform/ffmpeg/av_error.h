// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <string>

namespace veltro::ffmpeg {

/// The text that the tool prints for an AVERROR code, in English when a LocaleScope is in force.
[[nodiscard]] std::string errorText(int error);

}
