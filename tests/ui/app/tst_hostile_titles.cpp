// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Titles that somebody made to do harm, in every place of the window that shows one.
#include "library/model_context.h"
#include "tests/ui/app/window_bench.h"

#include <QRegularExpression>

#include <functional>

namespace veltro {

#define TRY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, CoordinatorBench::patience)

namespace {

/// Lines are as good as words where there is room for one line, and what turns the direction may be
/// shut in.
QString asSeen(QString text)
{
    return text.remove(QChar(0x2068)).remove(QChar(0x2069)).simplified();
}

}

class TestHostileTitles : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void areShownAsTheyAre_data();
    void areShownAsTheyAre();

private:
    void showEverywhere(const QString &title);
    /// Looks at all texts, once the title is seen in as many places.
    void lookAtTexts(const QString &title, int leastPlaces);
    [[nodiscard]] QString faultIn(const QString &title, int leastPlaces);
    /// Looks at the menu that the key opens where the focus is, and chooses a line of it.
    void lookAtMenu(const QString &title, int leastPlaces, const QString &line);
    [[nodiscard]] QList<QQuickItem *> texts();
    /// Whether no menu and no sheet stands over the window, nor is on its way out.
    [[nodiscard]] bool isUncovered();
    void visit(QQuickItem &item, const std::function<void(QQuickItem &)> &visitor);

    std::unique_ptr<WindowBench> m_bench;
    std::unique_ptr<LibraryItemsModel> m_recents;
};

void TestHostileTitles::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    m_bench = std::make_unique<WindowBench>();
    m_recents = std::make_unique<LibraryItemsModel>();
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
}

void TestHostileTitles::cleanup()
{
    m_bench->homeModel().setRecents(nullptr);
    m_bench.reset();
    m_recents.reset();
}

void TestHostileTitles::visit(QQuickItem &item, const std::function<void(QQuickItem &)> &visitor)
{
    if (!item.isVisible()) {
        return;
    }
    visitor(item);
    const QList<QQuickItem *> children = item.childItems();
    for (QQuickItem *child : children) {
        visit(*child, visitor);
    }
}

void TestHostileTitles::showEverywhere(const QString &title)
{
    const std::shared_ptr<ModelContainer> container =
        makeContainer(m_bench->home.path(QStringLiteral("library.sqlite")));
    DownloadItem item;
    item.id = QUuid::createUuid();
    item.title = title;
    item.uploader = title;
    item.formatLabel = title;
    item.sourceURL = m_bench->site.url(QStringLiteral("/plain"));
    item.localFileURL =
        QUrl::fromLocalFile(m_bench->home.path(QStringLiteral("<img src=x> film.mp4")));
    item.thumbnailFileURL = m_bench->site.url(QStringLiteral("/fetched.png"));
    item.stateRaw = QStringLiteral("done");
    item.createdAt = QDateTime::currentDateTimeUtc();
    item.completedAt = item.createdAt;
    ModelContext context(container);
    context.insert(item);
    QVERIFY(context.save());
    m_recents->setLimit(6);
    m_recents->setContainer(container);
    m_bench->homeModel().setRecents(m_recents.get());
    m_bench->library().setContainer(container);

    using Kind = ItemState::Kind;
    for (const ItemState &state :
         {ItemState{Kind::running, {}}, ItemState::failed(title), ItemState{Kind::done, {}}}) {
        auto record = std::make_shared<DownloadProgressState>(
            DownloadOrder{QUuid::createUuid(), m_bench->site.url(QStringLiteral("/plain")),
                          QStringLiteral("best"), title});
        record->setTitle(title);
        record->setState(state);
        m_bench->downloads().append(std::move(record));
    }
}

QList<QQuickItem *> TestHostileTitles::texts()
{
    QList<QQuickItem *> found;
    visit(*m_bench->window().contentItem(), [&](QQuickItem &item) {
        if (item.inherits("QQuickText") || item.inherits("QQuickTextEdit")) {
            found.append(&item);
        }
    });
    return found;
}

