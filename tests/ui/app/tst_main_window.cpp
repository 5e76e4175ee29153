// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The main window, its keys and what it says, with the real engine on the test site.
#include "tests/ui/app/window_bench.h"
#include "ui/settings/about_information.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace veltro {

#define TRY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, CoordinatorBench::patience)

class TestMainWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void theWindowBeginsSo();
    void theSidebarFollowsTheStore();
    void theDividerStaysWithinItsLimits();
    void eachKeyDoesItsOneThing();
    void theKeyForPastingDoesWhatItsPlaceSays_data();
    void theKeyForPastingDoesWhatItsPlaceSays();
    void theMenusDoTheSameWhereverTheyAreOpened();
    void whoComesByKeySeesTheFocus();
    void aFieldTakesOneLineAndNoMoreThanIsOfUse();
    void theProductsPagesAreOpened();
    void aScreenReaderIsToldWhatCannotBeUsed();
    void aProbedPageOpensThePickerAndEscapePicksNothing();
    void noKeyIsHeardUnderASheet();
    void returnSubmitsOnceWhereverTheFocusIsOnHome_data();
    void returnSubmitsOnceWhereverTheFocusIsOnHome();
    void bannersComeWithTheirToastsAndLeaveInTime();
    void anEngineErrorIsToldOnceAndSettled();
    void theBatchSheetBeginsEmptyAndQueues();
    void aDeclinedCloseForgetsTheUpdateThatAskedForIt();
    void theScreensHaveAllOfAFullScreen();

private:
    [[nodiscard]] QVariant value(QAnyStringView item, const char *property)
    {
        return m_bench->item(item).property(property);
    }

    std::unique_ptr<WindowBench> m_bench;
};

void TestMainWindow::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_bench = std::make_unique<WindowBench>();
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
}

void TestMainWindow::cleanup()
{
    m_bench->site.release();
    TRY(!m_bench->homeModel().working());
    while (m_bench->downloads().count() > 0) {
        m_bench->store().cancel(m_bench->downloads().record(0)->id());
    }
    TRY(!m_bench->engine.hasRuns());
    m_bench.reset();
}

void TestMainWindow::theWindowBeginsSo()
{
    QCOMPARE(m_bench->window().minimumSize(), QSize(980, 680));
    QCOMPARE(m_bench->window().color(), QColor(0xF6, 0xF3, 0xEF));
    QCOMPARE(value("sidebar", "width"), 240.0);
    QCOMPARE(value("engineCaption", "text"), u"Booting…"_s);
    QCOMPARE(value("lead", "width"), 660.0); // the column's, which is narrower than 720 here
    QCOMPARE(value("urlField", "placeholderText"), u"https://"_s);
    QCOMPARE(value("urlField", "activeFocus"), true);
    QCOMPARE(value("save", "enabled"), false);
    QCOMPARE(value("save", "opacity"), 0.5);
    QCOMPARE(value("chip1", "checked"), true);
    QCOMPARE(value("chip4", "checked"), false);
}

void TestMainWindow::theSidebarFollowsTheStore()
{
    m_bench->click("tab1");
    QCOMPARE(m_bench->store().selectedTab(), MacTab::downloads);
    QVERIFY(!value("homeScreen", "visible").toBool());
    m_bench->store().setSelectedTab(MacTab::home);
    QVERIFY(value("homeScreen", "visible").toBool());
    QVERIFY(value("urlField", "activeFocus").toBool());

    m_bench->site.addRule(u"match=/plain&hold=0"_s);
    m_bench->queue(u"/plain"_s);
    m_bench->queue(u"/plain"_s);
    QCOMPARE(value("tab1", "badge"), 2);
    for (const char *other : {"tab0", "tab2", "tab3"}) {
        QCOMPARE(value(other, "badge"), 0);
    }
    m_bench->store().beginEngine();
    TRY(m_bench->store().engineReady());
    QCOMPARE(value("engineCaption", "text"), u"Engine ready"_s);
    QCOMPARE(value("engineDot", "color").value<QColor>(), QColor(0x14, 0x7F, 0x51));
}

