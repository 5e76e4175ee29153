// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/search_index.h"
#include "platform/single_instance.h"
#include "tests/platform/private_bus.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using namespace veltro;

namespace {

const QString film = QStringLiteral("6a1f0c5e-4e3c-4c8e-9d4e-0b8f6f6d2a11");
const QString other = QStringLiteral("0f0e8c3c-64f2-4a52-9c57-4c9d6f0f7d22");

SearchableItem entry(const QString &identifier, const QString &title, const QString &uploader)
{
    SearchableItem item;
    item.uniqueIdentifier = identifier;
    item.domainIdentifier = QStringLiteral("app.veltro.app.library");
    item.contentType = QStringLiteral("video/*");
    item.title = title;
    item.contentDescription = uploader;
    item.contentURL = QUrl::fromLocalFile(QStringLiteral("/videos/") + title);
    return item;
}

}

/// The helper as the desktops meet it: started by the bus, called by name.
class TestSearchProvider : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void theShellFindsDescribesAndOpensAnEntry();
    void theShellHandsASearchToTheProgram();
    void theRunnerFindsAndOpensAnEntry();
    void aRunningHelperFindsWhatIsSavedMeanwhile();

private:
    /// What gdbus prints for a call of the shell's interface.
    QString askShell(const QString &method, const QStringList &arguments);
    QDBusMessage askRunner(const QString &method, const QVariantList &arguments);

    PrivateBus m_bus;
    QTemporaryDir m_data;
    std::unique_ptr<SearchIndex> m_index;
    std::unique_ptr<SingleInstance> m_program;
};

void TestSearchProvider::initTestCase()
{
    qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
    QVERIFY(test::writeFile(m_bus.serviceFolder() + QStringLiteral("/helper.service"),
                            "[D-BUS Service]\nName=app.veltro.app.SearchProvider\nExec=" +
                                QCoreApplication::applicationDirPath().toUtf8() +
                                "/veltro-search-provider\n"));
    QVERIFY(m_bus.start());
    m_index = std::make_unique<SearchIndex>(SearchIndex::standardFile());
    m_index->indexItems({entry(film, QStringLiteral("Été à Paris"), QStringLiteral("Somebody")),
                         entry(other, QStringLiteral("Winter"), QStringLiteral("Nobody"))});
    m_index->finish();
    m_program = std::make_unique<SingleInstance>();
    QCOMPARE(m_program->start({}), SingleInstance::Outcome::first);
    m_program->setReady();
}

void TestSearchProvider::cleanupTestCase()
{
    // The helper is not ours to wait for: it ends when it is idle, so it is ended.
    const auto helper = QDBusConnection::sessionBus().interface()->servicePid(
        QStringLiteral("app.veltro.app.SearchProvider"));
    QProcess::execute(QStringLiteral("kill"), {QString::number(helper.value())});
}

QString TestSearchProvider::askShell(const QString &method, const QStringList &arguments)
{
    QProcess gdbus;
    gdbus.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    gdbus.start(
        QStringLiteral("gdbus"),
        QStringList{QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"),
                    QStringLiteral("app.veltro.app.SearchProvider"),
                    QStringLiteral("--object-path"),
                    QStringLiteral("/app/veltro/app/SearchProvider"), QStringLiteral("--method"),
                    QStringLiteral("org.gnome.Shell.SearchProvider2.") + method} +
            arguments);
    gdbus.waitForFinished();
    return QString::fromUtf8(gdbus.readAllStandardOutput()).trimmed();
}

