// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/download_item.h"
#include "platform/workspace.h"
#include "ui/library/library_services.h"

#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace veltro {

/// A desktop that only notes what it is asked for.
class NotingWorkspace final : public Workspace {
public:
    bool open(const QUrl &file) override
    {
        opened.append(file);
        return true;
    }
    using Workspace::reveal;
    void reveal(const QList<QUrl> &files) override { revealed += files; }
    bool openWebPage(const QUrl &) override { return false; }
    void beep() override {}
    void haptic() override {}

    QList<QUrl> opened;
    QList<QUrl> revealed;
};

/// A library of its own in a folder of its own, over the real store. Stands for the program's in
/// QML while it lives.
class LibraryFixture {
public:
    LibraryFixture();
    ~LibraryFixture();
    LibraryFixture(const LibraryFixture &) = delete;
    LibraryFixture &operator=(const LibraryFixture &) = delete;

    [[nodiscard]] LibraryServices &services() { return *m_services; }
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    /// An item as a download leaves it: the first one made is the newest.
    [[nodiscard]] DownloadItem item(const QString &title);
    /// Gives it a media file, a copy of the one that is named.
    void giveFile(DownloadItem &item, const QString &source);
    /// Gives it a thumbnail in one colour.
    void giveThumbnail(DownloadItem &item, Qt::GlobalColor colour);
    /// Saves them as one.
    void save(const std::vector<DownloadItem> &items);
    /// The titles that the store holds, sorted.
    [[nodiscard]] QStringList storedTitles() const;

    NotingWorkspace workspace;

private:
    QTemporaryDir m_folder;
    std::shared_ptr<ModelContainer> m_container;
    std::unique_ptr<LibraryServices> m_services;
    int m_made = 0;
};

}
