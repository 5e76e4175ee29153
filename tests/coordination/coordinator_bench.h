// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/coordinator.h"
#include "engine/service/yt_dlp_service.h"
#include "library/completion_notifier.h"
#include "library/download_storage.h"
#include "library/library_items_model.h"
#include "library/model_container.h"
#include "platform/user_folders.h"
#include "tests/coordination/fake_desktop.h"
#include "tests/coordination/private_home.h"
#include "tests/site/test_site.h"

#include <QDir>
#include <QTest>

#include <utility>

namespace veltro {

/// A coordinator with the real engine and library, a home of its own, the test site for the web,
/// and a desktop that only keeps what it is told.
class CoordinatorBench {
public:
    static constexpr int patience = 30'000; // ms, for what takes a second

    /// @param center where notices go; by default the board has them.
    explicit CoordinatorBench(std::unique_ptr<NoticeCenter> center = nullptr)
        : notifier(center ? std::move(center)
                          : std::unique_ptr<NoticeCenter>(new FakeNoticeCenter(notices)))
    {
        // The library of a process stays where it was opened first, and so must its folder.
        static const QTemporaryDir data;
        qputenv("XDG_DATA_HOME", data.path().toUtf8());
        QDir(cookieFolder()).removeRecursively();
        QFile::remove(cookieFolder());
        m_savedBefore = qsizetype(allItems().size());
        renew();
    }

    /// A new session: another coordinator, the same home.
    void renew()
    {
        m_store.reset();
        m_store = std::make_unique<MacAppStore>(MacAppStore::Services{
            engine, storage, notifier, workspace, pasteboard, [this] { return isActive; }});
    }
    void close() { m_store.reset(); }

    [[nodiscard]] MacAppStore &store() { return *m_store; }
    [[nodiscard]] ActiveDownloads &downloads() { return *m_store->activeDownloads(); }

    /// Queues a download of the test site's page; the record.
    MacAppStore::Record queue(const QString &page, const QString &selector = QStringLiteral("best"))
    {
        Format format;
        format.id = selector;
        format.ext = QStringLiteral("mp4");
        m_store->beginFormatPick(site.url(page), format);
        return downloads().record(downloads().count() - 1);
    }

    /// What has been saved under a final name.
    [[nodiscard]] QStringList savedFiles() const
    {
        QStringList names = QDir(downloadsDirectory().toLocalFile()).entryList(QDir::Files);
        names.removeIf([](const QString &name) { return name.endsWith(QStringLiteral(".part")); });
        return names;
    }

    /// What came into the library since this bench was made, oldest first; read anew, by a
    /// container of its own.
    [[nodiscard]] std::vector<DownloadItem> savedItems() const
    {
        const std::vector<DownloadItem> items = allItems();
        return {items.begin() + m_savedBefore, items.end()};
    }
    [[nodiscard]] QStringList savedTitles() const
    {
        QStringList titles;
        for (const DownloadItem &item : savedItems()) {
            titles.append(item.title);
        }
        return titles;
    }

    [[nodiscard]] static QString cookieFolder()
    {
        return dataFolder() + QStringLiteral("/cookies");
    }

    PrivateHome home;
    TestSite site;
    NoticeBoard notices;
    YtDlpService engine;
    DownloadStorage storage;
    CompletionNotifier notifier;
    FakeWorkspace workspace;
    FakePasteboard pasteboard;
    bool isActive = true;

private:
    [[nodiscard]] static std::vector<DownloadItem> allItems()
    {
        LibraryItemsModel model;
        model.setContainer(makeContainer());
        if (!QTest::qWaitFor([&model] { return model.isLoaded(); }, patience)) {
            qFatal("the library cannot be read");
        }
        std::vector<DownloadItem> items;
        for (int row = model.count() - 1; row >= 0; --row) {
            items.push_back(model.item(model.idAt(row)).value());
        }
        return items;
    }

    qsizetype m_savedBefore = 0;
    std::unique_ptr<MacAppStore> m_store;
};

}
