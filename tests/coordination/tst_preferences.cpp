// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/preferences.h"
#include "platform/log.h"
#include "platform/user_folders.h"
#include "tests/coordination/private_home.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QTest>

#include <atomic>
#include <csignal>
#include <sys/resource.h>
#include <thread>

using namespace veltro;

namespace {

const QString key = QStringLiteral("Preferences");

QJsonObject storedObject()
{
    return {{QStringLiteral("defaultFormatID"), QStringLiteral("bestaudio")},
            {QStringLiteral("outputTemplate"), QStringLiteral("%(id)s.%(ext)s")},
            {QStringLiteral("wifiOnly"), false},
            {QStringLiteral("writeSubtitles"), false},
            {QStringLiteral("preferredSubtitleLanguages"), QJsonArray{QStringLiteral("de")}},
            {QStringLiteral("extractAudioByDefault"), true},
            {QStringLiteral("audioFormat"), QStringLiteral("mp3")}};
}

/// While it lives no file grows beyond so many bytes, as if the disk had no more room.
class FullDisk {
public:
    explicit FullDisk(rlim_t room)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{room, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit m_before{};
};

/// Counts what the stores could not save, by where it was told.
class Failures {
public:
    Failures()
    {
        setLogSink([this, here = std::this_thread::get_id()](std::string_view line) {
            if (line.starts_with("[veltro] the settings could not be saved: Preferences")) {
                ++(std::this_thread::get_id() == here ? onThisThread : elsewhere);
            }
        });
    }
    ~Failures() { setLogSink({}); }
    Failures(const Failures &) = delete;
    Failures &operator=(const Failures &) = delete;

    std::atomic<int> onThisThread = 0;
    std::atomic<int> elsewhere = 0;
};

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson();
}

}

class TestPreferences : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void aNewUserHasTheDefaults();
    void everyFieldComesBack();
    void aDocumentOfAnotherShapeIsLeftAloneAndGivesTheDefaults_data();
    void aDocumentOfAnotherShapeIsLeftAloneAndGivesTheDefaults();
    void unknownKeysAreNoReasonToForgetTheRest();
    void theStoredDocumentHasExactlyTheSevenKeys();
    void aWriteKeepsTheOtherKeysAndLeavesNoOtherFile();
    void aFileThatCannotBeReplacedStaysAsItIs();
    void aFullDiskLeavesWhatWasThere();
    void noCallWaitsForAnotherProcessButTheEndDoes();
    void aFileThatIsNoneOfOursGivesTheDefaults();
    void downloadsGoBelowTheDesktopsDocuments();

private:
    std::unique_ptr<PrivateHome> m_home;
};

void TestPreferences::init()
{
    m_home = std::make_unique<PrivateHome>();
}

void TestPreferences::aNewUserHasTheDefaults()
{
    const Preferences preferences = Preferences::load();
    QCOMPARE(preferences.defaultFormatID, QStringLiteral("best"));
    QCOMPARE(preferences.outputTemplate, QStringLiteral("%(title)s [%(id)s].%(ext)s"));
    QCOMPARE(preferences.preferredSubtitleLanguages, QStringList{QStringLiteral("en")});
    QCOMPARE(preferences.audioFormat, QStringLiteral("m4a"));
    QVERIFY(preferences.wifiOnly);
    QVERIFY(preferences.writeSubtitles);
    QVERIFY(!preferences.extractAudioByDefault);
}

void TestPreferences::everyFieldComesBack()
{
    Preferences preferences;
    preferences.defaultFormatID = QStringLiteral("bestvideo[height<=720]+bestaudio, \"x\"; \\n");
    preferences.outputTemplate = QStringLiteral("%(title)s – ж 👩‍👧.%(ext)s\n");
    preferences.wifiOnly = false;
    preferences.writeSubtitles = false;
    preferences.preferredSubtitleLanguages = {};
    preferences.extractAudioByDefault = true;
    preferences.audioFormat = QString();
    preferences.save();
    QCOMPARE(Preferences::load(), preferences);

    preferences.preferredSubtitleLanguages = {QStringLiteral("pt-BR"), QString()};
    preferences.save();
    QCOMPARE(Preferences::load(), preferences);
}

void TestPreferences::aDocumentOfAnotherShapeIsLeftAloneAndGivesTheDefaults_data()
{
    QTest::addColumn<QByteArray>("stored");
    for (const QString &name : storedObject().keys()) {
        QJsonObject without = storedObject();
        without.remove(name);
        QTest::addRow("without %s", qPrintable(name)) << json(without);
        QJsonObject mistyped = storedObject();
        mistyped.insert(name, 1);
        QTest::addRow("a number for %s", qPrintable(name)) << json(mistyped);
        QJsonObject empty = storedObject();
        empty.insert(name, QJsonValue::Null);
        QTest::addRow("null for %s", qPrintable(name)) << json(empty);
    }
    QJsonObject mixed = storedObject();
    mixed.insert(QStringLiteral("preferredSubtitleLanguages"), QJsonArray{QStringLiteral("de"), 1});
    QTest::newRow("a list of other things") << json(mixed);
    QTest::newRow("a list") << QByteArray("[1, 2]");
    QTest::newRow("no JSON") << QByteArray("{\"defaultFormatID\": \"best\"");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("bytes") << QByteArray("\x00\xff\xfe{}", 5);
}

void TestPreferences::aDocumentOfAnotherShapeIsLeftAloneAndGivesTheDefaults()
{
    QFETCH(QByteArray, stored);
    DefaultsStore().setData(key, stored);
    QCOMPARE(Preferences::load(), Preferences());
    QCOMPARE(DefaultsStore().data(key).value_or("none"), stored);
}

