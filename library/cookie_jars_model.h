// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/cookie_jar.h"
#include "library/store_changes.h"

#include <QAbstractListModel>

#include <memory>
#include <vector>

namespace veltro {

class ModelContainer;

/// The saved cookie jars as a live list, by host. It fills after it was given a container, off the
/// main thread, and follows what any container writes row by row. Main thread only.
class CookieJarsModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// Whether the list has all it can have.
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY isLoadedChanged)
public:
    enum Role {
        hostRole = Qt::UserRole, ///< QString
        fileUrlRole,             ///< QUrl
        updatedAtRole,           ///< QDateTime in UTC
    };
    Q_ENUM(Role)

    explicit CookieJarsModel(QObject *parent = nullptr);
    ~CookieJarsModel() override;

    /// Begins to show what the container holds; the list stays empty without one.
    void setContainer(std::shared_ptr<ModelContainer> container);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] int count() const { return static_cast<int>(m_jars.size()); }
    [[nodiscard]] bool isLoaded() const { return m_isLoaded; }

    /// Removes the host's file, if there still is one, and its record. The row leaves in a moment.
    Q_INVOKABLE void removeJar(const QString &host);

Q_SIGNALS:
    void countChanged();
    void isLoadedChanged();

private:
    class Query;

    void take(const std::vector<CookieJar> &jars);
    void put(int row, const CookieJar &jar);
    void end();

    std::shared_ptr<ModelContainer> m_container;
    std::shared_ptr<Query> m_query;
    std::vector<CookieJar> m_jars;
    bool m_isLoaded = false;
};

}
