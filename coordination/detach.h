// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoro/QCoroTask>
#include <QString>

#include <exception>

namespace veltro {

/// Lets a task go on with nobody waiting for it. An error that escapes it goes to the log, led by
/// the words that say what was tried ("the batch"). Main thread.
void detach(QCoro::Task<void> task, QString what);

/// An error's own description, as the user is shown it.
[[nodiscard]] QString errorText(const std::exception_ptr &error);

}
