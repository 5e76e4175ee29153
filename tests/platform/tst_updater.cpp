// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/updater.h"
#include "tests/files.h"
#include "tests/rows.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>
#include <openssl/evp.h>

using namespace veltro;
using namespace veltro::test;

namespace {

using State = UpdateManager::State;

/// A makers' key.
class SigningKey {
public:
    SigningKey() : m_key(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"), EVP_PKEY_free) {}
    [[nodiscard]] QByteArray publicKey() const
    {
        QByteArray bytes(32, '\0');
        std::size_t size = std::size_t(bytes.size());
        EVP_PKEY_get_raw_public_key(m_key.get(), reinterpret_cast<unsigned char *>(bytes.data()),
                                    &size);
        return bytes;
    }
    [[nodiscard]] QByteArray sign(const QByteArray &message) const
    {
        QByteArray signature(64, '\0');
        std::size_t size = std::size_t(signature.size());
        EVP_MD_CTX *const context = EVP_MD_CTX_new();
        EVP_DigestSignInit(context, nullptr, nullptr, nullptr, m_key.get());
        EVP_DigestSign(context, reinterpret_cast<unsigned char *>(signature.data()), &size,
                       reinterpret_cast<const unsigned char *>(message.constData()),
                       std::size_t(message.size()));
        EVP_MD_CTX_free(context);
        return signature;
    }

private:
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> m_key;
};

/// Serves answers by path on the loopback interface.
class Site : public QTcpServer {
public:
    Site()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *const client = nextPendingConnection();
            connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
            connect(client, &QTcpSocket::readyRead, client, [this, client] {
                if (client->peek(1 << 16).contains("\r\n\r\n")) {
                    const QByteArray path = client->readAll().split(' ').value(1);
                    asked += path;
                    client->write(
                        answers.value(path, "HTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n"));
                    client->disconnectFromHost();
                }
            });
        });
    }
    [[nodiscard]] QString address(const QByteArray &path) const
    {
        return QStringLiteral("http://127.0.0.1:%1").arg(serverPort()) + QString::fromLatin1(path);
    }
    void serve(const QByteArray &path, const QByteArray &content)
    {
        answers[path] = "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(content.size()) +
                        "\r\nConnection: close\r\n\r\n" + content;
    }
    QHash<QByteArray, QByteArray> answers;
    QList<QByteArray> asked;
};

/// What a feed says; made into a signed document.
struct Feed {
    QString date = QStringLiteral("2026-11-20T12:00:00Z");
    QString version = QStringLiteral("0.2.0");
    QString notes = QStringLiteral("New <b>things</b>");
    QJsonObject archive;

    [[nodiscard]] QByteArray payload() const
    {
        QJsonObject archives;
        if (!archive.isEmpty()) {
            archives.insert(QSysInfo::currentCpuArchitecture(), archive);
        }
        return QJsonDocument(QJsonObject{{QStringLiteral("date"), date},
                                         {QStringLiteral("version"), version},
                                         {QStringLiteral("notes"), notes},
                                         {QStringLiteral("archives"), archives}})
            .toJson();
    }
};

/// What an attacker makes of a good document and of what it says.
using Change = std::function<QByteArray(const QByteArray &good, const Feed &)>;

QByteArray envelope(const QByteArray &payload, const QByteArray &signature)
{
    return QJsonDocument(
               QJsonObject{
                   {QStringLiteral("format"), 1},
                   {QStringLiteral("payload"), QString::fromLatin1(payload.toBase64())},
                   {QStringLiteral("signature"), QString::fromLatin1(signature.toBase64())}})
        .toJson();
}

}

/// With a feed of the test's own, and a bundle in a folder of its own.
class TestUpdater : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void aNewVersionIsOfferedWithItsNotes();
    void withoutAFeedItSaysWhereUpdatesComeFrom();
    void aFeedThatCannotBeTrustedIsRefused_data();
    void aFeedThatCannotBeTrustedIsRefused();
    void whatWasSeenIsNotTakenBack_data();
    void whatWasSeenIsNotTakenBack();
    void theProgramsOwnCheckSpeaksOnlyOfNews();
    void aSkippedVersionIsOfferedOnlyWhenAskedFor();
    void aBundleOfTheUserIsReplacedAsAWhole();
    void anArchiveThatIsNotTheSignedOneIsRefused_data();
    void anArchiveThatIsNotTheSignedOneIsRefused();
    void aPackagedCopyIsLeftToThePackageManager();
    void theWindowMayCloseWhileADownloadGoesOn();
    void aRelaunchStartsTheNewCopyAsTheUserWould();