QDBusMessage TestSearchProvider::askRunner(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("app.veltro.app.SearchProvider"), QStringLiteral("/krunner"),
        QStringLiteral("org.kde.krunner1"), method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

void TestSearchProvider::theShellFindsDescribesAndOpensAnEntry()
{
    const QString found = QStringLiteral("(['%1'],)").arg(film);
    QCOMPARE(askShell(QStringLiteral("GetInitialResultSet"), {QStringLiteral("['paris', 'ete']")}),
             found);
    QCOMPARE(askShell(QStringLiteral("GetSubsearchResultSet"),
                      {QStringLiteral("['%1', '%2']").arg(film, other), QStringLiteral("['par']")}),
             found);
    QCOMPARE(askShell(QStringLiteral("GetInitialResultSet"), {QStringLiteral("['rome']")}),
             QStringLiteral("(@as [],)"));

    const QString metas =
        askShell(QStringLiteral("GetResultMetas"), {QStringLiteral("['%1', 'unknown']").arg(film)});
    QCOMPARE(metas, QStringLiteral("([{'description': <'Somebody'>, 'gicon': <'app.veltro.app'>, "
                                   "'id': <'%1'>, 'name': <'Été à Paris'>}],)")
                        .arg(film));

    QSignalSpy activated(m_program.get(), &SingleInstance::activated);
    QSignalSpy opened(m_program.get(), &SingleInstance::itemOpened);
    askShell(QStringLiteral("ActivateResult"),
             {film, QStringLiteral("['paris']"), QStringLiteral("12345")});
    QTRY_COMPARE(opened.size(), 1);
    QCOMPARE(opened.first().first().toUuid(), QUuid::fromString(film));
    QCOMPARE(activated.first().first().toString(), QStringLiteral("veltro_TIME12345"));
}

void TestSearchProvider::theShellHandsASearchToTheProgram()
{
    QSignalSpy searched(m_program.get(), &SingleInstance::searchRequested);
    askShell(QStringLiteral("LaunchSearch"),
             {QStringLiteral("['two', 'words']"), QStringLiteral("1")});
    QTRY_COMPARE(searched.size(), 1);
    QCOMPARE(searched.first().first().toString(), QStringLiteral("two words"));
}

void TestSearchProvider::theRunnerFindsAndOpensAnEntry()
{
    const QDBusMessage actions = askRunner(QStringLiteral("Actions"), {});
    QCOMPARE(actions.signature(), QStringLiteral("a(sss)"));

    const QDBusMessage answer = askRunner(QStringLiteral("Match"), {QStringLiteral("PARIS été")});
    QCOMPARE(answer.signature(), QStringLiteral("a(sssuda{sv})"));
    const auto list = answer.arguments().first().value<QDBusArgument>();
    list.beginArray();
    QVERIFY(!list.atEnd());
    QString id, text, icon;
    uint type = 0;
    double relevance = 0;
    QVariantMap properties;
    list.beginStructure();
    list >> id >> text >> icon >> type >> relevance >> properties;
    list.endStructure();
    QVERIFY(list.atEnd());
    list.endArray();
    QCOMPARE(id, film);
    QCOMPARE(text, QStringLiteral("Été à Paris"));
    QVERIFY(relevance > 0 && relevance <= 1);
    QCOMPARE(properties.value(QStringLiteral("subtext")).toString(), QStringLiteral("Somebody"));
    QCOMPARE(properties.value(QStringLiteral("urls")).toStringList(),
             QStringList{QStringLiteral("file:///videos/%C3%89t%C3%A9%20%C3%A0%20Paris")});

    QSignalSpy activated(m_program.get(), &SingleInstance::activated);
    QSignalSpy opened(m_program.get(), &SingleInstance::itemOpened);
    askRunner(QStringLiteral("SetActivationToken"), {QStringLiteral("token")});
    askRunner(QStringLiteral("Run"), {id, QString()});
    QTRY_COMPARE(opened.size(), 1);
    QCOMPARE(opened.first().first().toUuid(), QUuid::fromString(film));
    QCOMPARE(activated.first().first().toString(), QStringLiteral("token"));
}

void TestSearchProvider::aRunningHelperFindsWhatIsSavedMeanwhile()
{
    const QString late = QStringLiteral("3b0d7f58-0f1e-4b27-8f0b-6a3d0b1f5c33");
    m_index->indexItems({entry(late, QStringLiteral("Latecomer"), QStringLiteral("x"))});
    m_index->finish();
    QCOMPARE(askShell(QStringLiteral("GetInitialResultSet"), {QStringLiteral("['latecomer']")}),
             QStringLiteral("(['%1'],)").arg(late));
}

QTEST_GUILESS_MAIN(TestSearchProvider)
#include "tst_search_provider.moc"
