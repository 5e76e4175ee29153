// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/gallery/sample_program.h"

#include "engine/service/yt_dlp_service.h"
#include "library/completion_notifier.h"
#include "library/download_storage.h"
#include "library/library_items_model.h"
#include "tests/coordination/fake_desktop.h"
#include "tests/ui/library/gallery_library.h"
#include "tests/ui/samples/sample_downloads.h"
#include "ui/settings/logged_in_sites.h"
#include "ui/types/desktop.h"

namespace veltro {
namespace {

constexpr int recentItems = 6;

/// What every sample works with. Outlives the engines of the pages, which keep some of it.
struct SampleServices {
    NoticeBoard notices;
    YtDlpService engine;
    DownloadStorage storage;
    CompletionNotifier notifier{std::unique_ptr<NoticeCenter>(new FakeNoticeCenter(notices))};
    FakeWorkspace workspace;
    FakePasteboard pasteboard;
    Desktop desktop{workspace, pasteboard};
    LoggedInSites sites{engine};
};

SampleServices &sampleServices()
{
    static SampleServices services;
    return services;
}

MacAppStore::Services coordinatorServices()
{
    SampleServices &with = sampleServices();
    setDesktop(&with.desktop);
    setLoggedInSites(&with.sites);
    return {with.engine,    with.storage,    with.notifier,
            with.workspace, with.pasteboard, [] { return true; }};
}

}

SampleProgram::SampleProgram(QObject *parent)
    : QObject(parent)
    , m_store(coordinatorServices())
    , m_home(m_store, sampleServices().pasteboard, MacPasteWatcher::Delivery::atOnce)
    , m_updates({}, DefaultsStore())
{
    m_memory.setProperty("width", 980);
    m_memory.setProperty("height", 680);
}

SampleProgram::~SampleProgram()
{
    sampleServices().pasteboard.held.reset();
}

void SampleProgram::queue(int size)
{
    SampleDownloads samples;
    samples.setSize(size);
    for (int row = 0; row < size; ++row) {
        m_store.activeDownloads()->append(samples.downloads()->record(row));
    }
}

void SampleProgram::copy(const QString &text)
{
    sampleServices().pasteboard.held = text;
    m_home.becomeActive();
}

void SampleProgram::showRecents()
{
    auto *recents = new LibraryItemsModel(this);
    recents->setLimit(recentItems);
    recents->setContainer(galleryLibrary());
    m_home.setRecents(recents);
}

void SampleProgram::failWith(const QString &message)
{
    m_store.setEngineError(message);
    m_store.setShowEngineError(true);
}

void SampleProgram::ask(const QVariant &request)
{
    m_store.setPendingFormatPick(request.value<FormatPickRequest>());
}

void SampleProgram::toast(const QString &started, const QString &completed)
{
    if (!started.isEmpty()) {
        m_store.setStartedToast(started);
    }
    if (!completed.isEmpty()) {
        m_store.setCompletedToast(CompletedToast{QUuid::createUuid(), completed, {}});
    }
}

}
