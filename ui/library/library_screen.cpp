// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/library_screen.h"

#include "platform/byte_count.h"
#include "platform/workspace.h"
#include "ui/library/library_texts.h"
#include "ui/player/player_texts.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <utility>

namespace veltro {
namespace {

std::optional<double> secondsOf(const QVariant &value)
{
    return value.typeId() == QMetaType::Double ? std::optional(value.toDouble()) : std::nullopt;
}

QString libraryMemoryKey()
{
    return QStringLiteral("LibraryScreen");
}

}

LibraryScreen::LibraryScreen(QObject *parent) : QObject(parent), m_selection(*this)
{
    connect(&m_model, &LibraryItemsModel::totalChanged, this, &LibraryScreen::emptyChanged);
    connect(&m_model, &LibraryItemsModel::isLoadedChanged, this, &LibraryScreen::emptyChanged);
    connect(&m_model, &LibraryItemsModel::searchChanged, this, &LibraryScreen::searchChanged);
    connect(&m_model, &LibraryItemsModel::searchAnswered, this, [this] {
        if (search().isEmpty()) {
            m_hidden.clear();
        }
    });
    connect(&m_selection, &LibrarySelection::changed, this, &LibraryScreen::updateChosen);
    connect(&m_model, &LibraryItemsModel::countChanged, this, &LibraryScreen::showAwaited);
    connect(&m_model, &LibraryItemsModel::isLoadedChanged, this, &LibraryScreen::showAwaited);
    connect(&m_model, &LibraryItemsModel::searchAnswered, this, &LibraryScreen::showAwaited);
}

void LibraryScreen::setServices(LibraryServices *services)
{
    if (m_services == services) {
        return;
    }
    m_services = services;
    const auto takeContainer = [this] {
        m_model.setContainer(m_services ? m_services->container() : nullptr);
        Q_EMIT emptyChanged();
    };
    if (services) {
        connect(services, &LibraryServices::containerChanged, this, takeContainer);
        connect(services, &LibraryServices::asked, this, &LibraryScreen::takeRequest);
    }
    takeContainer();
    recall();
    takeRequest();
    Q_EMIT servicesChanged();
}

void LibraryScreen::takeRequest()
{
    const auto request = m_services ? m_services->takeRequest() : std::nullopt;
    if (!request) {
        return;
    }
    m_awaited = request->item;
    // What hides the item gives way to it.
    if (!request->item || m_model.rowOf(*request->item) < 0) {
        setSearch(request->search);
    }
    showAwaited();
}

// It may come with a later part of the list, or with the answer to a search.
void LibraryScreen::showAwaited()
{
    if (!m_awaited || m_model.rowOf(*m_awaited) < 0) {
        return;
    }
    m_selection.choose(*std::exchange(m_awaited, std::nullopt));
    Q_EMIT itemShown();
}

bool LibraryScreen::isEmpty() const
{
    // Not while the first items are on their way: the sentence would flash by.
    return m_model.total() == 0 && m_model.isLoaded();
}

void LibraryScreen::setSearch(const QString &text)
{
    if (text == search()) {
        return;
    }
    keepWhatSearchHides();
    m_model.setSearch(text);
}

void LibraryScreen::keepWhatSearchHides()
{
    for (const QUuid &id : m_selection.ids()) {
        if (const auto shown = m_model.item(id)) {
            m_hidden.insert(id, *shown);
        }
    }
}

std::optional<DownloadItem> LibraryScreen::item(const QUuid &id) const
{
    if (auto shown = m_model.item(id)) {
        return shown;
    }
    const auto hidden = m_hidden.constFind(id);
    return hidden == m_hidden.cend() ? std::nullopt : std::optional(*hidden);
}

LibraryScreen::Facts LibraryScreen::facts(const QUuid &id) const
{
    const int row = m_model.rowOf(id);
    if (row < 0) {
        const DownloadItem hidden = m_hidden.value(id);
        return {hidden.localFileURL.value_or(QUrl()), hidden.fileSizeBytes};
    }
    const QModelIndex index = m_model.index(row);
    return {m_model.data(index, LibraryItemsModel::localFileUrlRole).toUrl(),
            m_model.data(index, LibraryItemsModel::fileSizeBytesRole).toLongLong()};
}

void LibraryScreen::updateChosen()
{
    m_awaited.reset(); // whoever has chosen meanwhile
    if (m_selection.count() != 1) {
        m_one.reset();
    } else if (const QUuid id = *m_selection.ids().begin(); !m_one || m_one->id != id) {
        m_one = item(id);
    }
    Q_EMIT chosenChanged();
}

QString LibraryScreen::details() const
{
    return m_one ? detailsText(*m_one) : QString();
}

QUrl LibraryScreen::file() const
{
    return m_one ? m_one->localFileURL.value_or(QUrl()) : QUrl();
}

QString LibraryScreen::countText() const
{
    return selectedCountText(m_selection.count());
}

QString LibraryScreen::totalText() const
{
    qint64 total = 0;
    for (const QUuid &id : m_selection.ids()) {
        total += facts(id).bytes;
    }
    return fileByteCount(total);
}

QString LibraryScreen::deleteText() const
{
    return deleteCountText(m_selection.count());
}

void LibraryScreen::layOut(double width, double captionHeight)
{
    const TileGrid grid = TileGrid::fitting(width, captionHeight);
    if (m_grid != grid) {
        m_grid = grid;
        m_selection.setGrid(grid);
        Q_EMIT gridChanged();
    }
}

void LibraryScreen::reveal(const QUrl &file)
{
    if (m_services && !file.isEmpty()) {
        m_services->workspace().reveal(file);
    }
}

void LibraryScreen::open(const QUrl &file)
{
    if (m_services && !file.isEmpty()) {
        m_services->workspace().open(file);
    }
}

// The order of the list; what a search hides comes last.
std::vector<QUuid> LibraryScreen::inOrder(const QSet<QUuid> &ids) const
{
    std::vector<std::pair<int, QUuid>> placed;
    placed.reserve(static_cast<std::size_t>(ids.size()));
    for (const QUuid &id : ids) {
        const int row = m_model.rowOf(id);
        placed.emplace_back(row < 0 ? m_model.count() : row, id);
    }
    std::sort(placed.begin(), placed.end());
    std::vector<QUuid> ordered;
    ordered.reserve(placed.size());
    std::transform(placed.begin(), placed.end(), std::back_inserter(ordered),
                   [](const auto &one) { return one.second; });
    return ordered;
}

void LibraryScreen::remove(const QSet<QUuid> &ids)
{
    if (!m_services || !m_services->container() || ids.isEmpty()) {
        return;
    }
    std::vector<LibraryRemoval> removals;
    for (const QUuid &id : inOrder(ids)) {
        const QUrl file = facts(id).file;
        removals.push_back({id, file.isLocalFile() ? file.toLocalFile() : QString()});
    }
    // What plays lets go of its file first.
    m_selection.forget(ids);
    removeFromLibrary(m_services->container(), std::move(removals));
}

void LibraryScreen::deleteSelected()
{
    remove(m_selection.ids());
}

void LibraryScreen::deleteItem(const QUuid &id)
{
    remove({id});
}

QString LibraryScreen::draggedFiles(const QUuid &id) const
{
    const QSet<QUuid> ids = m_selection.contains(id) ? m_selection.ids() : QSet<QUuid>{id};
    QStringList lines;
    for (const QUuid &one : inOrder(ids)) {
        if (const QUrl file = facts(one).file; !file.isEmpty()) {
            lines.append(QString::fromLatin1(file.toEncoded()));
        }
    }
    return lines.join(QStringLiteral("\r\n"));
}

QString LibraryScreen::durationText(const QVariant &seconds) const
{
    const auto known = secondsOf(seconds);
    return known ? player::durationText(*known) : QString();
}

QString LibraryScreen::spokenTile(const QString &title, const QString &uploader,
                                  const QVariant &seconds) const
{
    return veltro::spokenTile(title, uploader, secondsOf(seconds));
}

void LibraryScreen::recall()
{
    const auto stored = m_services ? m_services->defaults().data(libraryMemoryKey()) : std::nullopt;
    const QJsonObject memory = QJsonDocument::fromJson(stored.value_or(QByteArray())).object();
    m_playerWidth = std::max(0.0, memory[u"playerWidth"].toDouble(0));
    m_volume = std::clamp(memory[u"volume"].toDouble(1), 0.0, 1.0);
    m_muted = memory[u"muted"].toBool(false);
    Q_EMIT memoryChanged();
}

void LibraryScreen::remember() const
{
    if (m_services) {
        const QJsonObject memory{{QStringLiteral("playerWidth"), m_playerWidth},
                                 {QStringLiteral("volume"), m_volume},
                                 {QStringLiteral("muted"), m_muted}};
        m_services->defaults().setData(libraryMemoryKey(),
                                       QJsonDocument(memory).toJson(QJsonDocument::Compact));
    }
}

void LibraryScreen::rememberPlayerWidth(double width)
{
    if (m_playerWidth != width) {
        m_playerWidth = width;
        remember();
        Q_EMIT memoryChanged();
    }
}

void LibraryScreen::rememberVolume(double volume, bool muted)
{
    if (m_volume != volume || m_muted != muted) {
        m_volume = volume;
        m_muted = muted;
        remember();
        Q_EMIT memoryChanged();
    }
}

}
