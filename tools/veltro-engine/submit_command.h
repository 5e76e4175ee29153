// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoro/QCoroTask>
#include <QStringList>

namespace veltro {

/// submit URL… [--format S]: the coordinator without its window. Queues the addresses as a batch
/// does, or, given a selector, as the start screen does; prints each record's states as JSON lines
/// until nothing is left to do. Files and library are the user's own. Main thread; yields the
/// process's exit code: 0 when all were saved, 1 when not, 2 when it was asked wrongly.
[[nodiscard]] QCoro::Task<int> submitCommand(QStringList arguments);

}
