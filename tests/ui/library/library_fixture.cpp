// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/library/library_fixture.h"

#include "library/library_items_model.h"
#include "library/model_container.h"
#include "library/model_context.h"

#include <QFile>
#include <QImage>
#include <QTest>

namespace veltro {

LibraryFixture::LibraryFixture()
    : m_container(makeContainer(path(QStringLiteral("library.sqlite"))))
    , m_services(std::make_unique<LibraryServices>(
          workspace, DefaultsStore(path(QStringLiteral("defaults.ini")))))
{
    m_services->setContainer(m_container);
    setLibraryServices(m_services.get());
}

LibraryFixture::~LibraryFixture()
{
    setLibraryServices(nullptr);
}

DownloadItem LibraryFixture::item(const QString &title)
{
    static const QDateTime start(QDate(2024, 5, 1), QTime(12, 0), Qt::UTC);
    DownloadItem made;
    made.id = QUuid::createUuid();
    made.sourceURL = QUrl(QStringLiteral("https://example.com/watch?v=%1").arg(m_made));
    made.title = title;
    made.stateRaw = QStringLiteral("done");
    made.createdAt = start.addSecs(qint64(-60) * m_made);
    made.completedAt = made.createdAt;
    ++m_made;
    return made;
}

void LibraryFixture::giveFile(DownloadItem &item, const QString &source)
{
    const QString file = path(item.id.toString(QUuid::WithoutBraces) + QStringLiteral(".mp4"));
    QVERIFY(QFile::copy(source, file));
    item.localFileURL = QUrl::fromLocalFile(file);
    item.fileSizeBytes = QFile(file).size();
}

void LibraryFixture::giveThumbnail(DownloadItem &item, Qt::GlobalColor colour)
{
    const QString file = path(item.id.toString(QUuid::WithoutBraces) + QStringLiteral(".png"));
    QImage picture(640, 360, QImage::Format_RGB32);
    picture.fill(colour);
    QVERIFY(picture.save(file));
    item.thumbnailFileURL = QUrl::fromLocalFile(file);
}

void LibraryFixture::save(const std::vector<DownloadItem> &items)
{
    ModelContext context(m_container);
    for (const DownloadItem &one : items) {
        context.insert(one);
    }
    QVERIFY(context.save());
}

QStringList LibraryFixture::storedTitles() const
{
    LibraryItemsModel model;
    model.setContainer(m_container);
    QStringList titles;
    if (QTest::qWaitFor([&] { return model.isLoaded(); }, 30'000)) {
        for (int row = 0; row < model.count(); ++row) {
            titles.append(model.data(model.index(row), LibraryItemsModel::titleRole).toString());
        }
    }
    titles.sort();
    return titles;
}

}
