// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/store_file.h"

#include <QCoro/QCoroTask>

#include <functional>
#include <memory>
#include <mutex>

namespace veltro {

class Database;
class SerialQueue;
struct StoreChange;

/// One way into the store of downloads and cookie jars. Several containers may stand on one file;
/// each hears what the others write. Any thread.
class ModelContainer {
public:
    /// @throws StoreError
    explicit ModelContainer(const QString &file) : m_store(file) {}

    [[nodiscard]] const QString &file() const { return m_store.path(); }

    /// A connection of the caller's own, to read with. @throws StoreError
    [[nodiscard]] Database openForReading();

    /// Does the work as one transaction, then tells everyone what it says has changed. Blocks; one
    /// caller at a time. @throws StoreError, and nothing has changed then
    void write(const std::function<StoreChange(Database &)> &work);

private:
    std::mutex m_lock; // for the whole of a write
    StoreFile m_store; // the connection that writes is guarded by m_lock
};

/// Opens the store, or begins one; nothing when that fails, which the log says. Blocks.
[[nodiscard]] std::shared_ptr<ModelContainer> makeContainer(const QString &file = storeFile());

/// The same on the store's queue, for the main thread.
[[nodiscard]] QCoro::Task<std::shared_ptr<ModelContainer>> makeContainerInBackground();

/// The queue on which live queries read and contexts save in the background. What it holds at the
/// end of the process is still done.
[[nodiscard]] SerialQueue &storeQueue();

}
