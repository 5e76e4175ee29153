// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/detach.h"

#include "platform/log.h"

#include <utility>

namespace veltro {
namespace {

QCoro::Task<void> watchOver(QCoro::Task<void> task, QString what)
{
    try {
        co_await task;
    } catch (...) {
        const QString line =
            what + QStringLiteral(" failed: ") + errorText(std::current_exception());
        logLine(LogTag::engine, line.toStdString());
    }
}

}

void detach(QCoro::Task<void> task, QString what)
{
    watchOver(std::move(task), std::move(what));
}

QString errorText(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const std::exception &failure) {
        return QString::fromUtf8(failure.what());
    } catch (...) {
        return QStringLiteral("Unknown error.");
    }
}

}