bool TestHostileTitles::isUncovered()
{
    bool isCovered = false;
    visit(*m_bench->window().contentItem(), [&isCovered](const QQuickItem &item) {
        isCovered = isCovered || item.inherits("QQuickPopupItem");
    });
    return !isCovered;
}

QString TestHostileTitles::faultIn(const QString &title, int leastPlaces)
{
    (void)m_bench->window().grabWindow(); // laid out and drawn
    const QRectF window(QPointF(-1, -1), m_bench->window().size() + QSize(2, 2));
    bool isOver = false;
    visit(*m_bench->window().contentItem(), [&](QQuickItem &item) {
        isOver = isOver || (item.inherits("QQuickPopupItem") &&
                            !window.contains(item.mapRectToScene(item.boundingRect())));
    });
    if (isOver) {
        return QStringLiteral("a menu or a sheet reaches out");
    }
    int places = 0;
    const QList<QQuickItem *> seen = texts();
    for (QQuickItem *text : seen) {
        if (text->property("textFormat").toInt() != int(Qt::PlainText)) {
            return QStringLiteral("a text is no plain one");
        }
        if (!asSeen(text->property("text").toString()).contains(asSeen(title))) {
            continue;
        }
        ++places;
        // What does not fit is cut off within the item, or by what it lies in.
        const double width = text->property("contentWidth").toDouble();
        const double height = text->property("contentHeight").toDouble();
        bool isClipped = text->clip();
        for (QQuickItem *above = text->parentItem(); above; above = above->parentItem()) {
            isClipped = isClipped || above->clip();
        }
        const QRectF drawn = text->mapRectToScene({0, 0, width, height});
        if ((!isClipped && !window.contains(drawn)) || width > text->width() + 1) {
            return QStringLiteral("it reaches out: ") + QDebug::toString(drawn);
        }
    }
    return places < leastPlaces ? QStringLiteral("it stands in %1 places").arg(places) : QString();
}

void TestHostileTitles::lookAtTexts(const QString &title, int leastPlaces)
{
    // Banners and sheets are on their way for a moment.
    QTRY_COMPARE_WITH_TIMEOUT(faultIn(title, leastPlaces), QString(), CoordinatorBench::patience);
}

void TestHostileTitles::lookAtMenu(const QString &title, int leastPlaces, const QString &line)
{
    QTest::keyClick(&m_bench->window(), Qt::Key_Menu);
    QQuickItem *chosen = nullptr;
    const auto isOpen = [&] {
        visit(*m_bench->window().contentItem(), [&](QQuickItem &item) {
            if (item.inherits("QQuickMenuItem") && item.property("text").toString() == line) {
                chosen = &item;
            }
        });
        return chosen != nullptr;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isOpen(), CoordinatorBench::patience);
    lookAtTexts(title, leastPlaces);
    QTest::mouseClick(&m_bench->window(), Qt::LeftButton, Qt::NoModifier,
                      chosen->mapToScene({chosen->width() / 2, chosen->height() / 2}).toPoint());
}