void TestPreferences::unknownKeysAreNoReasonToForgetTheRest()
{
    QJsonObject stored = storedObject();
    stored.insert(QStringLiteral("fromALaterVersion"), QJsonArray{1, 2});
    DefaultsStore().setData(key, json(stored));
    const Preferences preferences = Preferences::load();
    QCOMPARE(preferences.defaultFormatID, QStringLiteral("bestaudio"));
    QCOMPARE(preferences.audioFormat, QStringLiteral("mp3"));
    QVERIFY(preferences.extractAudioByDefault);
}

void TestPreferences::theStoredDocumentHasExactlyTheSevenKeys()
{
    Preferences().save();
    const QByteArray stored = DefaultsStore().data(key).value_or(QByteArray());
    QCOMPARE(QJsonDocument::fromJson(stored).object().keys(), storedObject().keys());
}

void TestPreferences::aWriteKeepsTheOtherKeysAndLeavesNoOtherFile()
{
    const QString window = QStringLiteral("Window");
    DefaultsStore().setData(window, QByteArray("\x01\x02"));
    Preferences().save();
    QCOMPARE(DefaultsStore().data(window).value_or("none"), QByteArray("\x01\x02"));
    QCOMPARE(QDir(configurationFolder()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("veltro.ini")});
}

void TestPreferences::aFileThatCannotBeReplacedStaysAsItIs()
{
    Preferences kept;
    kept.audioFormat = QStringLiteral("opus");
    kept.save();
    // A folder in the file's place refuses every user, the superuser too.
    const QString blocked = m_home->path(QStringLiteral("blocked"));
    QVERIFY(QDir().mkpath(blocked + QStringLiteral("/inside")));
    Preferences changed = kept;
    changed.audioFormat = QStringLiteral("mp3");
    const Failures failures;
    {
        const DefaultsStore unwritable(blocked);
        changed.save(unwritable);
        QCOMPARE(Preferences::load(unwritable), changed); // in force as long as it lives
    }
    QVERIFY(failures.elsewhere > 0);
    QCOMPARE(Preferences::load(DefaultsStore(blocked)), Preferences());
    QCOMPARE(Preferences::load(), kept);
}

void TestPreferences::aFullDiskLeavesWhatWasThere()
{
    Preferences kept;
    kept.audioFormat = QStringLiteral("opus");
    kept.save();
    Preferences changed = kept;
    changed.outputTemplate.append(QStringLiteral(" and some more text"));
    for (const rlim_t room : {0, 1, 100, 200}) {
        const Failures failures;
        {
            const FullDisk disk(room);
            changed.save();
        }
        QVERIFY(failures.elsewhere > 0);
        QCOMPARE(Preferences::load(), kept);
    }
    QCOMPARE(QDir(configurationFolder())
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("veltro.ini")});
    {
        const DefaultsStore store;
        {
            const Failures failures;
            const FullDisk disk(100);
            changed.save(store);
            QTRY_VERIFY(failures.elsewhere > 0);
        }
        store.setData(QStringLiteral("Window"), "x"); // with which the other one goes along
    }
    QCOMPARE(Preferences::load(), changed);
}

void TestPreferences::noCallWaitsForAnotherProcessButTheEndDoes()
{
    const QString file = m_home->path(QStringLiteral("shared.ini"));
    QLockFile theirs(file + QStringLiteral(".lock"));
    QVERIFY(theirs.tryLock(0));
    const Failures failures;
    auto store = std::make_unique<DefaultsStore>(file);
    Preferences changed;
    for (const char *const format : {"mp3", "flac"}) {
        changed.audioFormat = QString::fromLatin1(format);
        changed.save(*store);
        QCOMPARE(Preferences::load(DefaultsStore(file)), changed);
    }
    QVERIFY(!QFile::exists(file));
    QCOMPARE(failures.onThisThread, 0); // a call that waits comes to its end so
    std::thread end([&store] { store.reset(); });
    theirs.unlock();
    end.join();
    QVERIFY(QFile::exists(file));
    QCOMPARE(Preferences::load(DefaultsStore(file)), changed);
}

void TestPreferences::aFileThatIsNoneOfOursGivesTheDefaults()
{
    m_home->write(QStringLiteral("config/veltro/veltro.ini"), QByteArray(5000, '\xfe') + "[[[\n=");
    QCOMPARE(Preferences::load(), Preferences());
    Preferences changed;
    changed.wifiOnly = false;
    changed.save();
    QCOMPARE(Preferences::load(), changed);
}

void TestPreferences::downloadsGoBelowTheDesktopsDocuments()
{
    QCOMPARE(downloadsDirectory().toLocalFile(),
             m_home->path(QStringLiteral("Documents/Downloads")));

    m_home->write(QStringLiteral("config/user-dirs.dirs"),
                  "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente ж\"\n");
    const QString folder = m_home->path(QStringLiteral("Dokumente ж/Downloads"));
    QCOMPARE(downloadsDirectory().toLocalFile(), folder);
    QVERIFY(QFileInfo(folder).isDir());
    m_home->write(QStringLiteral("Dokumente ж/Downloads/kept"), "x");
    QCOMPARE(downloadsDirectory().toLocalFile(), folder);
    QVERIFY(QFileInfo::exists(folder + QStringLiteral("/kept")));
}

QTEST_GUILESS_MAIN(TestPreferences)
#include "tst_preferences.moc"
