// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/pictures/framed_picture.h"

#include <QObject>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;
class QThread;

namespace veltro {

/// What is fetched at most, and how long it may take.
struct WebPictureLimits {
    qint64 bytes = 8 * 1024 * 1024;
    int redirects = 5;
    int milliseconds = 20'000;
};

/// Whether a picture may be fetched from there: http and https alone.
[[nodiscard]] bool isWebAddress(const QUrl &address);

/// Fetches one picture from the web and decodes it, all on the thread that it lives on. Each step
/// of a redirection is held to http and https too. No cookies are sent or kept. Announces its
/// result once; deleting it earlier, from whatever thread with deleteLater(), ends the transfer.
class WebPicture : public QObject {
    Q_OBJECT
public:
    WebPicture(QUrl address, PictureFrame frame, WebPictureLimits limits = {});
    ~WebPicture() override;

    /// On the thread that this lives on.
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
    const PictureFrame m_frame;
    const WebPictureLimits m_limits;
    // Of the thread that this lives on.
    QNetworkAccessManager *m_network = nullptr;
    QNetworkReply *m_reply = nullptr;
    QByteArray m_data;
    int m_redirects = 0;
};

/// Where the window's pictures of the web are fetched. Started on first use, ends with the
/// application object. Main thread.
[[nodiscard]] QThread &webPictureThread();

}