private:
    void writeBundle(const QString &folder, const QString &version, QJsonObject more = {},
                     const QByteArray &program = "#!/bin/sh\n");
    void serveFeed(const Feed &feed) { m_site->serve("/feed", signedFeed(feed)); }
    [[nodiscard]] QByteArray signedFeed(const Feed &feed) const
    {
        return envelope(feed.payload(), m_key.sign("veltro-updates-1\n" + feed.payload()));
    }
    /// Packs a bundle of that version and serves it; the entry of the feed.
    QJsonObject serveArchive(const QString &version, const QByteArray &program = "#!/bin/sh\n");
    /// Serves a feed and the archive that it names.
    Feed serveUpdate();
    /// Waits for what comes of a check or of an installation.
    State settled();
    State checked();
    State checkedByItself();
    [[nodiscard]] QByteArray installed() const
    {
        return contentOf(bundle() + QStringLiteral("/Contents/Resources/module.py"));
    }
    /// Whether nothing lies beside the bundle, hidden or not.
    [[nodiscard]] bool isAlone() const;
    void makeManager();

    [[nodiscard]] QString bundle() const
    {
        return m_folder->filePath(QStringLiteral("app/veltro"));
    }
    const SigningKey m_key;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Site> m_site;
    std::unique_ptr<UpdateManager> m_manager;
};

void TestUpdater::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_site = std::make_unique<Site>();
    writeBundle(bundle(), QStringLiteral("0.1.0"));
    makeManager();
}

void TestUpdater::cleanup()
{
    m_manager.reset();
}

void TestUpdater::makeManager()
{
    m_manager = std::make_unique<UpdateManager>(
        bundle().toStdString(), DefaultsStore(m_folder->filePath(QStringLiteral("defaults.ini"))));
}

