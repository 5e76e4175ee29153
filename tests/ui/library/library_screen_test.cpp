// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/library/library_screen_test.h"

#include "tests/platform/ffmpeg/stock_tool.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace veltro {

void LibraryScreenTest::initTestCase()
{
    m_red = m_media.filePath(u"red.mp4"_s);
    QVERIFY(ffmpeg::makeMedia(
        u"-f lavfi -i color=red:size=320x180:rate=25:duration=4 -c:v libx264 -preset ultrafast "
        "-pix_fmt yuv420p red.mp4"_s,
        m_media.path()));
}

void LibraryScreenTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_library = std::make_unique<LibraryFixture>();
}

void LibraryScreenTest::cleanup()
{
    m_view.reset();
    m_library.reset();
}

void LibraryScreenTest::show()
{
    m_view.reset();
    m_view = std::make_unique<ScreenUnderTest>(
        "qrc:/qt/qml/Veltro/Library/LibraryMacView.qml",
        QVariantMap{{u"store"_s, QVariant::fromValue<QObject *>(nullptr)}});
    m_view->root()->forceActiveFocus();
}

DownloadItem LibraryScreenTest::film(const QString &title)
{
    DownloadItem item = m_library->item(title);
    m_library->giveFile(item, m_red);
    return item;
}

void LibraryScreenTest::saveTitles(const QStringList &titles)
{
    std::vector<DownloadItem> items;
    for (const QString &title : titles) {
        items.push_back(m_library->item(title));
    }
    m_library->save(items);
}

std::vector<DownloadItem> LibraryScreenTest::saveNumbers(int count, qint64 bytes)
{
    std::vector<DownloadItem> items;
    for (int number = 0; number < count; ++number) {
        items.push_back(m_library->item(QString::number(number)));
        items.back().fileSizeBytes = bytes;
    }
    m_library->save(items);
    return items;
}

QList<QQuickItem *> LibraryScreenTest::all(const char *type) const
{
    return m_view->items([type](const QQuickItem &item) {
        return item.isVisible() && QByteArray(item.metaObject()->className()).startsWith(type);
    });
}

QQuickItem *LibraryScreenTest::tile(const QString &title) const
{
    const QList<QQuickItem *> tiles = all("LibraryTile_");
    const auto isMeant = [&](const QQuickItem *one) { return one->property("title") == title; };
    const auto found = std::ranges::find_if(tiles, isMeant);
    return found == tiles.end() ? nullptr : *found;
}

QQuickItem *LibraryScreenTest::firstWithText(const char *base, const QString &text) const
{
    return m_view
        ->items([&](const QQuickItem &item) {
            return item.isVisible() && item.inherits(base) && item.property("text") == text;
        })
        .value(0);
}

QQuickItem *LibraryScreenTest::shownText(const QString &text) const
{
    return firstWithText("QQuickText", text);
}

QQuickItem *LibraryScreenTest::button(const QString &text) const
{
    return firstWithText("QQuickAbstractButton", text);
}

QStringList LibraryScreenTest::chosen() const
{
    QStringList titles;
    const QAbstractItemModel &items = *screen()->items();
    for (int row = 0; row < items.rowCount(); ++row) {
        const QModelIndex index = items.index(row, 0);
        if (screen()->selection()->contains(
                items.data(index, LibraryItemsModel::itemIdRole).toUuid())) {
            titles.append(items.data(index, LibraryItemsModel::titleRole).toString());
        }
    }
    return titles;
}

}
