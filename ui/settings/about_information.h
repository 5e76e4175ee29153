// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/bundle_information.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// What the settings and the menus say about the program itself; constant.
class AboutInformation : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString version READ version CONSTANT)
    // Empty where the bundle names none: nothing is shown that leads nowhere.
    Q_PROPERTY(QUrl supportPage READ supportPage CONSTANT)
    Q_PROPERTY(QUrl privacyPage READ privacyPage CONSTANT)
    Q_PROPERTY(QUrl noticesPage READ noticesPage CONSTANT)
public:
    /// Of the program that runs.
    explicit AboutInformation(QObject *parent = nullptr);
    explicit AboutInformation(BundleInformation information, QObject *parent = nullptr);

    /// "0.1.0" when the bundle does not say.
    [[nodiscard]] QString version() const;
    [[nodiscard]] QUrl supportPage() const { return m_information.supportPage; }
    [[nodiscard]] QUrl privacyPage() const { return m_information.privacyPage; }
    [[nodiscard]] QUrl noticesPage() const { return m_information.noticesPage; }

private:
    const BundleInformation m_information;
};

}
