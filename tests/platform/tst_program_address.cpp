// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/program_address.h"
#include "tests/rows.h"

#include <QTest>
#include <QUrlQuery>

using namespace veltro;
using test::row;

class TestProgramAddress : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aWebLinkIsWrappedWhole_data();
    void aWebLinkIsWrappedWhole();
    void anAddressOfOurSchemePassesAsItIs();
    void whatIsNoLinkIsNothing_data();
    void whatIsNoLinkIsNothing();
    void anEntryOfTheLibraryHasAnAddress();
};

void TestProgramAddress::aWebLinkIsWrappedWhole_data()
{
    QTest::addColumn<QString>("link");
    row("a plain link", "https://site.example/watch/1");
    row("a query with an item url of its own",
        "https://site.example/player?url=https%3A%2F%2Fother.example%2Fv%3Fa%3D1&x=2&url=3");
    row("percent signs, plus signs and a fragment",
        "http://site.example/a%20b+c?q=%26%2B+#t=1&u=%");
    row("letters beyond the first alphabet", "https://site.example/é/視頻?q=ß&r=😀");
    row("semicolons, quotes and brackets", "https://site.example/;a=\"1\"?b[]='2';c={}");
    row("the scheme in capitals", "HTTPS://site.example/");
    row("our own scheme inside", "https://site.example/?to=veltro://open?url=x");
}

void TestProgramAddress::aWebLinkIsWrappedWhole()
{
    QFETCH(const QString, link);
    const std::optional<QUrl> address = programAddress(QStringLiteral("  ") + link + QChar(u'\n'));
    QVERIFY(address);
    QCOMPARE(address->scheme(), QStringLiteral("veltro"));
    // The first item "url" is the whole link, and there is nothing else.
    const auto items = QUrlQuery(*address).queryItems(QUrl::FullyDecoded);
    QCOMPARE(items.size(), 1);
    QCOMPARE(items.first(), std::pair(QStringLiteral("url"), link));
    // It survives being handed on as text, as the bus and a command line do.
    QCOMPARE(programAddress(address->toString(QUrl::FullyEncoded)), address);
}

void TestProgramAddress::anAddressOfOurSchemePassesAsItIs()
{
    const QString given =
        QStringLiteral("veltro://save?url=https%3A%2F%2Fsite.example%2F%3Fa%3D1%26b%3D2&url=later");
    const std::optional<QUrl> address = programAddress(given);
    QVERIFY(address);
    QCOMPARE(address->toString(QUrl::FullyEncoded), given);
    QCOMPARE(QUrlQuery(*address).queryItemValue(QStringLiteral("url"), QUrl::FullyDecoded),
             QStringLiteral("https://site.example/?a=1&b=2"));
}

void TestProgramAddress::whatIsNoLinkIsNothing_data()
{
    QTest::addColumn<QString>("text");
    for (const char *const text :
         {"", " ", "site.example/watch", "file:///etc/passwd", "ftp://site.example/a",
          "javascript:alert(1)", "--help", "httpx://site.example", "veltro", "/a/file.mp4"}) {
        QTest::newRow(text) << QString::fromLatin1(text);
    }
}

void TestProgramAddress::whatIsNoLinkIsNothing()
{
    QFETCH(const QString, text);
    QVERIFY(!programAddress(text));
}

void TestProgramAddress::anEntryOfTheLibraryHasAnAddress()
{
    const QUuid id = QUuid::createUuid();
    const QUrl address = libraryItemAddress(id.toString(QUuid::WithoutBraces));
    QCOMPARE(libraryItemOf(QUrl(address.toString(QUrl::FullyEncoded))), id);
    QCOMPARE(programAddress(address.toString(QUrl::FullyEncoded)), address);
    QVERIFY(!libraryItemOf(*programAddress(QStringLiteral("https://item/1"))));
    QVERIFY(!libraryItemOf(QUrl(QStringLiteral("veltro://item/no-id"))));
    QVERIFY(
        !libraryItemOf(QUrl(QStringLiteral("https://item/") + id.toString(QUuid::WithoutBraces))));
}

QTEST_GUILESS_MAIN(TestProgramAddress)
#include "tst_program_address.moc"
