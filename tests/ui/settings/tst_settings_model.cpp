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

using namespace Qt::StringLiterals;
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
    void languagesAreCutAtCommas();
    void typedLanguagesStayWhileTheFieldHasTheFocus();
    void aDateReadsAsItsDistance();
    void daysAreThoseOfTheCalendar();
    void whatTheProgramSaysOfItselfComesFromTheBundle();
};

void TestSettingsModel::thePickersShowTheStoredChoice()
{
    SharedRecord shared;
    const auto screen = shared.screen();
    QCOMPARE(screen->qualityLabels(),
             (QStringList{u"Best"_s, u"1080p"_s, u"720p"_s, u"480p"_s, u"Audio only"_s}));
    QCOMPARE(screen->quality(), 0);
    QCOMPARE(screen->audioFormatLabels(), (QStringList{u"M4A"_s, u"MP3"_s, u"Opus"_s, u"FLAC"_s}));
    QCOMPARE(screen->audioFormat(), 0);
    screen->setQuality(2);
    QCOMPARE(shared.record.defaultFormatID,
             u"bestvideo[height<=720]+bestaudio/best[height<=720]"_s);
    QCOMPARE(screen->quality(), 2);
    screen->setQuality(4);
    QCOMPARE(shared.record.defaultFormatID, u"bestaudio[ext=m4a]/bestaudio"_s);
    screen->setAudioFormat(2);
    QCOMPARE(shared.record.audioFormat, u"opus"_s);
    QCOMPARE(screen->audioFormat(), 2);
}

void TestSettingsModel::anUnknownSelectorSelectsNothingAndStaysAsItIs()
{
    SharedRecord shared;
    shared.record.defaultFormatID = u"137+140"_s;
    shared.record.audioFormat = u"M4A"_s;
    const auto screen = shared.screen();
    QCOMPARE(screen->quality(), -1);
    QCOMPARE(screen->audioFormat(), -1);
    screen->setQuality(-1);
    screen->setQuality(5);
    screen->setAudioFormat(-1);
    screen->setAudioFormat(4);
    QCOMPARE(shared.record.defaultFormatID, u"137+140"_s);
    QCOMPARE(shared.record.audioFormat, u"M4A"_s);
}

void TestSettingsModel::eachEditIsSavedAtOnce()
{
    SharedRecord shared;
    const auto screen = shared.screen();
    screen->setExtractAudio(true);
    screen->setWriteSubtitles(false);
    screen->setWifiOnly(false);
    screen->setOutputTemplate(u"%(id)s"_s);
    screen->setOutputTemplate(u"%(id)s."_s);
    QCOMPARE(shared.saved.size(), std::size_t(5));
    Preferences expected;
    expected.extractAudioByDefault = true;
    expected.writeSubtitles = false;
    expected.wifiOnly = false;
    expected.outputTemplate = u"%(id)s."_s;
    QCOMPARE(shared.saved.back(), expected);
}

void TestSettingsModel::nothingIsSavedBeforeAnEdit()
{
    SharedRecord shared;
    shared.record.outputTemplate = u"%(id)s"_s;
    const auto screen = shared.screen();
    screen->setOutputTemplate(u"%(id)s"_s);
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
    tab->setLanguages(u"nl"_s);
    QCOMPARE(window->wifiOnly(), false);
    QCOMPARE(window->languages(), u"nl"_s);
    QCOMPARE(followed.size(), 2);
    window->setWifiOnly(true);
    QCOMPARE(tab->wifiOnly(), true);
    // The second edit rests on the first, not on what the other screen once read.
    QCOMPARE(shared.record.preferredSubtitleLanguages, QStringList{u"nl"_s});
}

void TestSettingsModel::languagesAreCutAtCommas()
{
    const auto pieces = [](const QString &text) {
        const QStringList codes = languagesOf(text);
        return languagesOf(languagesText(codes)) == codes ? codes.join(u'|') : u"no way back"_s;
    };
    QCOMPARE(pieces(u"en,, nl ,es "_s), u"en|nl|es"_s);
    QCOMPARE(pieces(u"\ten\t,\t\tnl"_s), u"en|nl"_s);
    QCOMPARE(pieces(u"zh Hans, en"_s), u"zh Hans|en"_s);
    QCOMPARE(pieces(u"\u00a0en\u00a0"_s), u"en"_s); // a no-break space is a blank
    QCOMPARE(pieces(u"en\n,nl"_s), u"en\n|nl"_s);   // a line feed is none
    QCOMPARE(pieces(u""_s), u""_s);
    QCOMPARE(pieces(u" , ,\t,"_s), u""_s);
    QCOMPARE(pieces(u"en,en"_s), u"en|en"_s);
}

