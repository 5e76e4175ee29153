// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoro/QCoroTask>
#include <QStringList>

namespace veltro {

// The harness's commands that need the engine. Main thread. Each yields the process's exit code:
// 0 when it did what it was asked, 1 when it failed, 2 when it was asked wrongly.

/// probe URL… [--cookies F]
[[nodiscard]] QCoro::Task<int> probeCommand(QStringList arguments);

/// save URL… --dir D [--format S] [--template T] [--cookies F] [--cancel-after-bytes N]
/// [--progress]
[[nodiscard]] QCoro::Task<int> saveCommand(QStringList arguments);

/// ready: starts the engine and says so.
[[nodiscard]] QCoro::Task<int> readyCommand(QStringList arguments);

/// python SCRIPT ARG…: runs a script inside the started engine.
[[nodiscard]] QCoro::Task<int> pythonCommand(QStringList arguments);

}
