// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/site/test_site.h"

#include <QFile>
#include <QTcpSocket>
#include <QTest>

#include <memory>

using veltro::TestSite;

namespace {

// Sends a request and returns the socket as soon as some of the answer has come.
std::unique_ptr<QTcpSocket> request(const QUrl &url)
{
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(url.host(), static_cast<quint16>(url.port()));
    if (socket->waitForConnected()) {
        socket->write("GET " + url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority) +
                      " HTTP/1.0\r\nCookie: session=ok\r\n\r\n");
        socket->waitForReadyRead();
    }
    return socket;
}

}

class TestSiteTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void twoSitesAtOnceKeepLogsOfTheirOwn()
    {
        const TestSite one;
        const TestSite other;
        QVERIFY(request(one.url(QStringLiteral("/plain?a=b")))->readAll().contains("200 OK"));
        QCOMPARE(one.requestCount(QStringLiteral("/plain")), 1);
        QCOMPARE(other.log().size(), 0);
        const TestSite::Request seen = one.log().first();
        QCOMPARE(seen.query, QStringLiteral("a=b"));
        QCOMPARE(seen.cookie, QStringLiteral("session=ok"));
        one.reset();
        QCOMPARE(one.log().size(), 0);
    }

    void aHeldRequestStopsAtItsByteAndGoesOnAtTheRelease()
    {
        const TestSite site;
        site.addRule(QStringLiteral("match=h264.mp4&hold=100"));
        const auto socket = request(site.url(QStringLiteral("/media/h264.mp4")));
        QTRY_COMPARE(site.log().first().sent, 100);
        QCOMPARE(site.log().first().state, QStringLiteral("open"));
        site.release();
        const qint64 whole = QFile(TestSite::mediaFile(QStringLiteral("h264.mp4"))).size();
        QTRY_COMPARE(site.log().first().sent, whole);
    }

    void theOtherAddressesAreATlsPortAndADeadOne()
    {
        const TestSite site;
        QCOMPARE(site.secureUrl(QStringLiteral("/plain")).scheme(), QStringLiteral("https"));
        const auto secure = request(site.secureUrl(QStringLiteral("/plain")));
        QVERIFY(!secure->readAll().contains("200 OK"));
        const auto dead = request(site.deadUrl(QStringLiteral("/plain")));
        QCOMPARE(dead->error(), QAbstractSocket::ConnectionRefusedError);
        QVERIFY(QFile::exists(TestSite::cookieFile(QStringLiteral("session"))));
    }
};

QTEST_GUILESS_MAIN(TestSiteTest)
#include "tst_test_site.moc"