void TestSettingsModel::typedLanguagesStayWhileTheFieldHasTheFocus()
{
    SharedRecord shared;
    const auto screen = shared.screen();
    const auto other = shared.screen();
    QCOMPARE(screen->languages(), u"en"_s);
    screen->setLanguagesFocused(true);
    screen->setLanguages(u"en,, nl ,es "_s);
    QCOMPARE(screen->languages(), u"en,, nl ,es "_s);
    QCOMPARE(other->languages(), u"en, nl, es"_s);
    // What is typed elsewhere meanwhile is in the record, and waits for the focus to leave.
    other->setLanguages(u"de"_s);
    QCOMPARE(screen->languages(), u"en,, nl ,es "_s);
    QSignalSpy rewritten(screen.get(), &SettingsModel::languagesChanged);
    screen->setLanguagesFocused(false);
    QCOMPARE(screen->languages(), u"de"_s);
    QCOMPARE(rewritten.size(), 1);
    screen->setLanguagesFocused(true);
    screen->setLanguages({});
    screen->setLanguagesFocused(false);
    QCOMPARE(shared.record.preferredSubtitleLanguages, QStringList());
    QCOMPARE(screen->languages(), QString());
}

void TestSettingsModel::aDateReadsAsItsDistance()
{
    constexpr qint64 day = 24 * 3600;
    const std::vector<std::pair<qint64, const char *>> distances{
        {0, "now"},
        {1, "1 second ago"},
        {59, "59 seconds ago"},
        {60, "1 minute ago"},
        {3599, "59 minutes ago"},
        {3600, "1 hour ago"},
        {day - 1, "23 hours ago"},
        {day, "yesterday"},
        {2 * day, "2 days ago"},
        {6 * day, "6 days ago"},
        {7 * day, "last week"},
        {13 * day, "last week"},
        {14 * day, "2 weeks ago"},
        {29 * day, "4 weeks ago"},
        {31 * day, "last month"},
        {62 * day, "2 months ago"},
        {365 * day, "last year"},
        {731 * day, "2 years ago"},
        {-1, "in 1 second"},
        {-300, "in 5 minutes"},
        {-day, "tomorrow"},
        {-7 * day, "next week"},
        {-31 * day, "next month"},
        {-366 * day, "next year"},
    };
    // The 31st of a month: the shorter months before it are whole ones all the same.
    const QDateTime now(QDate(2026, 3, 31), QTime(12, 0), Qt::UTC);
    for (const auto &[seconds, text] : distances) {
        QCOMPARE(relativeDateText(now.addSecs(-seconds), now), QString::fromLatin1(text));
    }
}

void TestSettingsModel::daysAreThoseOfTheCalendar()
{
    const QTimeZone zone("Europe/Amsterdam");
    QVERIFY(zone.isValid());
    const auto text = [&](QDateTime date) {
        return relativeDateText(date, QDateTime(QDate(2026, 11, 20), QTime(8, 0), zone));
    };
    QCOMPARE(text(QDateTime(QDate(2026, 11, 18), QTime(20, 0), zone)), u"2 days ago"_s);
    QCOMPARE(text(QDateTime(QDate(2026, 11, 19), QTime(20, 0), zone)), u"12 hours ago"_s);
    // A date kept in UTC is one of the reader's days: 23:30 there is the next day here.
    QCOMPARE(text(QDateTime(QDate(2026, 11, 17), QTime(23, 30), Qt::UTC)), u"2 days ago"_s);
    QCOMPARE(text(QDateTime()), QString());
}

void TestSettingsModel::whatTheProgramSaysOfItselfComesFromTheBundle()
{
    QTemporaryDir folder;
    const auto about = [&](const QByteArray &information) {
        QDir().mkpath(folder.filePath(u"Contents"_s));
        QFile file(folder.filePath(u"Contents/Info.json"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(information) < 0) {
            qFatal("the information cannot be written");
        }
        file.close();
        return std::make_unique<AboutInformation>(
            BundleInformation::of(folder.path().toStdString()));
    };
    const QString unknown = u"0.1.0"_s;
    QCOMPARE(AboutInformation(BundleInformation::of("/nowhere")).version(), unknown);
    QCOMPARE(about(R"({"shortVersion": 2})")->version(), unknown);
    QCOMPARE(about("no JSON")->version(), unknown);
    const auto told = about(R"({"shortVersion": "2.3.4", "supportPage": "https://a.example/help",
                                "privacyPage": "file:///etc/hostname", "noticesPage": 7})");
    QCOMPARE(told->version(), u"2.3.4"_s);
    QCOMPARE(told->supportPage(), QUrl(u"https://a.example/help"_s));
    QVERIFY(told->privacyPage().isEmpty());
    QVERIFY(told->noticesPage().isEmpty());
}

QTEST_GUILESS_MAIN(TestSettingsModel)
#include "tst_settings_model.moc"