void TestMainWindow::theDividerStaysWithinItsLimits()
{
    m_bench->window().resize(1020, 700);
    QQuickItem &divider = m_bench->item("sidebarDivider");
    const auto drag = [this, &divider](int by) {
        const QPoint from = divider.mapToScene({4, 300}).toPoint();
        QTest::mousePress(&m_bench->window(), Qt::LeftButton, {}, from);
        QTest::mouseMove(&m_bench->window(), from + QPoint(by / 2, 0));
        QTest::mouseMove(&m_bench->window(), from + QPoint(by, 0));
        QTest::mouseRelease(&m_bench->window(), Qt::LeftButton, {}, from + QPoint(by, 0));
    };
    drag(400);
    QCOMPARE(value("sidebar", "width"), 280);
    drag(-400);
    QCOMPARE(value("sidebar", "width"), 220);
    divider.forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(&m_bench->window(), Qt::Key_Left);
    QCOMPARE(value("sidebar", "width"), 220);
    QTest::keyClick(&m_bench->window(), Qt::Key_Right);
    QCOMPARE(value("sidebar", "width"), 230);
    QCOMPARE(m_bench->window().size(), QSize(1020, 700)); // which nobody has touched
}

void TestMainWindow::eachKeyDoesItsOneThing()
{
    MacAppStore &store = m_bench->store();
    QWindow *window = &m_bench->window();
    // What stands after the "&" of a title is no letter to press with Alt.
    m_bench->pasteboard.held = m_bench->site.url(u"/plain"_s).toString();
    QTest::keyClick(window, Qt::Key_Space, Qt::AltModifier);
    QVERIFY(m_bench->homeModel().urlText().trimmed().isEmpty());
    QTest::keyClick(window, Qt::Key_1, Qt::ControlModifier);
    QCOMPARE(store.selectedTab(), MacTab::home);

    // The first stop of the keyboard in the menus, and the way on through them.
    QTest::keyClick(window, Qt::Key_F10);
    QTRY_VERIFY(m_bench->isShown("menuPaste"));
    QTest::keyClick(window, Qt::Key_Right);
    QTRY_VERIFY(m_bench->isShown("menuLibrary"));
    QTRY_VERIFY(value("menuLibrary", "highlighted").toBool());
    QTest::keyClick(window, Qt::Key_Return);
    QCOMPARE(store.selectedTab(), MacTab::library);
    QTRY_VERIFY(!m_bench->isShown("menuLibrary"));
    QTest::keyClick(window, Qt::Key_H, Qt::AltModifier);
    QTRY_VERIFY(m_bench->isShown("menuAbout"));
}

void TestMainWindow::theKeyForPastingDoesWhatItsPlaceSays_data()
{
    QTest::addColumn<MacTab>("tab");
    QTest::addColumn<QString>("over");
    const auto row = [](const char *name, MacTab tab, const char *over) {
        QTest::newRow(name) << tab << QString::fromLatin1(over);
    };
    row("on Home it saves at the tier", MacTab::home, "");
    row("in the library it asks for a format", MacTab::library, "");
    row("in the queue it asks for a format", MacTab::downloads, "");
    row("in the settings it asks for a format", MacTab::settings, "");
    row("under a sheet it does nothing", MacTab::home, "batchSheet");
    row("under another tab's sheet it does nothing", MacTab::downloads, "batchSheet");
    row("under an alert it does nothing", MacTab::home, "engineAlert");
    row("under a panel it does nothing", MacTab::library, "aboutPanel");
}

