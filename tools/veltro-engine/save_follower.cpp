// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/veltro-engine/save_follower.h"

#include "tools/veltro-engine/json_lines.h"

#include <variant>

namespace veltro {

QCoro::Task<bool> SaveFollower::follow(DownloadRequest request)
{
    auto stream = m_service.downloadEvents(request);
    std::exception_ptr failure;
    try {
        while (std::optional<DownloadEvent> event = co_await stream.next()) {
            show(*event);
            cancelWhenDue(request.id, *event);
        }
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        showFailure(failure);
    }
    co_return !failure;
}

void SaveFollower::show(const DownloadEvent &event)
{
    if (m_style == Style::progressLine) {
        m_line.show(event);
    } else {
        printJsonLine(toJson(event));
    }
}

void SaveFollower::showFailure(const std::exception_ptr &failure)
{
    const QJsonObject error = errorToJson(failure);
    if (m_style == Style::progressLine) {
        m_line.fail(error.value(QStringLiteral("text")).toString());
    } else {
        printJsonLine(error);
    }
}

void SaveFollower::cancelWhenDue(const QUuid &id, const DownloadEvent &event)
{
    const auto *const progress = std::get_if<DownloadProgressed>(&event);
    if (progress != nullptr && m_cancelAfterBytes && progress->bytesDone >= *m_cancelAfterBytes) {
        m_service.cancelDownload(id);
    }
}

}
