// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoro/QCoroTask>
#include <QUrl>

#include <memory>
#include <optional>

namespace veltro {

class DownloadProgressState;
class ModelContainer;

/// The way of a finished download into the library, and of a page to its cookies. Holds nothing
/// itself: all of them share one container, made on the first record() and kept, or found absent,
/// for the life of the process. Main thread; what takes time is done on a queue of its own.
class DownloadStorage {
public:
    /// Opens the store; nothing when that fails. Blocks; any thread.
    [[nodiscard]] static std::shared_ptr<ModelContainer> makeContainer();

    /// Writes the item of a finished download, with what its file tells, and hands it to the
    /// search index. A download without a file is none; what fails leaves its field empty.
    [[nodiscard]] QCoro::Task<void> record(std::shared_ptr<DownloadProgressState> progress);

    /// The host's cookie file, if there is one. @throws std::system_error when the folder for
    /// cookies cannot be made.
    [[nodiscard]] std::optional<QUrl> cookieFile(const std::optional<QString> &host) const;

    /// The picture that lies beside the media, or one made of it; nothing when neither works.
    [[nodiscard]] QCoro::Task<std::optional<QUrl>> thumbnail(QUrl media) const;

    /// How long the media plays.
    [[nodiscard]] QCoro::Task<std::optional<double>> duration(QUrl media) const;
};

}