void TestUpdater::writeBundle(const QString &folder, const QString &version, QJsonObject more,
                              const QByteArray &program)
{
    more.insert(QStringLiteral("shortVersion"), version);
    if (!more.contains(QStringLiteral("updateFeed"))) {
        more.insert(QStringLiteral("updateFeed"), m_site->address("/feed"));
    }
    more.insert(QStringLiteral("updateKey"), QString::fromLatin1(m_key.publicKey().toBase64()));
    writeFile(folder + QStringLiteral("/Contents/Info.json"), QJsonDocument(more).toJson());
    writeFile(folder + QStringLiteral("/Contents/Resources/module.py"), version.toUtf8());
    writeFile(folder + QStringLiteral("/veltro"), program);
    QFile::setPermissions(folder + QStringLiteral("/veltro"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QJsonObject TestUpdater::serveArchive(const QString &version, const QByteArray &program)
{
    writeBundle(m_folder->filePath(QStringLiteral("new/veltro-") + version), version, {}, program);
    const QString file = m_folder->filePath(QStringLiteral("archive.tar.gz"));
    const int code = QProcess::execute(
        QStringLiteral("tar"), {QStringLiteral("-czf"), file, QStringLiteral("-C"),
                                m_folder->filePath(QStringLiteral("new")), QStringLiteral(".")});
    if (code != 0) {
        qFatal("no archive");
    }
    const QByteArray archive = contentOf(file);
    m_site->serve("/archive", archive);
    const QByteArray digest = QCryptographicHash::hash(archive, QCryptographicHash::Sha256);
    return {{QStringLiteral("url"), m_site->address("/archive")},
            {QStringLiteral("size"), archive.size()},
            {QStringLiteral("sha256"), QString::fromLatin1(digest.toHex())}};
}

State TestUpdater::settled()
{
    const bool isSettled = QTest::qWaitFor(
        [&] {
            const State state = m_manager->state();
            return state != State::checking && state != State::downloading &&
                   state != State::preparing;
        },
        60'000);
    return isSettled ? m_manager->state() : State::checking;
}

State TestUpdater::checked()
{
    m_manager->checkForUpdates();
    return settled();
}

State TestUpdater::checkedByItself()
{
    m_manager->checkByItself();
    return settled();
}

Feed TestUpdater::serveUpdate()
{
    Feed feed;
    feed.archive = serveArchive(feed.version);
    serveFeed(feed);
    return feed;
}

bool TestUpdater::isAlone() const
{
    return QDir(m_folder->filePath(QStringLiteral("app")))
               .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot) ==
           QStringList{QStringLiteral("veltro")};
}

void TestUpdater::aNewVersionIsOfferedWithItsNotes()
{
    Feed feed = serveUpdate();
    m_manager->checkForUpdates();
    QVERIFY(m_manager->isShown());
    QCOMPARE(m_manager->state(), State::checking);
    QCOMPARE(settled(), State::available);
    QCOMPARE(m_manager->version(), QStringLiteral("0.2.0"));
    QCOMPARE(m_manager->notes(), feed.notes);
    QVERIFY(m_manager->canInstall());
    QVERIFY(m_manager->message().contains(QStringLiteral("0.1.0")));

    m_manager->later();
    feed.version = QStringLiteral("0.2.0.0");
    feed.archive = {};
    serveFeed(feed); // for other machines only
    QCOMPARE(checked(), State::available);
    QVERIFY(!m_manager->canInstall());
}

void TestUpdater::withoutAFeedItSaysWhereUpdatesComeFrom()
{
    writeBundle(bundle(), QStringLiteral("0.1.0"), {{QStringLiteral("updateFeed"), QString()}});
    makeManager();
    m_manager->checkByItself();
    QVERIFY(!m_manager->isShown());
    m_manager->checkForUpdates();
    QCOMPARE(m_manager->state(), State::unmanaged);
    QVERIFY(m_manager->isShown());
    QVERIFY(m_manager->message().contains(QStringLiteral("where the program was installed")));
    m_manager->later();
    QVERIFY(!m_manager->isShown());
}

void TestUpdater::aFeedThatCannotBeTrustedIsRefused_data()
{
    QTest::addColumn<Change>("change");
    const auto changed = [](const char *why, const Change &change) {
        QTest::newRow(why) << change;
    };
    changed("a payload that was changed", [this](const QByteArray &, Feed feed) {
        const QByteArray signature = m_key.sign("veltro-updates-1\n" + feed.payload());
        feed.notes += QLatin1Char('!');
        return envelope(feed.payload(), signature);
    });
    changed("another's key", [](const QByteArray &, const Feed &feed) {
        return envelope(feed.payload(), SigningKey().sign("veltro-updates-1\n" + feed.payload()));
    });
    changed("a signature made for something else", [this](const QByteArray &, const Feed &feed) {
        return envelope(feed.payload(), m_key.sign(feed.payload()));
    });
    changed("no signature", [](const QByteArray &, const Feed &feed) {
        return envelope(feed.payload(), QByteArray());
    });
    changed("cut short",
            [](const QByteArray &good, const Feed &) { return good.left(good.size() / 2); });
    changed("empty", [](const QByteArray &, const Feed &) { return QByteArray(); });
    changed("beyond measure",
            [](const QByteArray &good, const Feed &) { return good + QByteArray(2 << 20, ' '); });
    changed("signed, and without a date", [this](const QByteArray &, Feed feed) {
        feed.date.clear();
        return signedFeed(feed);
    });
    changed("signed, and no version", [this](const QByteArray &, Feed feed) {
        feed.version = QStringLiteral("1.0-rc");
        return signedFeed(feed);
    });
    changed("signed, and an archive from an unsafe address", [this](const QByteArray &, Feed feed) {
        feed.archive.insert(QStringLiteral("url"), QStringLiteral("http://site.example/a"));
        return signedFeed(feed);
    });
    changed("signed, and an archive beyond measure", [this](const QByteArray &, Feed feed) {
        feed.archive.insert(QStringLiteral("size"), double(qint64(1) << 40));
        return signedFeed(feed);
    });
}

void TestUpdater::aFeedThatCannotBeTrustedIsRefused()
{
    QFETCH(const Change, change);
    Feed feed;
    feed.archive = serveArchive(feed.version);
    m_site->serve("/feed", change(signedFeed(feed), feed));
    QCOMPARE(checked(), State::failed);
    QVERIFY(!m_manager->message().isEmpty());
    // Nothing of it is remembered: the true feed is taken.
    serveFeed(feed);
    QCOMPARE(checked(), State::available);
}

void TestUpdater::whatWasSeenIsNotTakenBack_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("version");
    QTest::addColumn<State>("expected");
    row("the same again", "2026-11-20T12:00:00Z", "0.2.0", State::available);
    row("an older list", "2026-11-20T11:59:59Z", "0.2.0", State::failed);
    row("an older list with a newer version", "2026-11-19T12:00:00Z", "0.3.0", State::failed);
    row("a lower version in a newer list", "2026-11-21T12:00:00Z", "0.1.9", State::failed);
    row("the same moment by another clock", "2026-11-20T13:00:00+01:00", "0.2.0", State::available);
}

void TestUpdater::whatWasSeenIsNotTakenBack()
{
    QFETCH(const QString, date);
    QFETCH(const QString, version);
    QFETCH(const State, expected);
    serveFeed(Feed());
    QCOMPARE(checked(), State::available);
    makeManager(); // a later launch
    Feed second;
    second.date = date;
    second.version = version;
    serveFeed(second);
    QCOMPARE(checked(), expected);
}

void TestUpdater::theProgramsOwnCheckSpeaksOnlyOfNews()
{
    m_site->serve("/feed", "broken");
    QCOMPARE(checkedByItself(), State::idle);
    QVERIFY(!m_manager->isShown());
    Feed feed;
    feed.version = QStringLiteral("0.1.0");
    serveFeed(feed);
    QCOMPARE(checkedByItself(), State::upToDate);
    QVERIFY(!m_manager->isShown());
    serveFeed(Feed());
    QCOMPARE(checkedByItself(), State::available);
    QVERIFY(m_manager->isShown());
    QCOMPARE(m_site->asked.size(), 3);

    writeBundle(bundle(), QStringLiteral("0.1.0"), {{QStringLiteral("checksForUpdates"), false}});
    makeManager();
    m_manager->checkByItself();
    QCOMPARE(m_manager->state(), State::idle);
    QCOMPARE(checked(), State::available);
    QCOMPARE(m_site->asked.size(), 4);
}

void TestUpdater::aSkippedVersionIsOfferedOnlyWhenAskedFor()
{
    serveFeed(Feed());
    QCOMPARE(checkedByItself(), State::available);
    m_manager->skip();
    QVERIFY(!m_manager->isShown());
    makeManager();
    QCOMPARE(checkedByItself(), State::idle);
    QVERIFY(!m_manager->isShown());
    QCOMPARE(checked(), State::available);
    m_manager->later();
    Feed next;
    next.version = QStringLiteral("0.2.1");
    serveFeed(next);
    QCOMPARE(checkedByItself(), State::available);
    QCOMPARE(m_manager->version(), QStringLiteral("0.2.1"));
}

void TestUpdater::aBundleOfTheUserIsReplacedAsAWhole()
{
    writeFile(bundle() + QStringLiteral("/Contents/Resources/gone-in-the-new-version"), "x");
    writeFile(m_folder->filePath(QStringLiteral("app/.veltro-update-crashed/part")), "x");
    serveUpdate();
    QCOMPARE(checked(), State::available);
    m_manager->install();
    QCOMPARE(settled(), State::ready);
    QCOMPARE(m_manager->progress(), 1.0);
    // The running program keeps its own files until it ends.
    QCOMPARE(installed(), QByteArray("0.1.0"));
    m_manager->finish();
    QCOMPARE(installed(), QByteArray("0.2.0"));
    QVERIFY(QFileInfo(bundle() + QStringLiteral("/veltro")).isExecutable());
    QVERIFY(
        !QFile::exists(bundle() + QStringLiteral("/Contents/Resources/gone-in-the-new-version")));
    QVERIFY(isAlone());
    makeManager();
    QCOMPARE(m_manager->currentVersion(), QStringLiteral("0.2.0"));
    QCOMPARE(checked(), State::upToDate);
}

void TestUpdater::anArchiveThatIsNotTheSignedOneIsRefused_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *const kind :
         {"changed", "cut short", "longer", "missing", "another version", "no bundle"}) {
        QTest::newRow(kind) << QByteArray(kind);
    }
}

