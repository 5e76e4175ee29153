// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/about_information.h"
#include "ui/settings/relative_date.h"
#include "ui/settings/settings_model.h"
#include "ui/settings/subtitle_languages.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

using namespace veltro;

namespace {

/// The record that two screens edit, as the coordinator keeps it.
class SharedRecord : public QObject {
    Q_OBJECT
public:
    /// A screen's controls over the record.
    std::unique_ptr<SettingsModel> screen()
    {
        auto model = std::make_unique<SettingsModel>(
            [this](const Preferences &preferences) { saved.push_back(preferences); });
        model->setPreferences(record);
        connect(model.get(), &SettingsModel::edited, this, [this](const Preferences &wanted) {
            if (record != wanted) {
                record = wanted;
                Q_EMIT changed();
            }
        });
        connect(this, &SharedRecord::changed, model.get(),
                [this, model = model.get()] { model->setPreferences(record); });
        return model;
    }

    Preferences record;
    std::vector<Preferences> saved;

Q_SIGNALS:
    void changed();
};

}

class TestSettingsModel : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void thePickersShowTheStoredChoice();
    void anUnknownSelectorSelectsNothingAndStaysAsItIs();
    void eachEditIsSavedAtOnce();
    void nothingIsSavedBeforeAnEdit();
    void twoScreensFollowEachOther();
    void languagesAreCutAtCommas_data();
    void languagesAreCutAtCommas();
    void typedLanguagesStayWhileTheFieldHasTheFocus();
    void aDateReadsAsItsDistance_data();
    void aDateReadsAsItsDistance();
    void daysAreThoseOfTheCalendar();
    void whatTheProgramSaysOfItselfComesFromTheBundle();
};

void TestSettingsModel::thePickersShowTheStoredChoice()
{
    SharedRecord shared;
    const auto screen = shared.screen();
    QCOMPARE(screen->qualityLabels(),
             (QStringList{QStringLiteral("Best"), QStringLiteral("1080p"), QStringLiteral("720p"),
                          QStringLiteral("480p"), QStringLiteral("Audio only")}));
    QCOMPARE(screen->quality(), 0);
    QCOMPARE(screen->audioFormatLabels(),
             (QStringList{QStringLiteral("M4A"), QStringLiteral("MP3"), QStringLiteral("Opus"),
                          QStringLiteral("FLAC")}));
    QCOMPARE(screen->audioFormat(), 0);
    screen->setQuality(2);
    QCOMPARE(shared.record.defaultFormatID,
             QStringLiteral("bestvideo[height<=720]+bestaudio/best[height<=720]"));
    QCOMPARE(screen->quality(), 2);
    screen->setQuality(4);
    QCOMPARE(shared.record.defaultFormatID, QStringLiteral("bestaudio[ext=m4a]/bestaudio"));
    screen->setAudioFormat(2);
    QCOMPARE(shared.record.audioFormat, QStringLiteral("opus"));
    QCOMPARE(screen->audioFormat(), 2);
}

void TestSettingsModel::anUnknownSelectorSelectsNothingAndStaysAsItIs()
{
    SharedRecord shared;
    shared.record.defaultFormatID = QStringLiteral("137+140");
    shared.record.audioFormat = QStringLiteral("M4A");
    const auto screen = shared.screen();
    QCOMPARE(screen->quality(), -1);
    QCOMPARE(screen->audioFormat(), -1);
    screen->setQuality(-1);
    screen->setQuality(5);
    screen->setAudioFormat(-1);
    screen->setAudioFormat(4);
    QCOMPARE(shared.record.defaultFormatID, QStringLiteral("137+140"));
    QCOMPARE(shared.record.audioFormat, QStringLiteral("M4A"));
}

