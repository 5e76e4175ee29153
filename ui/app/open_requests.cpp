// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/app/open_requests.h"

namespace veltro {

QUrl openRequest(const QString &address)
{
    const QString trimmed = address.trimmed();
    QUrl given(trimmed);
    if (given.scheme() == QStringLiteral("veltro")) {
        return given;
    }
    const QByteArray encoded = QUrl::toPercentEncoding(trimmed);
    return QUrl::fromEncoded("veltro://open?url=" + encoded, QUrl::StrictMode);
}

}
