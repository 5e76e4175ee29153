// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/coordination/coordinator_bench.h"
#include "tests/ui/screens/screen_under_test.h"

#include <QTest>

namespace veltro {

class TestPickerSheet : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ScreenUnderTest::prepare(); }
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void aProbedPageOpensItAndEscapePicksNothing();
};

void TestPickerSheet::aProbedPageOpensItAndEscapePicksNothing()
{
    CoordinatorBench bench;
    const ScreenUnderTest screen("file:" VELTRO_PICKER_HOST,
                                 {{QStringLiteral("store"), QVariant::fromValue(&bench.store())}});
    const auto isOpen = [&] { return screen.root()->property("isOpen").toBool(); };
    const QUrl page = bench.site.url(QStringLiteral("/plain"));
    QVERIFY(!isOpen());
    bench.store().beginLink(page);
    QTRY_VERIFY_WITH_TIMEOUT(isOpen(), CoordinatorBench::patience);
    QTest::keyClick(screen.window(), Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    QTRY_VERIFY(!bench.store().hasPendingFormatPick());
    QCOMPARE(bench.downloads().count(), 0);

    // The page's one format does not tell its codecs, so that it is offered and not listed.
    bench.store().beginLink(page);
    QTRY_VERIFY_WITH_TIMEOUT(isOpen(), CoordinatorBench::patience);
    QTRY_VERIFY(screen.named("offer")->isVisible());
    screen.click(screen.named("offer"));
    QTRY_COMPARE(bench.downloads().count(), 1);
    QTRY_VERIFY(!bench.store().hasPendingFormatPick());
    const auto record = bench.downloads().record(0);
    QTRY_VERIFY_WITH_TIMEOUT(record->state().isFinal(), CoordinatorBench::patience);
    QCOMPARE(record->state().kind, ItemState::Kind::done);
    QCOMPARE(record->url(), page);
}

}

QTEST_MAIN(veltro::TestPickerSheet)
#include "tst_picker_sheet.moc"
