// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/download_progress_state.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace veltro {

// What a row of the queue says about its record. Every function here is pure.

/// The name of the state: "Queued", "Downloading", ...
[[nodiscard]] QString statusLabel(ItemState::Kind kind);

/// The host of the page; the whole address when it has none.
[[nodiscard]] QString hostText(const QUrl &page);

/// The text with a blank in place of each break of a line and each tab.
[[nodiscard]] QString singleLine(QString text);

/// The parts of the line below the bar; an empty part is not shown.
struct ProgressDetail {
    QString position; ///< the segment, or the bytes done
    QString total;    ///< beside bytes only
    QString speed;
    QString timeLeft;
    bool operator==(const ProgressDetail &) const = default;
};

[[nodiscard]] ProgressDetail progressDetail(const DownloadProgressState &record);

/// Truncated to a whole number; nothing when it is not finite or does not fit 64 bits.
[[nodiscard]] std::optional<qint64> wholeNumber(std::optional<double> number);

/// What a screen reader says after the title: the state, the stage of the processing or the
/// reason of the failure, and how far the download is.
[[nodiscard]] QString spokenDescription(const DownloadProgressState &record);

}
