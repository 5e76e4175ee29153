// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bundle_information.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace veltro {
namespace {

QUrl webPage(const QJsonValue &value)
{
    const QUrl page(value.toString(), QUrl::StrictMode);
    const bool isOfTheWeb =
        page.scheme() == QLatin1String("https") || page.scheme() == QLatin1String("http");
    return isOfTheWeb && !page.host().isEmpty() ? page : QUrl();
}

}

BundleInformation BundleInformation::of(const std::filesystem::path &bundleRoot)
{
    constexpr qint64 shortestInterval = 3'600;
    constexpr qint64 largestFile = 1 << 20;
    BundleInformation information;
    QFile file(QString::fromStdString((bundleRoot / "Contents/Info.json").string()));
    if (!file.open(QIODevice::ReadOnly)) {
        return information;
    }
    const QJsonObject document = QJsonDocument::fromJson(file.read(largestFile)).object();
    information.shortVersion = document.value(QLatin1String("shortVersion")).toString();
    information.updateFeed = QUrl(document.value(QLatin1String("updateFeed")).toString());
    information.updateKey =
        QByteArray::fromBase64(document.value(QLatin1String("updateKey")).toString().toLatin1());
    information.checksForUpdates = document.value(QLatin1String("checksForUpdates")).toBool(true);
    information.updateIntervalSeconds =
        std::max(shortestInterval, document.value(QLatin1String("updateIntervalSeconds"))
                                       .toInteger(information.updateIntervalSeconds));
    information.supportPage = webPage(document.value(QLatin1String("supportPage")));
    information.privacyPage = webPage(document.value(QLatin1String("privacyPage")));
    information.noticesPage = webPage(document.value(QLatin1String("noticesPage")));
    information.managedBy = document.value(QLatin1String("managedBy")).toString();
    return information;
}

}