void TestMainWindow::theKeyForPastingDoesWhatItsPlaceSays()
{
    QFETCH(MacTab, tab);
    QFETCH(QString, over);
    MacAppStore &store = m_bench->store();
    const auto paste = [this](const QString &page) {
        m_bench->pasteboard.held = m_bench->site.url(page).toString();
        QTest::keyClick(&m_bench->window(), Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    };
    store.setSelectedTab(tab);
    if (!over.isEmpty()) {
        QObject &popup = m_bench->popup(over);
        QMetaObject::invokeMethod(&popup, "open");
        QTRY_VERIFY(popup.property("opened").toBool());
        paste(u"/sources"_s);
        QMetaObject::invokeMethod(&popup, "close");
        QTRY_VERIFY(!popup.property("visible").toBool());
    }
    // What is pasted next is probed after anything that was pasted before.
    paste(u"/plain"_s);
    const bool saves = tab == MacTab::home;
    TRY(saves ? m_bench->downloads().count() == 1 : store.hasPendingFormatPick());
    QCOMPARE(store.hasPendingFormatPick(), !saves);
    QCOMPARE(m_bench->site.requestCount(u"/sources"_s), 0);
}

void TestMainWindow::theMenusDoTheSameWhereverTheyAreOpened()
{
    // By pointer "Paste & Save…" asks for a format on Home too.
    m_bench->pasteboard.held = m_bench->site.url(u"/plain"_s).toString();
    m_bench->clickMenu(0, "menuPaste");
    QVERIFY(!m_bench->homeModel().working());
    TRY(m_bench->store().hasPendingFormatPick());
    QVERIFY(m_bench->homeModel().urlText().isEmpty());
    m_bench->store().clearPendingFormatPick();
    QObject &picker = m_bench->popup("formatPicker");
    QTRY_VERIFY(!picker.property("visible").toBool());

    m_bench->clickMenu(0, "menuSettings");
    const auto *settings = qobject_cast<QQuickWindow *>(&m_bench->popup("settingsWindow"));
    QVERIFY(settings);
    QTRY_VERIFY(settings->isVisible());
    QCOMPARE(settings->size(), QSize(560, 520));
    QCOMPARE(m_bench->store().selectedTab(), MacTab::home);
    QVERIFY(value("menuSettings", "keys").toString().isEmpty());
}

void TestMainWindow::aProbedPageOpensThePickerAndEscapePicksNothing()
{
    MacAppStore &store = m_bench->store();
    const QUrl page = m_bench->site.url(u"/plain"_s);
    store.beginLink(page);
    TRY(store.hasPendingFormatPick());
    QObject &picker = m_bench->popup("formatPicker");
    TRY(picker.property("opened").toBool());
    QTest::keyClick(&m_bench->window(), Qt::Key_Escape);
    QTRY_VERIFY(!picker.property("visible").toBool());
    QTRY_VERIFY(!store.hasPendingFormatPick());
    QCOMPARE(m_bench->downloads().count(), 0);

    // The page's one format does not tell its codecs, so that it is offered and not listed.
    store.beginLink(page);
    TRY(picker.property("opened").toBool());
    QVERIFY(m_bench->item("reason").isVisible());
    m_bench->click("offer");
    QTRY_COMPARE(m_bench->downloads().count(), 1);
    QTRY_VERIFY(!store.hasPendingFormatPick());
    TRY(store.finishedCount() == 1);
    QCOMPARE(m_bench->downloads().record(0)->url(), page);
}

void TestMainWindow::whoComesByKeySeesTheFocus()
{
    QQuickWindow &window = m_bench->window();
    const auto isSeen = [&] {
        const QQuickItem *focused = window.activeFocusItem();
        return focused && focused->property("visualFocus").toBool();
    };
    const auto isOnQuality = [](const QQuickWindow &in) {
        const QQuickItem *focused = in.activeFocusItem();
        return focused && focused->property("name").toString() == u"Quality"_s &&
               focused->property("visualFocus").toBool();
    };
    m_bench->click("tab3");
    QVERIFY(!isSeen());
    QTest::keyClick(&window, Qt::Key_3, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_Comma, Qt::ControlModifier);
    QVERIFY(isOnQuality(window));
    // A menu begins on its first line, and the window that it opens on its first control.
    QTest::keyClick(&window, Qt::Key_F10);
    QTRY_VERIFY(value("menuPaste", "highlighted").toBool());
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Return}) { // around its end
        QTest::keyClick(&window, key);
    }
    auto *settings = qobject_cast<QQuickWindow *>(&m_bench->popup("settingsWindow"));
    QTRY_VERIFY(isOnQuality(*settings));
    QTest::keyClick(settings, Qt::Key_Backtab); // around, to the last one
    QTest::keyClick(settings, Qt::Key_Return);
    QCOMPARE(m_bench->workspace.pages, QList<QUrl>{AboutInformation().noticesPage()});
    settings->close();
    // What a sheet or an alert takes it gives back.
    window.requestActivate();
    QTRY_VERIFY(isOnQuality(window));
    QTest::keyClick(&window, Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
    for (const MacTab tab : {MacTab::settings, MacTab::home, MacTab::settings}) {
        m_bench->store().setSelectedTab(tab); // beneath it, from elsewhere
        QTRY_COMPARE(window.activeFocusItem()->objectName(), u"batchEditor"_s);
    }
    QTest::keyClick(&window, Qt::Key_Escape);
    QTRY_VERIFY(isOnQuality(window));
    m_bench->store().setShowEngineError(true);
    QTRY_VERIFY(m_bench->popup("engineAlert").property("opened").toBool());
    QCOMPARE(window.activeFocusItem()->property("text").toString(), u"OK"_s);
    QVERIFY(isSeen());
    QTest::keyClick(&window, Qt::Key_Escape);
    QTRY_VERIFY(isOnQuality(window));
}

