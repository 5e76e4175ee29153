// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cookie_jars_model.h"

#include "library/database.h"
#include "library/model_container.h"
#include "library/model_context.h"
#include "platform/log.h"
#include "platform/serial_queue.h"

#include <QFile>

#include <algorithm>
#include <mutex>
#include <utility>

namespace veltro {
namespace {

QString textAt(const Statement &statement, int column)
{
    const std::string_view text = statement.text(column);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::vector<CookieJar> readJars(Database &database)
{
    Statement statement =
        database.prepare("SELECT host, fileURL, updatedAt FROM CookieJar ORDER BY host");
    std::vector<CookieJar> jars;
    while (statement.step()) {
        jars.push_back({textAt(statement, 0), QUrl::fromEncoded(textAt(statement, 1).toUtf8()),
                        QDateTime::fromMSecsSinceEpoch(statement.integer(2), Qt::UTC)});
    }
    return jars;
}

}

/// Reads the jars on the store's queue, at first and after each change; there are few of them.
class CookieJarsModel::Query : public std::enable_shared_from_this<CookieJarsModel::Query> {
public:
    Query(std::shared_ptr<ModelContainer> container, CookieJarsModel *model)
        : m_container(std::move(container)), m_model(model)
    {}

    /// Main thread.
    void start()
    {
        m_subscription = StoreChanges::shared().subscribe(
            [weak = weak_from_this(), file = m_container->file()](const StoreChange &change) {
                if (const auto self = weak.lock();
                    self && change.changesCookieJars && change.file == file) {
                    self->enqueue();
                }
            });
        enqueue();
    }

    /// Main thread. The model hears of nothing after that.
    void stop()
    {
        m_subscription.reset();
        const std::lock_guard guard(m_lock);
        m_model = nullptr;
    }

private:
    void enqueue()
    {
        storeQueue().async([self = shared_from_this()] { self->read(); });
    }

    void read()
    {
        std::vector<CookieJar> jars;
        try {
            Database database = m_container->openForReading();
            jars = readJars(database);
        } catch (const StoreError &error) {
            logLine(LogTag::engine, error.what());
            return;
        }
        const std::lock_guard guard(m_lock);
        if (m_model != nullptr) {
            QMetaObject::invokeMethod(
                m_model,
                [self = shared_from_this(), model = m_model, jars = std::move(jars)] {
                    if (model->m_query == self) {
                        model->take(jars);
                    }
                },
                Qt::QueuedConnection);
        }
    }

    const std::shared_ptr<ModelContainer> m_container;
    StoreChanges::Subscription m_subscription; // main thread
    std::mutex m_lock;
    CookieJarsModel *m_model; // guarded by m_lock; null once the model has turned away
};

CookieJarsModel::CookieJarsModel(QObject *parent) : QAbstractListModel(parent) {}

CookieJarsModel::~CookieJarsModel()
{
    end();
}

void CookieJarsModel::setContainer(std::shared_ptr<ModelContainer> container)
{
    end();
    take({});
    m_container = std::move(container);
    if (m_container) {
        m_query = std::make_shared<Query>(m_container, this);
        m_query->start();
    }
}

void CookieJarsModel::end()
{
    if (m_query) {
        m_query->stop();
        m_query.reset();
    }
}

int CookieJarsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QHash<int, QByteArray> CookieJarsModel::roleNames() const
{
    return {{hostRole, "host"}, {fileUrlRole, "fileUrl"}, {updatedAtRole, "updatedAt"}};
}

QVariant CookieJarsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const CookieJar &jar = m_jars.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Qt::DisplayRole:
    case hostRole:
        return jar.host;
    case fileUrlRole:
        return jar.fileURL;
    case updatedAtRole:
        return jar.updatedAt;
    default:
        return {};
    }
}

void CookieJarsModel::removeJar(const QString &host)
{
    const auto jar = std::find_if(m_jars.begin(), m_jars.end(),
                                  [&host](const CookieJar &each) { return each.host == host; });
    if (jar == m_jars.end()) {
        return;
    }
    QFile::remove(jar->fileURL.toLocalFile()); // one that is gone already is no matter
    ModelContext context(m_container);
    context.removeJar(host);
    context.saveInBackground();
}

void CookieJarsModel::take(const std::vector<CookieJar> &jars)
{
    const int oldCount = count();
    const auto has = [](const std::vector<CookieJar> &list, const QString &host) {
        return std::any_of(list.begin(), list.end(),
                           [&host](const CookieJar &each) { return each.host == host; });
    };
    for (int row = count() - 1; row >= 0; --row) {
        if (!has(jars, m_jars[static_cast<std::size_t>(row)].host)) {
            beginRemoveRows({}, row, row);
            m_jars.erase(m_jars.begin() + row);
            endRemoveRows();
        }
    }
    // What is left is in the new list, in the same order.
    for (int row = 0; row < static_cast<int>(jars.size()); ++row) {
        put(row, jars[static_cast<std::size_t>(row)]);
    }
    if (count() != oldCount) {
        Q_EMIT countChanged();
    }
    if (std::exchange(m_isLoaded, m_query != nullptr) != m_isLoaded) {
        Q_EMIT isLoadedChanged();
    }
}

void CookieJarsModel::put(int row, const CookieJar &jar)
{
    const auto place = m_jars.begin() + row;
    if (place == m_jars.end() || place->host != jar.host) {
        beginInsertRows({}, row, row);
        m_jars.insert(place, jar);
        endInsertRows();
    } else if (*place != jar) {
        *place = jar;
        Q_EMIT dataChanged(index(row), index(row));
    }
}

}
