// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/download_item.h"
#include "library/library_items_model.h"
#include "ui/library/library_removal.h"
#include "ui/library/library_selection.h"
#include "ui/library/library_services.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSizeF>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace veltro {

/// What the library's screen knows and does: the items that a search finds, the choice among them,
/// the texts of the player's column, and the removal of items. Lives as long as the screen is
/// shown, and its choice with it. Main thread.
class LibraryScreen : public QObject, private TileRows {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(veltro::LibraryServices *services READ services WRITE setServices NOTIFY
                   servicesChanged REQUIRED)
    Q_PROPERTY(QAbstractItemModel *items READ items CONSTANT)
    Q_PROPERTY(veltro::LibrarySelection *selection READ selection CONSTANT)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    /// Nothing was ever saved, or all of it was deleted.
    Q_PROPERTY(bool empty READ isEmpty NOTIFY emptyChanged)

    // The one item that is chosen; empty when there is none or more than one.
    Q_PROPERTY(QString title READ title NOTIFY chosenChanged)
    Q_PROPERTY(QString details READ details NOTIFY chosenChanged)
    Q_PROPERTY(QUrl file READ file NOTIFY chosenChanged)
    Q_PROPERTY(bool hasFile READ hasFile NOTIFY chosenChanged)
    // The choice as a whole.
    Q_PROPERTY(QString countText READ countText NOTIFY chosenChanged)
    Q_PROPERTY(QString totalText READ totalText NOTIFY chosenChanged)
    Q_PROPERTY(QString deleteText READ deleteText NOTIFY chosenChanged)

    Q_PROPERTY(int columns READ columns NOTIFY gridChanged)
    Q_PROPERTY(QSizeF tile READ tile NOTIFY gridChanged)

    // Remembered from one start of the program to the next.
    Q_PROPERTY(double playerWidth READ playerWidth NOTIFY memoryChanged)
    Q_PROPERTY(double volume READ volume NOTIFY memoryChanged)
    Q_PROPERTY(bool muted READ isMuted NOTIFY memoryChanged)

public:
    explicit LibraryScreen(QObject *parent = nullptr);

    [[nodiscard]] LibraryServices *services() const { return m_services; }
    void setServices(LibraryServices *services);
    [[nodiscard]] QAbstractItemModel *items() { return &m_model; }
    [[nodiscard]] LibrarySelection *selection() { return &m_selection; }
    [[nodiscard]] QString search() const { return m_model.search(); }
    void setSearch(const QString &text);
    [[nodiscard]] bool isEmpty() const;

    [[nodiscard]] QString title() const { return m_one ? m_one->title : QString(); }
    [[nodiscard]] QString details() const;
    [[nodiscard]] QUrl file() const;
    [[nodiscard]] bool hasFile() const { return !file().isEmpty(); }
    [[nodiscard]] QString countText() const;
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] QString deleteText() const;

    [[nodiscard]] int columns() const { return m_grid.columns; }
    [[nodiscard]] QSizeF tile() const { return m_grid.tile; }
    /// Lays the tiles out in a width.
    Q_INVOKABLE void layOut(double width, double captionHeight);

    Q_INVOKABLE void reveal(const QUrl &file);
    Q_INVOKABLE void open(const QUrl &file);
    /// The items that are chosen, shown or hidden by a search.
    Q_INVOKABLE void deleteSelected();
    Q_INVOKABLE void deleteItem(const QUuid &id);
    /// What a tile that is dragged away carries, as text/uri-list: its file, or those of the whole
    /// choice when it is of it.
    Q_INVOKABLE [[nodiscard]] QString draggedFiles(const QUuid &id) const;

    /// The badge of a tile; empty when the length is not known.
    Q_INVOKABLE [[nodiscard]] QString durationText(const QVariant &seconds) const;
    Q_INVOKABLE [[nodiscard]] QString spokenTile(const QString &title, const QString &uploader,
                                                 const QVariant &seconds) const;

    [[nodiscard]] double playerWidth() const { return m_playerWidth; }
    [[nodiscard]] double volume() const { return m_volume; }
    [[nodiscard]] bool isMuted() const { return m_muted; }
    Q_INVOKABLE void rememberPlayerWidth(double width);
    Q_INVOKABLE void rememberVolume(double volume, bool muted);

Q_SIGNALS:
    void servicesChanged();
    void searchChanged();
    void emptyChanged();
    void chosenChanged();
    void gridChanged();
    void memoryChanged();
    /// An item that was asked for from outside has been chosen: it belongs into view.
    void itemShown();

private:
    struct Facts {
        QUrl file;
        qint64 bytes = 0;
    };

    [[nodiscard]] int rowCount() const override { return m_model.count(); }
    [[nodiscard]] QUuid idAt(int row) const override { return m_model.idAt(row); }
    [[nodiscard]] int rowOf(const QUuid &id) const override { return m_model.rowOf(id); }

    void takeRequest();
    void showAwaited();
    void updateChosen();
    void keepWhatSearchHides();
    [[nodiscard]] std::optional<DownloadItem> item(const QUuid &id) const;
    [[nodiscard]] Facts facts(const QUuid &id) const;
    [[nodiscard]] std::vector<QUuid> inOrder(const QSet<QUuid> &ids) const;
    void remove(const QSet<QUuid> &ids);
    void recall();
    void remember() const;

    QPointer<LibraryServices> m_services;
    LibraryItemsModel m_model;
    LibrarySelection m_selection;
    TileGrid m_grid;
    std::optional<DownloadItem> m_one;
    std::optional<QUuid> m_awaited;      // asked for from outside, and not yet among the rows
    QHash<QUuid, DownloadItem> m_hidden; // those of the choice that a search may hide

    double m_playerWidth = 0; // 0 until somebody moved the divider
    double m_volume = 1;
    bool m_muted = false;
};

}