void TestUpdater::anArchiveThatIsNotTheSignedOneIsRefused()
{
    QFETCH(const QByteArray, kind);
    Feed feed;
    feed.archive = serveArchive(kind == "another version" ? QStringLiteral("0.2.1") : feed.version);
    QByteArray archive = contentOf(m_folder->filePath(QStringLiteral("archive.tar.gz")));
    if (kind == "changed") {
        archive[archive.size() / 2] = char(archive.at(archive.size() / 2) ^ 1);
    } else if (kind == "cut short") {
        archive.chop(10);
    } else if (kind == "longer") {
        archive += "more";
    } else if (kind == "no bundle") {
        archive = "this is signed, and no archive";
        feed.archive.insert(QStringLiteral("size"), archive.size());
        feed.archive.insert(
            QStringLiteral("sha256"),
            QString::fromLatin1(
                QCryptographicHash::hash(archive, QCryptographicHash::Sha256).toHex()));
    }
    m_site->serve("/archive", archive);
    if (kind == "missing") {
        m_site->answers.remove("/archive");
    }
    serveFeed(feed);
    QCOMPARE(checked(), State::available);
    m_manager->install();
    QCOMPARE(settled(), State::failed);
    QVERIFY(!m_manager->message().isEmpty());
    m_manager->finish();
    QCOMPARE(installed(), QByteArray("0.1.0"));
    QVERIFY(isAlone());
}

