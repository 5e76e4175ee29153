// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/single_instance.h"

#include <QLocalServer>
#include <QLockFile>

class QLocalSocket;

namespace veltro {

/// Hands links between starts where there is no session bus: a lock says which process is the
/// first, a socket beside it takes one line of JSON for each later start. Main thread only.
class HandOverSocket : public QObject {
    Q_OBJECT
public:
    /// A child of the instance, which takes what arrives.
    explicit HandOverSocket(SingleInstance &instance);

    [[nodiscard]] SingleInstance::Outcome start(const QStringList &links,
                                                const QString &activationToken);

private:
    [[nodiscard]] bool handOver(const QByteArray &line) const;
    void serve(QLocalSocket *client);

    SingleInstance &m_instance;
    const QString m_path; // of the socket; the lock lies beside it
    QLockFile m_lock;
    QLocalServer m_server;
};

}