void TestMainWindow::aFieldTakesOneLineAndNoMoreThanIsOfUse()
{
    QWindow *window = &m_bench->window();
    QQuickItem &field = m_bench->item("urlField");
    const auto paste = [&](const QString &held) {
        m_bench->pasteboard.held = held;
        QTest::keyClick(window, Qt::Key_V, Qt::ControlModifier);
        return field.property("text").toString();
    };
    QCOMPARE(paste(u"https://a.example\r\n"_s), u"https://a.example"_s);
    QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(paste(u"two\nlines"_s), u"two lines"_s);
    QCOMPARE(m_bench->homeModel().urlText(), u"two lines"_s);
    QCOMPARE(paste(QString(64 * 1024 + 1, u'x')), u"two lines"_s);
    QTest::keyClick(window, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(field.property("text").toString(), u"https://a.example"_s);
    // Nor does it ask each program that copies something what that is, and wait for the answer.
    const QSignalSpy asked(&field, SIGNAL(canPasteChanged()));
    QGuiApplication::clipboard()->setText(u"copied"_s);
    QCOMPARE(asked.size(), 0);
}

void TestMainWindow::theProductsPagesAreOpened()
{
    const AboutInformation about;
    QVERIFY(about.supportPage().isValid());
    m_bench->clickMenu(2, "menuSupport");
    m_bench->store().setSelectedTab(MacTab::settings);
    for (const char *page : {"support", "privacy", "notices"}) {
        m_bench->item(page).forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&m_bench->window(), Qt::Key_Return);
    }
    QCOMPARE(m_bench->workspace.pages, (QList<QUrl>{about.supportPage(), about.supportPage(),
                                                    about.privacyPage(), about.noticesPage()}));
}

void TestMainWindow::aScreenReaderIsToldWhatCannotBeUsed()
{
    QAccessibleInterface *save = QAccessible::queryAccessibleInterface(&m_bench->item("save"));
    QVERIFY(save->state().disabled);
    m_bench->homeModel().setUrlText(u"https://a.example"_s);
    QVERIFY(!save->state().disabled);
}

void TestMainWindow::noKeyIsHeardUnderASheet()
{
    MacAppStore &store = m_bench->store();
    QTest::keyClick(&m_bench->window(), Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(store.showBatchPaste());
    QTRY_VERIFY(m_bench->popup("batchSheet").property("opened").toBool());
    for (const Qt::Key key : {Qt::Key_2, Qt::Key_3, Qt::Key_Comma}) {
        QTest::keyClick(&m_bench->window(), key, Qt::ControlModifier);
        QCOMPARE(store.selectedTab(), MacTab::home);
    }
    QTest::keyClick(&m_bench->window(), Qt::Key_F10);
    QVERIFY(!m_bench->isShown("menuPaste"));
    QTest::keyClick(&m_bench->window(), Qt::Key_Escape);
    QTRY_VERIFY(!store.showBatchPaste());
}

void TestMainWindow::returnSubmitsOnceWhereverTheFocusIsOnHome_data()
{
    QTest::addColumn<QString>("focused");
    for (const char *item : {"urlField", "clear", "pasteAndSave", "pasteMany", "save", "chip1"}) {
        QTest::newRow(item) << QString::fromLatin1(item);
    }
}

void TestMainWindow::returnSubmitsOnceWhereverTheFocusIsOnHome()
{
    QFETCH(QString, focused);
    m_bench->site.addRule(u"match=/plain&hold=0"_s);
    m_bench->homeModel().setUrlText(u"  %1 "_s.arg(m_bench->site.url(u"/plain"_s).toString()));
    QCOMPARE(value("save", "opacity"), 1.0);
    m_bench->item(focused).forceActiveFocus(Qt::TabFocusReason);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Return}) {
        QTest::keyClick(&m_bench->window(), key);
        QVERIFY(m_bench->homeModel().working());
    }
    QVERIFY(!value("save", "enabled").toBool());
    m_bench->click("save");
    TRY(m_bench->site.requestCount(u"/plain"_s) > 0);
    m_bench->site.release();
    TRY(!m_bench->homeModel().working());
    QCOMPARE(m_bench->downloads().count(), 1);
    TRY(m_bench->store().finishedCount() == 1);
    // Looked at once, and saved once.
    QCOMPARE(m_bench->site.requestCount(u"/plain"_s), 2);
}