void TestUpdater::aPackagedCopyIsLeftToThePackageManager()
{
    writeBundle(bundle(), QStringLiteral("0.1.0"),
                {{QStringLiteral("managedBy"), QStringLiteral("apt")}});
    makeManager();
    serveUpdate();
    QCOMPARE(checked(), State::available);
    QVERIFY(!m_manager->canInstall());
    QVERIFY(m_manager->message().contains(QStringLiteral("package manager")));
    m_manager->install();
    QCOMPARE(m_manager->state(), State::available);
    QCOMPARE(m_site->asked, QList<QByteArray>{"/feed"});
}

void TestUpdater::theWindowMayCloseWhileADownloadGoesOn()
{
    serveUpdate();
    QCOMPARE(checked(), State::available);
    m_manager->install();
    m_manager->later();
    QVERIFY(!m_manager->isShown());
    m_manager->checkForUpdates(); // shows what is under way
    QVERIFY(m_manager->isShown());
    QCOMPARE(settled(), State::ready);
    // The end of the program puts it in place; a manager that goes without leaves no trace.
    m_manager.reset();
    QCOMPARE(installed(), QByteArray("0.1.0"));
    QVERIFY(isAlone());
}

void TestUpdater::aRelaunchStartsTheNewCopyAsTheUserWould()
{
    // The new copy tells how it was started; the name appears when all is told.
    const QString told = m_folder->filePath(QStringLiteral("told"));
    Feed feed;
    feed.archive =
        serveArchive(feed.version, "#!/bin/sh\n"
                                   "{ echo \"started $# $0\"; env; } > \"$TOLD_TO.part\"\n"
                                   "mv \"$TOLD_TO.part\" \"$TOLD_TO\"\n");
    serveFeed(feed);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TOLD_TO"), told);
    environment.insert(QStringLiteral("XDG_ACTIVATION_TOKEN"), QStringLiteral("of the old start"));
    program.setProcessEnvironment(environment);
    program.start(QCoreApplication::applicationDirPath() + QStringLiteral("/relaunch-probe"),
                  {bundle(), m_folder->filePath(QStringLiteral("defaults.ini"))});
    QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, 60'000);
    QCOMPARE(program.exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(told), 60'000);
    const QList<QByteArray> lines = contentOf(told).split('\n');
    QCOMPARE(lines.first(), "started 0 " + bundle().toUtf8() + "/veltro");
    QVERIFY(lines.contains("TOLD_TO=" + told.toUtf8()));
    for (const QByteArray &line : lines) {
        // What the old one had set for its interpreter, and what was its own.
        QVERIFY2(!line.startsWith("PYTHONHOME=") && !line.startsWith("XDG_ACTIVATION_TOKEN="),
                 line.constData());
    }
    QCOMPARE(installed(), QByteArray("0.2.0"));
}

QTEST_GUILESS_MAIN(TestUpdater)
#include "tst_updater.moc"
