// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/media_info.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace veltro {

/// The formats of one section of the picker. Main thread only.
class FormatRowsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A picker has one")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
public:
    enum Role {
        label = Qt::UserRole, ///< text: the one-line description
        extension,            ///< text: in capitals
        size,                 ///< text: empty when not known
    };

    using QAbstractListModel::QAbstractListModel;

    void setFormats(std::vector<Format> formats);
    [[nodiscard]] const std::vector<Format> &formats() const { return m_formats; }
    [[nodiscard]] int count() const { return static_cast<int>(m_formats.size()); }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    std::vector<Format> m_formats;
};

}
