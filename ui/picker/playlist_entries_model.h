// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/media_info.h"

#include <QAbstractListModel>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace veltro {

/// The entries of a playlist page that have an http or https address of their own, in the page's
/// order; the same address may stand twice. Main thread only.
class PlaylistEntriesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A picker has one")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
public:
    enum Role {
        title = Qt::UserRole, ///< text
        host,                 ///< text
        duration,             ///< text: "4:05"; empty when not known
    };

    using QAbstractListModel::QAbstractListModel;

    void setEntries(const std::vector<MediaInfo> &entries);
    [[nodiscard]] int count() const { return static_cast<int>(m_entries.size()); }
    [[nodiscard]] QString address(int row) const;
    /// One address a line.
    [[nodiscard]] QString addresses() const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    struct Entry {
        QString title;
        QUrl address;
        std::optional<double> durationSeconds;
    };
    std::vector<Entry> m_entries;
};

/// A length as a clock writes it: "0:07", "4:05", "1:02:03"; empty when it is no length at all.
[[nodiscard]] QString clockText(std::optional<double> seconds);

}
