// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/site_import.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;
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
        co_return {{u"Firefox"_s, u"Personal"_s, {}, {}}, {u"Chromium"_s, {}, {}, {}}};
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
    Found answer{{u"video.example"_s, 12, "a"}, {u"www.video.example"_s, 1, "b"}};
    Found saved;
    bool isStoreBroken = false;
};

}

class TestSiteImport : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_fake = FakeSteps();
        m_adding = std::make_unique<SiteImport>(m_fake.steps());
    }

    void profilesAreListedByName();
    void whatIsFoundIsSavedOnlyWhenConfirmed();
    void aFileIsReadForTheTypedSite();
    void aFailureIsSaidInWords();

private:
    void readFile(const QString &name, const QString &host)
    {
        m_adding->readFile(QUrl::fromLocalFile(u"/tmp/"_s + name), host);
        QTRY_VERIFY(!m_adding->isBusy());
    }

    const QString m_site = u"video.example"_s;
    FakeSteps m_fake;
    std::unique_ptr<SiteImport> m_adding;
};

void TestSiteImport::profilesAreListedByName()
{
    m_adding->begin();
    QTRY_VERIFY(!m_adding->isBusy());
    QCOMPARE(m_adding->profiles().join(u'|'), u"Firefox, Personal|Chromium"_s);
    m_adding->readBrowser(2, m_site);
    m_adding->readBrowser(-1, m_site);
    QVERIFY(m_fake.asked.isEmpty());
}

void TestSiteImport::whatIsFoundIsSavedOnlyWhenConfirmed()
{
    const QSignalSpy saved(m_adding.get(), &SiteImport::saved);
    m_adding->begin();
    QTRY_VERIFY(!m_adding->isBusy());
    m_adding->save();
    m_adding->readBrowser(0, u"https://video.example/watch?v=1"_s);
    QTRY_VERIFY(!m_adding->isBusy());
    QCOMPARE(m_fake.asked, QStringList{u"Personal video.example"_s});
    QCOMPARE(m_adding->found().join(u'|'),
             u"video.example, 12 cookies|www.video.example, 1 cookie"_s);
    QVERIFY(m_fake.saved.empty() && saved.isEmpty());
    m_adding->save();
    QTRY_COMPARE(saved.size(), 1);
    QCOMPARE(m_fake.saved, m_fake.answer);
    QVERIFY(m_adding->found().isEmpty());
}

void TestSiteImport::aFileIsReadForTheTypedSite()
{
    readFile(u"cookies.txt"_s, u"  "_s);
    QVERIFY(!m_adding->error().isEmpty());
    QVERIFY(m_fake.asked.isEmpty());
    readFile(u"cookies.txt"_s, m_site);
    QCOMPARE(m_fake.asked, QStringList{u"cookies.txt video.example"_s});
    QCOMPARE(m_adding->found().size(), 2);
    m_adding->discard();
    QVERIFY(m_adding->found().isEmpty());
}

void TestSiteImport::aFailureIsSaidInWords()
{
    readFile(u"!empty"_s, m_site);
    QVERIFY(m_adding->error().contains(m_site));
    QVERIFY(m_adding->found().isEmpty());

    m_fake.isStoreBroken = true;
    const QSignalSpy saved(m_adding.get(), &SiteImport::saved);
    readFile(u"full"_s, m_site);
    QCOMPARE(m_adding->error(), QString());
    m_adding->save();
    QTRY_VERIFY(!m_adding->isBusy());
    QCOMPARE(m_adding->error(), u"The disk is full."_s);
    QVERIFY(saved.isEmpty());
}

QTEST_GUILESS_MAIN(TestSiteImport)
#include "tst_site_import.moc"