void TestHostileTitles::areShownAsTheyAre_data()
{
    QTest::addColumn<QString>("title");
    const QString mark =
        QStringLiteral("<b>bold</b> <img src=\"%1\"> <a href='%1'>a</a> &lt;script&gt;");
    QTest::newRow("markup") << mark;
    QTest::newRow("a whole document")
        << QStringLiteral("<!DOCTYPE html><html><body>") + mark + QStringLiteral("</body></html>");
    QTest::newRow("ten thousand letters, markup among them")
        << mark + QString(10'000 - mark.size(), u'W');
    QTest::newRow("ten thousand lines") << QStringLiteral("a\n").repeated(5'000);
    QTest::newRow("ten thousand turns")
        << QStringLiteral("\u202Egpj.\u2066exe\u202C\u2069 ").repeated(1'000);
    QTest::newRow("right to left") << QStringLiteral("שלום ").repeated(2'000);
    QTest::newRow("one letter under ten thousand accents")
        << QStringLiteral("Z") + QString(10'000, QChar(0x0351));
}

void TestHostileTitles::areShownAsTheyAre()
{
    QFETCH(QString, title);
    title.replace(QStringLiteral("%1"),
                  m_bench->site.url(QStringLiteral("/fetched.png")).toString());
    MacAppStore &store = m_bench->store();
    showEverywhere(title);
    QTRY_COMPARE_WITH_TIMEOUT(m_recents->count(), 1, CoordinatorBench::patience);
    const auto faultWithBanners = [&] {
        // They go by themselves, on a slow machine before they have been seen.
        store.setStartedToast(title);
        store.setCompletedToast(CompletedToast{QUuid(), title, QUrl()});
        return faultIn(title, 3); // among Home's recent saves, too
    };
    QTRY_COMPARE_WITH_TIMEOUT(faultWithBanners(), QString(), CoordinatorBench::patience);
    store.clearStartedToast();
    store.clearCompletedToast();

    store.setSelectedTab(MacTab::downloads);
    lookAtTexts(title, 3);
    QTest::keyClick(&m_bench->window(), Qt::Key_Down); // to the one that failed
    lookAtMenu(title, 3, QStringLiteral("Show Details…"));
    lookAtTexts(title, 5); // over the rows: what it is, and why it failed
    QTest::keyClick(&m_bench->window(), Qt::Key_Escape);
    TRY(isUncovered());

    store.setSelectedTab(MacTab::library);
    QQuickItem *tile = nullptr;
    const auto findTile = [&] {
        visit(*m_bench->window().contentItem(), [&](QQuickItem &item) {
            if (QByteArray(item.metaObject()->className()).startsWith("LibraryTile_")) {
                tile = &item;
            }
        });
        return tile != nullptr;
    };
    QTRY_VERIFY_WITH_TIMEOUT(findTile(), CoordinatorBench::patience);
    QTest::mouseClick(&m_bench->window(), Qt::LeftButton, Qt::NoModifier,
                      tile->mapToScene({tile->width() / 2, 30}).toPoint());
    lookAtTexts(title, 4); // on the tile and beside the player
    lookAtMenu(title, 4, QStringLiteral("Open"));
    TRY(isUncovered());

    MediaInfo info;
    info.title = title;
    info.uploader = title;
    info.webpageURL = m_bench->site.url(QStringLiteral("/plain"));
    MediaInfo list = info;
    list.isPlaylist = true;
    list.playlistEntries = {info, info};
    info.formats.resize(2);
    for (Format &format : info.formats) {
        format.vcodec = QStringLiteral("avc1");
        format.resolution = title;
        format.ext = title;
    }
    for (const MediaInfo &page : {info, list}) {
        store.setPendingFormatPick(FormatPickRequest{QUuid::createUuid(), *info.webpageURL, page});
        TRY(m_bench->popup(QStringLiteral("formatPicker")).property("opened").toBool());
        lookAtTexts(title, 2 + int(page.playlistEntries.size()));
        store.clearPendingFormatPick();
        TRY(!m_bench->popup(QStringLiteral("formatPicker")).property("visible").toBool());
    }

    store.setEngineError(title);
    store.setShowEngineError(true);
    TRY(m_bench->popup(QStringLiteral("engineAlert")).property("opened").toBool());
    lookAtTexts(title, 1);
    store.setShowEngineError(false);

    QCOMPARE(m_bench->window().title(), QStringLiteral("Veltro"));
    QCOMPARE(m_bench->site.requestCount(QStringLiteral("/fetched.png")), 0);
}

}

QTEST_MAIN(veltro::TestHostileTitles)
#include "tst_hostile_titles.moc"