void TestSettingsModel::eachEditIsSavedAtOnce()
{
    SharedRecord shared;
    const auto screen = shared.screen();
    screen->setExtractAudio(true);
    screen->setWriteSubtitles(false);
    screen->setWifiOnly(false);
    screen->setOutputTemplate(QStringLiteral("%(id)s"));
    screen->setOutputTemplate(QStringLiteral("%(id)s."));
    QCOMPARE(shared.saved.size(), std::size_t(5));
    Preferences expected;
    expected.extractAudioByDefault = true;
    expected.writeSubtitles = false;
    expected.wifiOnly = false;
    expected.outputTemplate = QStringLiteral("%(id)s.");
    QCOMPARE(shared.saved.back(), expected);
}

void TestSettingsModel::nothingIsSavedBeforeAnEdit()
{
    SharedRecord shared;
    shared.record.outputTemplate = QStringLiteral("%(id)s");
    const auto screen = shared.screen();
    screen->setOutputTemplate(QStringLiteral("%(id)s"));
    screen->setQuality(0);
    Q_EMIT shared.changed();
    QVERIFY(shared.saved.empty());
}

void TestSettingsModel::twoScreensFollowEachOther()
{
    SharedRecord shared;
    const auto tab = shared.screen();
    const auto window = shared.screen();
    QSignalSpy followed(window.get(), &SettingsModel::preferencesChanged);
    tab->setWifiOnly(false);
    tab->setLanguages(QStringLiteral("nl"));
    QCOMPARE(window->wifiOnly(), false);
    QCOMPARE(window->languages(), QStringLiteral("nl"));
    QCOMPARE(followed.size(), 2);
    window->setWifiOnly(true);
    QCOMPARE(tab->wifiOnly(), true);
    // The second edit rests on the first, not on what the other screen once read.
    QCOMPARE(shared.record.preferredSubtitleLanguages, QStringList{QStringLiteral("nl")});
}

void TestSettingsModel::languagesAreCutAtCommas_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("codes");
    const auto row = [](const char *why, const char *text, const char *codes) {
        QTest::newRow(why) << QString::fromUtf8(text) << QString::fromUtf8(codes);
    };
    row("an empty piece and a blank at the end", "en,, nl ,es ", "en|nl|es");
    row("tabs around a piece", "\ten\t,\t\tnl", "en|nl");
    row("blanks inside stay", "zh Hans, en", "zh Hans|en");
    row("a no-break space is a blank", "\u00a0en\u00a0", "en");
    row("a line feed is none", "en\n,nl", "en\n|nl");
    row("nothing", "", "");
    row("commas alone", " , ,\t,", "");
    row("the same code twice", "en,en", "en|en");
}

void TestSettingsModel::languagesAreCutAtCommas()
{
    QFETCH(QString, text);
    const QStringList codes = languagesOf(text);
    QTEST(codes.join(u'|'), "codes");
    QCOMPARE(languagesOf(languagesText(codes)), codes);
}

void TestSettingsModel::typedLanguagesStayWhileTheFieldHasTheFocus()
{
    SharedRecord shared;
    const auto screen = shared.screen();
    const auto other = shared.screen();
    QCOMPARE(screen->languages(), QStringLiteral("en"));
    screen->setLanguagesFocused(true);
    screen->setLanguages(QStringLiteral("en,, nl ,es "));
    QCOMPARE(screen->languages(), QStringLiteral("en,, nl ,es "));
    QCOMPARE(other->languages(), QStringLiteral("en, nl, es"));
    // What is typed elsewhere meanwhile is in the record, and waits for the focus to leave.
    other->setLanguages(QStringLiteral("de"));
    QCOMPARE(screen->languages(), QStringLiteral("en,, nl ,es "));
    QSignalSpy rewritten(screen.get(), &SettingsModel::languagesChanged);
    screen->setLanguagesFocused(false);
    QCOMPARE(screen->languages(), QStringLiteral("de"));
    QCOMPARE(rewritten.size(), 1);
    screen->setLanguagesFocused(true);
    screen->setLanguages({});
    screen->setLanguagesFocused(false);
    QCOMPARE(shared.record.preferredSubtitleLanguages, QStringList());
    QCOMPARE(screen->languages(), QString());
}

