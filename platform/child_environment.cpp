// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/child_environment.h"

#include <QFile>

namespace veltro {

QProcessEnvironment childEnvironment()
{
    // The kernel's copy: later changes are made elsewhere.
    QFile file(QStringLiteral("/proc/self/environ"));
    QProcessEnvironment environment;
    if (file.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> entries = file.readAll().split('\0');
        for (const QByteArray &entry : entries) {
            const qsizetype equals = entry.indexOf('=');
            if (equals > 0) {
                environment.insert(QString::fromLocal8Bit(entry.left(equals)),
                                   QString::fromLocal8Bit(entry.mid(equals + 1)));
            }
        }
    }
    environment.remove(QStringLiteral("XDG_ACTIVATION_TOKEN"));
    environment.remove(QStringLiteral("DESKTOP_STARTUP_ID"));
    return environment;
}

}
