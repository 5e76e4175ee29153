// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

namespace veltro {

/// Names the saved cookie file of one host. A plain value, known by its host.
struct CookieJar {
    QString host; ///< as a URL reports it; unique in the store
    QUrl fileURL;
    QDateTime updatedAt; ///< when the file was last saved

    bool operator==(const CookieJar &) const = default;
};

// Cookie files, in the Netscape cookies.txt format. Any thread.

/// The folder that holds them, made when it is missing, for its owner alone.
/// @throws std::system_error when it cannot be made.
[[nodiscard]] QUrl cookiesDirectory();

/// Where the file of a host lies, whether or not there is one; nothing when the host can name no
/// file. The host is taken exactly as it is: with and without a leading www label are two.
/// @throws std::system_error as cookiesDirectory() does.
[[nodiscard]] std::optional<QUrl> cookieFileURL(const QString &host);

}