void TestMainWindow::bannersComeWithTheirToastsAndLeaveInTime()
{
    MacAppStore &store = m_bench->store();
    QVERIFY(!m_bench->isShown("startedBanner"));
    store.setStartedToast(u"<b>A title</b>"_s);
    QTRY_VERIFY(m_bench->item("startedBanner").isVisible());
    QVERIFY(value("startedBanner", "width").toDouble() >= 360);
    QElapsedTimer clock;
    clock.start();
    QTRY_VERIFY(!store.hasStartedToast());
    QVERIFY(clock.elapsed() >= 1500);

    store.setStartedToast(u"Another"_s);
    QTRY_COMPARE(m_bench->item("viewQueue").mapToScene({}).y() > 0, true);
    QTRY_COMPARE(m_bench->item("startedBanner").parentItem()->y(), 0.0);
    QCOMPARE(value("startedSlot", "y"), 12);
    m_bench->click("viewQueue");
    QCOMPARE(store.selectedTab(), MacTab::downloads);
    QVERIFY(!store.hasStartedToast());

    store.setCompletedToast(CompletedToast{QUuid::createUuid(), u"Saved"_s, QUrl()});
    QTRY_COMPARE(m_bench->item("completedBanner").parentItem()->y(), 0.0);
    m_bench->click("openLibrary");
    QCOMPARE(store.selectedTab(), MacTab::library);
    QVERIFY(!store.hasCompletedToast());
}

void TestMainWindow::anEngineErrorIsToldOnceAndSettled()
{
    MacAppStore &store = m_bench->store();
    store.beginLink(m_bench->site.deadUrl(u"/plain"_s));
    TRY(store.showEngineError());
    QObject &alert = m_bench->popup("engineAlert");
    QTRY_VERIFY(alert.property("opened").toBool());
    QCOMPARE(alert.property("title").toString(), u"Engine error"_s);
    QCOMPARE(alert.property("message").toString(), store.engineErrorText());
    QVERIFY(!store.engineErrorText().isEmpty());
    QTest::keyClick(&m_bench->window(), Qt::Key_Return);
    QTRY_VERIFY(!store.showEngineError());
    QVERIFY(!m_bench->homeModel().working());
}

void TestMainWindow::theBatchSheetBeginsEmptyAndQueues()
{
    m_bench->site.addRule(u"match=/plain&hold=0"_s);
    const QString page = m_bench->site.url(u"/plain"_s).toString();
    m_bench->pasteboard.held = page + u"\nno link\n"_s + page;
    m_bench->click("pasteMany");
    QTRY_VERIFY(m_bench->popup("batchSheet").property("opened").toBool());
    QVERIFY(!value("batchQueue", "enabled").toBool());
    QCOMPARE(value("batchQueue", "opacity"), 0.4);
    m_bench->click("batchPaste");
    QCOMPARE(value("batchCount", "text"), u"2 links detected"_s);
    QCOMPARE(value("batchQueue", "text"), u"Queue 2"_s);
    m_bench->item("batchEditor").forceActiveFocus();
    QTest::keyClick(&m_bench->window(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&m_bench->window(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(value("batchEditor", "text"), *m_bench->pasteboard.held);
    m_bench->click("batchQueue");
    QTRY_COMPARE(m_bench->downloads().count(), 2);
    QTRY_VERIFY(!m_bench->store().showBatchPaste());
    m_bench->store().setShowBatchPaste(true);
    QTRY_VERIFY(m_bench->popup("batchSheet").property("opened").toBool());
    QVERIFY(value("batchEditor", "text").toString().isEmpty());
}

void TestMainWindow::aDeclinedCloseForgetsTheUpdateThatAskedForIt()
{
    m_bench->site.addRule(u"match=/plain&hold=0"_s);
    m_bench->queue(u"/plain"_s);
    QObject &question = m_bench->popup("closeQuestion");
    const auto decline = [&] {
        QTRY_VERIFY(question.property("opened").toBool());
        QVERIFY(m_bench->updates().isRelaunching());
        QTest::keyClick(&m_bench->window(), Qt::Key_Escape);
        QTRY_VERIFY(!m_bench->updates().isRelaunching());
    };
    QTimer::singleShot(0, this, [&] {
        m_bench->updates().relaunch();
        decline();
        QCoreApplication::exit();
    });
    QCOMPARE(QGuiApplication::exec(), 0);
    QVERIFY(m_bench->window().isVisible());
}

void TestMainWindow::theScreensHaveAllOfAFullScreen()
{
    QQuickWindow &window = m_bench->window();
    const QQuickItem &screens = *m_bench->item("homeScreen").parentItem();
    QVERIFY(screens.mapToScene({}).y() > 0); // below the menus
    window.showFullScreen();
    QTRY_COMPARE(screens.mapToScene({}).y(), 0.0);
    QTRY_COMPARE(screens.height(), double(window.height()));
    window.showNormal();
    QTRY_VERIFY(screens.mapToScene({}).y() > 0);
}

}

QTEST_MAIN(veltro::TestMainWindow)
#include "tst_main_window.moc"
