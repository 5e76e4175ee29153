// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"

#include <QHash>
#include <QUuid>

#include <mutex>
#include <optional>

namespace veltro {

/// What the engine's jobs share: whether the engine runs, its module, and which downloads are to
/// stop. Any thread. Each operation takes the lock for one read or write and never calls out
/// under it, so that hooks may ask from inside yt-dlp.
class EngineState {
public:
    [[nodiscard]] bool isBootstrapped() const;
    /// The module outlives the process's last job on purpose: dropping it would need the
    /// interpreter lock.
    void setBootstrapped(const PythonObject &module);
    /// REQUIRES: inside an interpreter job.
    [[nodiscard]] std::optional<PythonObject> ytDlpModule() const;

    /// A run has a cancellation flag between these two calls and at no other time.
    void beginRun(const QUuid &id);
    void endRun(const QUuid &id);
    /// Does nothing when no run of that id is under way.
    void requestCancellation(const QUuid &id);
    [[nodiscard]] bool isCancelled(const QUuid &id) const;
    [[nodiscard]] bool hasRuns() const;

private:
    mutable std::mutex m_lock;
    // Guarded by m_lock.
    bool m_bootstrapped = false;
    QHash<QUuid, bool> m_cancellationFlags;
    const PythonObject *m_ytDlpModule = nullptr; // never freed, see setBootstrapped()
};

}
