// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/coordinator.h"

#include "engine/service/yt_dlp_service.h"

#include <QThread>

#include <utility>

namespace veltro {

MacAppStore::MacAppStore(Services services, QObject *parent)
    : QObject(parent), m_services(std::move(services))
{}

MacAppStore::~MacAppStore()
{
    if (m_run) {
        m_services.engine.cancelDownload(m_run->record->id());
    }
}

template <typename Value>
void MacAppStore::replace(Value &stored, const Value &value, void (MacAppStore::*notify)())
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (stored != value) {
        stored = value;
        Q_EMIT(this->*notify)();
    }
}

void MacAppStore::setSelectedTab(MacTab tab)
{
    replace(m_selectedTab, tab, &MacAppStore::selectedTabChanged);
}

void MacAppStore::setPendingFormatPick(const std::optional<FormatPickRequest> &request)
{
    replace(m_pendingFormatPick, request, &MacAppStore::pendingFormatPickChanged);
}

void MacAppStore::setPreferences(const Preferences &preferences)
{
    replace(m_preferences, preferences, &MacAppStore::preferencesChanged);
}

void MacAppStore::setEngineError(const std::optional<QString> &text)
{
    replace(m_engineError, text, &MacAppStore::engineErrorChanged);
}

void MacAppStore::setShowEngineError(bool show)
{
    replace(m_showEngineError, show, &MacAppStore::showEngineErrorChanged);
}

void MacAppStore::setShowBatchPaste(bool show)
{
    replace(m_showBatchPaste, show, &MacAppStore::showBatchPasteChanged);
}

void MacAppStore::setStartedToast(const std::optional<QString> &title)
{
    replace(m_startedToast, title, &MacAppStore::startedToastChanged);
}

void MacAppStore::setCompletedToast(const std::optional<CompletedToast> &toast)
{
    replace(m_completedToast, toast, &MacAppStore::completedToastChanged);
}

void MacAppStore::setEngineReady()
{
    replace(m_engineReady, true, &MacAppStore::engineReadyChanged);
}

void MacAppStore::alert(const QString &text)
{
    setEngineError(text);
    setShowEngineError(true);
}

void MacAppStore::cancel(const QUuid &id)
{
    m_services.engine.cancelDownload(id);
    // The engine may be past the last point where it looks: what it saves then is not announced.
    if (m_run && m_run->record->id() == id && !m_run->record->state().isFinal()) {
        m_run->isCancelled = true;
    }
    m_activeDownloads.remove(id);
}

void MacAppStore::clearFinished()
{
    m_activeDownloads.removeFinished();
}

}
