// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/site_import.h"

#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

using namespace veltro;

namespace {

using Found = std::vector<HostCookies>;

/// Browsers and a store whose answers a test decides.
struct FakeSteps {
    SiteImportSteps steps()
    {
        return {[this] { return browsers(); },
                [this](BrowserProfile profile, QString host) {
                    return read(profile.profile, std::move(host));
                },
                [this](QUrl file, QString host) { return read(file.fileName(), std::move(host)); },
                [this](Found cookies) { return save(std::move(cookies)); }};
    }
    QCoro::Task<std::vector<BrowserProfile>> browsers()
    {
        co_return {{QStringLiteral("Firefox"), QStringLiteral("Personal"), {}, {}},
                   {QStringLiteral("Chromium"), {}, {}, {}}};
    }
    QCoro::Task<Found> read(QString source, QString host)
    {
        asked << source + u' ' + host;
        if (source.startsWith(u'!')) {
            throw CookieImportError(CookieImportError::Kind::none, host, source);
        }
        // A copy, since what is named after co_return is moved away, a member too.
        Found copy = answer;
        co_return copy;
    }
    QCoro::Task<void> save(Found cookies)
    {
        if (isStoreBroken) {
            throw std::runtime_error("The disk is full.");
        }
        saved = std::move(cookies);
        co_return;
    }

    QStringList asked;
    Found answer{{QStringLiteral("video.example"), 12, "a"},
                 {QStringLiteral("www.video.example"), 1, "b"}};
    Found saved;
    bool isStoreBroken = false;
};

}

class TestSiteImport : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void profilesAreListedByName();
    void whatIsFoundIsSavedOnlyWhenConfirmed();
    void aFileIsReadForTheTypedSite();
    void aFailureIsSaidInWords();
    void nothingIsAskedForASiteThatIsNone();
};

void TestSiteImport::profilesAreListedByName()
{
    FakeSteps fake;
    SiteImport adding(fake.steps());
    adding.begin();
    QTRY_VERIFY(!adding.isBusy());
    QCOMPARE(adding.profiles(),
             (QStringList{QStringLiteral("Firefox, Personal"), QStringLiteral("Chromium")}));
    adding.readBrowser(2, QStringLiteral("video.example"));
    adding.readBrowser(-1, QStringLiteral("video.example"));
    QVERIFY(fake.asked.isEmpty());
}

void TestSiteImport::whatIsFoundIsSavedOnlyWhenConfirmed()
{
    FakeSteps fake;
    SiteImport adding(fake.steps());
    QSignalSpy saved(&adding, &SiteImport::saved);
    adding.begin();
    QTRY_VERIFY(!adding.isBusy());
    adding.save();
    adding.readBrowser(0, QStringLiteral("https://video.example/watch?v=1"));
    QTRY_VERIFY(!adding.isBusy());
    QCOMPARE(fake.asked, QStringList{QStringLiteral("Personal video.example")});
    QCOMPARE(adding.found(), (QStringList{QStringLiteral("video.example, 12 cookies"),
                                          QStringLiteral("www.video.example, 1 cookie")}));
    QVERIFY(fake.saved.empty() && saved.isEmpty());
    adding.save();
    QTRY_COMPARE(saved.size(), 1);
    QCOMPARE(fake.saved, fake.answer);
    QVERIFY(adding.found().isEmpty());
}

void TestSiteImport::aFileIsReadForTheTypedSite()
{
    FakeSteps fake;
    SiteImport adding(fake.steps());
    adding.readFile(QUrl(QStringLiteral("file:///tmp/cookies.txt")),
                    QStringLiteral("video.example"));
    QTRY_VERIFY(!adding.isBusy());
    QCOMPARE(fake.asked, QStringList{QStringLiteral("cookies.txt video.example")});
    QCOMPARE(adding.found().size(), 2);
    adding.discard();
    QVERIFY(adding.found().isEmpty());
}

void TestSiteImport::aFailureIsSaidInWords()
{
    FakeSteps fake;
    SiteImport adding(fake.steps());
    adding.readFile(QUrl(QStringLiteral("file:///tmp/!empty")), QStringLiteral("video.example"));
    QTRY_VERIFY(!adding.isBusy());
    QVERIFY(adding.error().contains(QStringLiteral("video.example")));
    QVERIFY(adding.found().isEmpty());

    fake.isStoreBroken = true;
    QSignalSpy saved(&adding, &SiteImport::saved);
    adding.readFile(QUrl(QStringLiteral("file:///tmp/full")), QStringLiteral("video.example"));
    QTRY_VERIFY(!adding.isBusy());
    QCOMPARE(adding.error(), QString());
    adding.save();
    QTRY_VERIFY(!adding.isBusy());
    QCOMPARE(adding.error(), QStringLiteral("The disk is full."));
    QVERIFY(saved.isEmpty());
}

void TestSiteImport::nothingIsAskedForASiteThatIsNone()
{
    FakeSteps fake;
    SiteImport adding(fake.steps());
    adding.readFile(QUrl(QStringLiteral("file:///tmp/cookies.txt")), QStringLiteral("  "));
    QTRY_VERIFY(!adding.isBusy());
    QVERIFY(!adding.error().isEmpty());
    QVERIFY(fake.asked.isEmpty());
}

QTEST_GUILESS_MAIN(TestSiteImport)
#include "tst_site_import.moc"
