// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoro/QCoroTask>
#include <QStringList>

namespace veltro {

/// library list [--limit COUNT] | search TEXT: the items of the user's library as JSON lines, the
/// newest first. Main thread; yields the process's exit code.
[[nodiscard]] QCoro::Task<int> libraryCommand(QStringList arguments);

}
