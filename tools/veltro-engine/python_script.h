// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoro/QCoroTask>
#include <QStringList>

namespace veltro {

/// Runs a script as __main__ on the primary interpreter queue, with the arguments (the script's
/// path first) in sys.argv. Yields the script's exit code; an uncaught exception is printed and
/// yields 1. REQUIRES: the engine is bootstrapped.
[[nodiscard]] QCoro::Task<int> runPythonScript(QStringList arguments);

}
