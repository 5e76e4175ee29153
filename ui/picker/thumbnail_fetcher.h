// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/picker/thumbnail_picture.h"

#include <QObject>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

namespace veltro {

/// What is fetched at most, and how long it may take.
struct ThumbnailLimits {
    qint64 bytes = 8 * 1024 * 1024;
    int redirects = 5;
    int milliseconds = 20'000;
};

/// Whether a thumbnail may be fetched from there: http and https alone.
[[nodiscard]] bool isWebAddress(const QUrl &address);

/// Fetches one picture from the web and decodes it, all on the thread that it lives on. Each step
/// of a redirection is held to http and https too. No cookies are sent or kept. Announces its
/// result once; deleting it earlier ends the transfer.
class ThumbnailFetcher : public QObject {
    Q_OBJECT
public:
    ThumbnailFetcher(QUrl address, ThumbnailShape shape, ThumbnailLimits limits = {});
    ~ThumbnailFetcher() override;

    /// On the thread that the fetcher lives on.
    void start();

Q_SIGNALS:
    /// Null when there is nothing to show.
    void finished(const QImage &picture);

private:
    void ask(const QUrl &address);
    void takeBytes();
    void finish();
    void follow(const QUrl &target);

    // Constant after construction.
    const QUrl m_address;
    const ThumbnailShape m_shape;
    const ThumbnailLimits m_limits;
    // Of the fetcher's thread.
    QNetworkAccessManager *m_network = nullptr;
    QNetworkReply *m_reply = nullptr;
    QByteArray m_data;
    int m_redirects = 0;
};

}
