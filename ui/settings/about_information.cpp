// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/about_information.h"

#include "platform/bundle.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace veltro {

QString shortVersion(const std::filesystem::path &bundleRoot)
{
    QFile file(QString::fromStdString((bundleRoot / "Contents/Info.json").string()));
    QByteArray text;
    if (file.open(QIODevice::ReadOnly)) {
        constexpr qint64 largest = 1 << 20;
        text = file.read(largest);
    }
    const QJsonValue version =
        QJsonDocument::fromJson(text).object().value(QLatin1String("shortVersion"));
    return version.isString() ? version.toString() : QStringLiteral("0.1.0");
}

QString AboutInformation::version() const
{
    return shortVersion(Bundle::main().root());
}

QUrl AboutInformation::supportPage() const
{
    return QUrl(QStringLiteral("https://veltro.app/support"));
}

QUrl AboutInformation::privacyPage() const
{
    return QUrl(QStringLiteral("https://veltro.app/privacy"));
}

QUrl AboutInformation::noticesPage() const
{
    return QUrl(QStringLiteral("https://veltro.app/open-source"));
}

}
