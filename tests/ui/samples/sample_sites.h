// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/preferences.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// Saved sites, from a moment ago to years ago.
class SampleSites : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

/// A record of settings for the screens to edit.
class SamplePreferences : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(veltro::Preferences preferences MEMBER m_preferences NOTIFY changed)
public:
    using QObject::QObject;

    /// For tests.
    [[nodiscard]] const Preferences &preferences() const { return m_preferences; }

Q_SIGNALS:
    void changed();

private:
    Preferences m_preferences;
};

}
