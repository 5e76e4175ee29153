// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/program_address.h"

namespace veltro {
namespace {

QString ownScheme()
{
    return QStringLiteral("veltro");
}

QString itemHost()
{
    return QStringLiteral("item");
}

bool hasScheme(const QString &address, const char *scheme)
{
    return address.startsWith(QLatin1String(scheme) + QLatin1Char(':'), Qt::CaseInsensitive);
}

}

std::optional<QUrl> programAddress(const QString &handedOver)
{
    const QString address = handedOver.trimmed();
    QUrl own;
    if (hasScheme(address, "veltro")) {
        own = QUrl(address, QUrl::TolerantMode);
    } else if (hasScheme(address, "http") || hasScheme(address, "https")) {
        // Everything but letters, digits and "-._~" is encoded, the percent signs too: it decodes
        // to the very text that came.
        own = QUrl::fromEncoded("veltro://open?url=" + QUrl::toPercentEncoding(address),
                                QUrl::StrictMode);
    }
    return own.isValid() && own.scheme() == ownScheme() ? std::optional(own) : std::nullopt;
}

QUrl libraryItemAddress(const QString &identifier)
{
    QUrl address;
    address.setScheme(ownScheme());
    address.setHost(itemHost());
    address.setPath(QLatin1Char('/') + identifier);
    return address;
}

std::optional<QUuid> libraryItemOf(const QUrl &address)
{
    if (address.scheme() != ownScheme() || address.host() != itemHost()) {
        return std::nullopt;
    }
    const QUuid id = QUuid::fromString(address.path().mid(1));
    return id.isNull() ? std::nullopt : std::optional(id);
}

}
