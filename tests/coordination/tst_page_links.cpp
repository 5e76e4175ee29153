// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/page_links.h"
#include "tests/rows.h"

#include <QTest>

using namespace veltro;
using test::row;

class TestPageLinks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void onlyAWebAddressIsAPageLink_data();
    void onlyAWebAddressIsAPageLink();
    void aBatchKeepsEveryWebAddressInOrder();
    void aRequestCarriesItsFirstAddress_data();
    void aRequestCarriesItsFirstAddress();
};

void TestPageLinks::onlyAWebAddressIsAPageLink_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("link");
    const QString page = QStringLiteral("https://example.org/watch?v=1&t=2#at");
    row("plain", page, page);
    row("blanks around", QStringLiteral(" \t\n") + page + QStringLiteral("\r\n "), page);
    row("no-break space around", QChar(0xa0) + page, page);
    row("upper case", "HTTP://Example.ORG/A", "http://example.org/A");
    row("letters of other scripts", "https://пример.example/ж",
        "https://xn--e1afmkfd.example/%D0%B6");
    row("a bar", "https://example.org/a|b", "https://example.org/a%7Cb");
    row("two lines", page + u'\n' + page, "");
    row("a sentence", "see https://example.org", "");
    row("no scheme", "example.org/watch", "");
    row("empty", "", "");
    row("a file", "file:///etc/passwd", "");
    row("begins alike", "httpx://example.org", "");
    row("no host is the engine's to refuse", "http://", "http://");
    row("script", "javascript:alert(1)", "");
    row("a bad port", "http://example.org:port/", "");
}

void TestPageLinks::onlyAWebAddressIsAPageLink()
{
    QFETCH(QString, text);
    QFETCH(QString, link);
    QCOMPARE(pageLink(text).value_or(QUrl()).toString(QUrl::FullyEncoded), link);
}

void TestPageLinks::aBatchKeepsEveryWebAddressInOrder()
{
    const QString text = QStringLiteral("\n\n  http://a.example/1 and\thttps://b.example/2\r\n"
                                        "ftp://c.example http://a.example/1\u2028mailto:x@y\n");
    const QList<QUrl> links = pageLinks(text);
    QCOMPARE(links, (QList<QUrl>{QUrl(QStringLiteral("http://a.example/1")),
                                 QUrl(QStringLiteral("https://b.example/2")),
                                 QUrl(QStringLiteral("http://a.example/1"))}));
    QVERIFY(pageLinks(QStringLiteral(" nothing here ")).isEmpty());
}

void TestPageLinks::aRequestCarriesItsFirstAddress_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<QString>("link");
    row("encoded", "veltro://save?url=https%3A%2F%2Fexample.org%2Fw%3Fv%3D1%26t%3D2",
        "https://example.org/w?v=1&t=2");
    row("decoded once", "veltro://save?url=https://example.org/a%2520b",
        "https://example.org/a%20b");
    row("not the first item", "veltro:?x=1&url=http://e.example", "http://e.example");
    row("the first of two", "veltro:?url=http://a.example&url=http://b.example",
        "http://a.example");
    row("another scheme is the engine's to refuse", "veltro:?url=ftp://a.example",
        "ftp://a.example");
    row("no items", "veltro://save", "");
    row("no such item", "veltro://save?link=http://a.example", "");
    row("no value", "veltro://save?url", "");
    row("an empty value", "veltro://save?url=&url=http://b.example", "");
    row("no address", "veltro://save?url=http://a.example:port", "");
}

void TestPageLinks::aRequestCarriesItsFirstAddress()
{
    QFETCH(QString, request);
    QFETCH(QString, link);
    QCOMPARE(linkInRequest(QUrl(request)).value_or(QUrl()).toString(QUrl::FullyEncoded), link);
}

QTEST_GUILESS_MAIN(TestPageLinks)
#include "tst_page_links.moc"
