// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QString>
#include <QUrl>

#include <filesystem>

namespace veltro {

/// What a bundle says of itself in Contents/Info.json. What is missing there has its default.
struct BundleInformation {
    QString shortVersion;
    QUrl updateFeed;      ///< empty where updates come another way
    QByteArray updateKey; ///< Ed25519, 32 bytes; empty where there is none
    bool checksForUpdates = true;
    qint64 updateIntervalSeconds = 86'400;
    QUrl supportPage; ///< the product's pages; empty where there is none
    QUrl privacyPage;
    QUrl noticesPage;
    QString managedBy; ///< what put the bundle there and keeps it up to date; empty for the user

    static BundleInformation of(const std::filesystem::path &bundleRoot);
};

}
