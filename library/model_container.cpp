// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/model_container.h"

#include "library/database.h"
#include "library/store_changes.h"
#include "platform/log.h"
#include "platform/serial_queue.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

#include <utility>

namespace veltro {

Database ModelContainer::openForReading()
{
    const std::unique_ptr<Database> first = m_store.takeFirst();
    return first ? std::move(*first) : Database(file());
}

void ModelContainer::write(const std::function<StoreChange(Database &)> &work)
{
    StoreChange change;
    {
        const std::lock_guard guard(m_lock);
        Transaction transaction(m_store.database());
        change = work(m_store.database());
        transaction.commit();
    }
    change.file = file();
    StoreChanges::shared().post(change);
}

std::shared_ptr<ModelContainer> makeContainer(const QString &file)
{
    try {
        return std::make_shared<ModelContainer>(file);
    } catch (const StoreError &error) {
        logLine(LogTag::engine, error.what());
        return nullptr;
    }
}

QCoro::Task<std::shared_ptr<ModelContainer>> makeContainerInBackground()
{
    using Container = std::shared_ptr<ModelContainer>;
    auto promise = std::make_shared<QPromise<Container>>();
    QFuture<Container> container = promise->future();
    storeQueue().async([promise] {
        promise->start();
        promise->addResult(makeContainer());
        promise->finish();
    });
    co_return co_await container;
}

SerialQueue &storeQueue()
{
    static SerialQueue queue("com.veltro.store");
    return queue;
}

}
