// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/library/library_screen_test.h"

#include "tests/platform/ffmpeg/stock_tool.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace veltro {
namespace {

void visitBelow(QQuickItem &item, const std::function<void(QQuickItem &)> &visitor)
{
    visitor(item);
    const QList<QQuickItem *> children = item.childItems();
    for (QQuickItem *child : children) {
        visitBelow(*child, visitor);
    }
}

}

void LibraryScreenTest::initTestCase()
{
    ScreenUnderTest::prepare();
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

void LibraryScreenTest::saveTitles(const QStringList &titles)
{
    std::vector<DownloadItem> items;
    for (const QString &title : titles) {
        items.push_back(m_library->item(title));
    }
    m_library->save(items);
}

void LibraryScreenTest::visit(const std::function<void(QQuickItem &)> &visitor) const
{
    visitBelow(*window()->contentItem(), visitor);
}

QList<QQuickItem *> LibraryScreenTest::all(const char *type) const
{
    QList<QQuickItem *> found;
    visit([&](QQuickItem &item) {
        if (item.isVisible() && QByteArray(item.metaObject()->className()).startsWith(type)) {
            found.append(&item);
        }
    });
    return found;
}

QQuickItem *LibraryScreenTest::tile(const QString &title) const
{
    for (QQuickItem *one : all("LibraryTile_")) {
        if (one->property("title") == title) {
            return one;
        }
    }
    return nullptr;
}

QQuickItem *LibraryScreenTest::firstWithText(const char *base, const QString &text) const
{
    return m_view->itemWhere([&](const QQuickItem &item) {
        return item.isVisible() && item.inherits(base) && item.property("text") == text;
    });
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
