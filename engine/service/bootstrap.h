// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace veltro {

class EngineState;

/// Starts the interpreter, imports the support module and yt-dlp, and lets the one adjust the
/// other. On every path the calling thread ends up without the interpreter lock that the start
/// gave it. REQUIRES: on the primary interpreter queue.
/// @throws EngineError bootstrapFailed; errors of the interpreter's start pass unchanged.
void bootstrapEngine(EngineState &state);

}
