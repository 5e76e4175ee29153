// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cookie_jars_model.h"
#include "tests/library/library_case.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QSignalSpy>

using namespace veltro;
using namespace veltro::test;

class TestCookieJarsModel : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        const QString file = m_folder->filePath(QStringLiteral("library.sqlite"));
        m_container = makeContainer(file);
        m_other = makeContainer(file);
    }
    void jarsAreListedByHostAsTheyComeAndGo();
    void removingAJarRemovesItsFileAndItsRecord();

private:
    CookieJar jar(const char *host) const
    {
        const QString name = QString::fromLatin1(host);
        return {name,
                QUrl::fromLocalFile(m_folder->filePath(name + QStringLiteral(".cookies.txt"))),
                QDateTime::fromMSecsSinceEpoch(1'700'000'000'000, Qt::UTC)};
    }
    void insert(const std::vector<CookieJar> &jars) const
    {
        ModelContext context(m_other);
        for (const CookieJar &each : jars) {
            context.insert(each);
        }
        QVERIFY(context.save());
    }
    static QString hosts(const CookieJarsModel &model)
    {
        QStringList hosts;
        for (int row = 0; row < model.count(); ++row) {
            hosts << model.index(row).data(CookieJarsModel::hostRole).toString();
        }
        return hosts.join(u' ');
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::shared_ptr<ModelContainer> m_container;
    std::shared_ptr<ModelContainer> m_other;
};

void TestCookieJarsModel::jarsAreListedByHostAsTheyComeAndGo()
{
    insert({jar("m.example"), jar("c.example")});
    CookieJarsModel model;
    const QAbstractItemModelTester tester(&model);
    model.setContainer(m_container);
    QTRY_COMPARE_WITH_TIMEOUT(hosts(model), QStringLiteral("c.example m.example"), patience);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    insert({jar("z.example"), jar("a.example"), jar("d.example")});
    QTRY_COMPARE_WITH_TIMEOUT(hosts(model),
                              QStringLiteral("a.example c.example d.example m.example z.example"),
                              patience);
    CookieJar later = jar("d.example");
    later.updatedAt = later.updatedAt.addDays(1);
    ModelContext context(m_other);
    context.removeJar(QStringLiteral("a.example"));
    context.removeJar(QStringLiteral("m.example"));
    context.insert(later);
    QVERIFY(context.save());
    QTRY_COMPARE_WITH_TIMEOUT(hosts(model), QStringLiteral("c.example d.example z.example"),
                              patience);
    QCOMPARE(model.index(1).data(CookieJarsModel::updatedAtRole).toDateTime(), later.updatedAt);
    QCOMPARE(model.index(1).data(CookieJarsModel::fileUrlRole).toUrl(), later.fileURL);
    QCOMPARE(resets.count(), 0);
}

void TestCookieJarsModel::removingAJarRemovesItsFileAndItsRecord()
{
    const CookieJar kept = jar("kept.example");
    const CookieJar removed = jar("removed.example");
    const CookieJar fileless = jar("fileless.example");
    for (const CookieJar &each : {kept, removed}) {
        QFile file(each.fileURL.toLocalFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    insert({kept, removed, fileless});
    CookieJarsModel model;
    model.setContainer(m_container);
    QTRY_COMPARE_WITH_TIMEOUT(model.count(), 3, patience);
    model.removeJar(removed.host);
    model.removeJar(fileless.host);
    model.removeJar(QStringLiteral("unknown.example"));
    QTRY_COMPARE_WITH_TIMEOUT(hosts(model), QStringLiteral("kept.example"), patience);
    QVERIFY(!QFile::exists(removed.fileURL.toLocalFile()));
    QVERIFY(QFile::exists(kept.fileURL.toLocalFile()));
}

QTEST_GUILESS_MAIN(TestCookieJarsModel)
#include "tst_cookie_jars_model.moc"
