// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <filesystem>

namespace veltro {

/// The short version in a bundle's information file; "0.1.0" when it is missing or no text.
[[nodiscard]] QString shortVersion(const std::filesystem::path &bundleRoot);

/// What the settings say about the program itself; constant.
class AboutInformation : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QUrl supportPage READ supportPage CONSTANT)
    Q_PROPERTY(QUrl privacyPage READ privacyPage CONSTANT)
    Q_PROPERTY(QUrl noticesPage READ noticesPage CONSTANT)
public:
    using QObject::QObject;

    /// Of the program that runs.
    [[nodiscard]] QString version() const;
    [[nodiscard]] QUrl supportPage() const;
    [[nodiscard]] QUrl privacyPage() const;
    [[nodiscard]] QUrl noticesPage() const;
};

}
