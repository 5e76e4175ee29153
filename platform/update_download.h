// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCryptographicHash>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>

namespace veltro {

/// Fetches one address into memory or into a file, up to a number of bytes. Main thread only; ends
/// when it is destroyed.
class UpdateDownload : public QObject {
    Q_OBJECT
public:
    /// More than that many bytes are a failure.
    UpdateDownload(QUrl address, qint64 mostBytes, QObject *parent = nullptr);
    ~UpdateDownload() override;

    /// Begins; into the file where one is named.
    void start(QNetworkAccessManager &network, const QString &file = QString());

    [[nodiscard]] const QByteArray &content() const { return m_content; } ///< without a file
    [[nodiscard]] qint64 bytes() const { return m_bytes; }
    [[nodiscard]] QByteArray sha256() const { return m_digest.result(); }

Q_SIGNALS:
    void progressed(qint64 bytes);
    /// Comes once; an empty text says that all is there.
    void ended(const QString &failure);

private:
    void takeArrived();
    void end(const QString &failure);

    const QUrl m_address;
    const qint64 m_mostBytes;
    std::unique_ptr<QFile> m_file;
    QByteArray m_content;
    QCryptographicHash m_digest{QCryptographicHash::Sha256};
    qint64 m_bytes = 0;
    QNetworkReply *m_reply = nullptr; // a child of the network manager
};

}