void TestSettingsModel::aDateReadsAsItsDistance_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QString>("text");
    constexpr qint64 day = 24 * 3600;
    const auto row = [](const char *text, qint64 seconds) {
        QTest::addRow("%s, %lld s", text, static_cast<long long>(seconds))
            << seconds << QString::fromLatin1(text);
    };
    row("now", 0);
    row("1 second ago", 1);
    row("59 seconds ago", 59);
    row("1 minute ago", 60);
    row("59 minutes ago", 3599);
    row("1 hour ago", 3600);
    row("23 hours ago", day - 1);
    row("yesterday", day);
    row("2 days ago", 2 * day);
    row("6 days ago", 6 * day);
    row("last week", 7 * day);
    row("last week", 13 * day);
    row("2 weeks ago", 14 * day);
    row("4 weeks ago", 29 * day);
    row("last month", 31 * day);
    row("2 months ago", 62 * day);
    row("last year", 365 * day);
    row("2 years ago", 731 * day);
    row("in 1 second", -1);
    row("in 5 minutes", -300);
    row("tomorrow", -day);
    row("next week", -7 * day);
    row("next month", -31 * day);
    row("next year", -366 * day);
}

void TestSettingsModel::aDateReadsAsItsDistance()
{
    QFETCH(qint64, seconds);
    // The 31st of a month: the shorter months before it are whole ones all the same.
    const QDateTime now(QDate(2026, 3, 31), QTime(12, 0), Qt::UTC);
    QTEST(relativeDateText(now.addSecs(-seconds), now), "text");
}

void TestSettingsModel::daysAreThoseOfTheCalendar()
{
    const QTimeZone zone("Europe/Amsterdam");
    QVERIFY(zone.isValid());
    const auto text = [&](QDateTime date) {
        return relativeDateText(date, QDateTime(QDate(2026, 11, 20), QTime(8, 0), zone));
    };
    QCOMPARE(text(QDateTime(QDate(2026, 11, 18), QTime(20, 0), zone)),
             QStringLiteral("2 days ago"));
    QCOMPARE(text(QDateTime(QDate(2026, 11, 19), QTime(20, 0), zone)),
             QStringLiteral("12 hours ago"));
    // A date kept in UTC is one of the reader's days: 23:30 there is the next day here.
    QCOMPARE(text(QDateTime(QDate(2026, 11, 17), QTime(23, 30), Qt::UTC)),
             QStringLiteral("2 days ago"));
    QCOMPARE(text(QDateTime()), QString());
}

void TestSettingsModel::whatTheProgramSaysOfItselfComesFromTheBundle()
{
    QTemporaryDir folder;
    const auto about = [&](const QByteArray &information) {
        QDir().mkpath(folder.filePath(QStringLiteral("Contents")));
        QFile file(folder.filePath(QStringLiteral("Contents/Info.json")));
        if (!file.open(QIODevice::WriteOnly) || file.write(information) < 0) {
            qFatal("the information cannot be written");
        }
        file.close();
        return std::make_unique<AboutInformation>(
            BundleInformation::of(folder.path().toStdString()));
    };
    const QString unknown = QStringLiteral("0.1.0");
    QCOMPARE(AboutInformation(BundleInformation::of("/nowhere")).version(), unknown);
    QCOMPARE(about(R"({"shortVersion": 2})")->version(), unknown);
    QCOMPARE(about("no JSON")->version(), unknown);
    const auto told = about(R"({"shortVersion": "2.3.4", "supportPage": "https://a.example/help",
                                "privacyPage": "file:///etc/hostname", "noticesPage": 7})");
    QCOMPARE(told->version(), QStringLiteral("2.3.4"));
    QCOMPARE(told->supportPage(), QUrl(QStringLiteral("https://a.example/help")));
    QVERIFY(told->privacyPage().isEmpty());
    QVERIFY(told->noticesPage().isEmpty());
}

QTEST_GUILESS_MAIN(TestSettingsModel)
#include "tst_settings_model.moc"
