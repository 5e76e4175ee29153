// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/service/yt_dlp_service.h"
#include "tools/veltro-engine/progress_line.h"

#include <QCoro/QCoroTask>

#include <exception>
#include <optional>

namespace veltro {

/// Follows downloads to their end and prints each event, as JSON lines or for a person. Can cancel
/// a run once it has reported a number of bytes. Main thread.
class SaveFollower {
public:
    enum class Style { jsonLines, progressLine };

    SaveFollower(Style style, std::optional<qint64> cancelAfterBytes)
        : m_style(style), m_cancelAfterBytes(cancelAfterBytes)
    {}

    /// Whether the file was saved; what went wrong has been printed.
    [[nodiscard]] QCoro::Task<bool> follow(DownloadRequest request);

private:
    void show(const DownloadEvent &event);
    void showFailure(const std::exception_ptr &failure);
    void cancelWhenDue(const QUuid &id, const DownloadEvent &event);

    YtDlpService m_service;
    ProgressLine m_line;
    const Style m_style;
    const std::optional<qint64> m_cancelAfterBytes;
};

}
