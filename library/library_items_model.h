// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/library_query.h"

#include <QAbstractListModel>

#include <memory>

namespace veltro {

/// The items of the library as a live list, the newest first. It fills after it was given a
/// container, off the main thread, and follows what any container writes row by row; it is reset
/// only when a search changes most of it. Main thread only.
class LibraryItemsModel : public QAbstractListModel {
    Q_OBJECT
    /// Shows the items whose title or uploader has this in it, case aside, and accents that are
    /// not typed; all when it is empty.
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    /// How many of the newest items there are for this list; 0 for all.
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged)
    /// The rows, which are the items that were found.
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// The items, found or not.
    Q_PROPERTY(int total READ total NOTIFY totalChanged)
    /// Whether the list has all it can have.
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY isLoadedChanged)
public:
    enum Role {
        itemIdRole = Qt::UserRole, ///< QUuid
        titleRole,                 ///< QString, of any characters
        uploaderRole,              ///< QString, empty when nobody knows
        hostRole,                  ///< QString, of the page; empty when it has none
        sourceUrlRole,             ///< QUrl
        localFileUrlRole,          ///< QUrl, empty when there is none
        thumbnailFileUrlRole,      ///< QUrl, empty when there is none
        durationSecondsRole,       ///< double, or an invalid value when nobody knows
        fileSizeBytesRole,         ///< qint64
        completedAtRole,           ///< QDateTime in UTC, or an invalid value
        formatLabelRole,           ///< QString
    };
    Q_ENUM(Role)

    explicit LibraryItemsModel(QObject *parent = nullptr);
    ~LibraryItemsModel() override;

    /// Begins to show what the container holds; the list stays empty without one.
    void setContainer(std::shared_ptr<ModelContainer> container);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] const QString &search() const { return m_search; }
    void setSearch(const QString &text);
    [[nodiscard]] int limit() const { return m_limit; }
    void setLimit(int limit);
    [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }
    [[nodiscard]] int total() const { return m_total; }
    [[nodiscard]] bool isLoaded() const { return m_isLoaded; }

    /// A null id when there is no such row.
    Q_INVOKABLE QUuid idAt(int row) const;
    /// -1 when the item is not among the rows.
    Q_INVOKABLE int rowOf(const QUuid &id) const;
    /// REQUIRES: a row of the model.
    [[nodiscard]] DownloadItem itemAt(int row) const
    {
        return m_rows.at(static_cast<std::size_t>(row))->item();
    }
    /// Nothing when the item is not among the rows.
    [[nodiscard]] std::optional<DownloadItem> item(const QUuid &id) const;

Q_SIGNALS:
    void searchChanged();
    void limitChanged();
    void countChanged();
    void totalChanged();
    void isLoadedChanged();
    /// The rows are those of the search text now.
    void searchAnswered();

private:
    struct Door;

    void begin();
    void turnAway();
    void end();
    void take(LibraryUpdate &update);
    void apply(const RowChange &change);
    void replaceAll(LibraryRows &rows);
    [[nodiscard]] QVariant value(const LibraryRow &row, int role) const;

    std::shared_ptr<ModelContainer> m_container;
    std::shared_ptr<LibraryQuery> m_query; // null without a container
    std::shared_ptr<Door> m_door;          // by which the query's updates reach this object
    QString m_search;
    std::uint64_t m_searchNumber = 0;
    std::uint64_t m_answered = 0;
    int m_limit = 0;
    int m_total = 0;
    bool m_isLoaded = false;
    LibraryRows m_rows;
};

}
