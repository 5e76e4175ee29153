// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python.h"
#include "engine/media/media_info.h"
#include "engine/runtime/python_executor.h"
#include "tests/rows.h"

#include <QTest>
#include <QUuid>

#include <stdexcept>

using namespace veltro;
using test::row;

namespace {

/// Evaluates a dictionary written as Python source, parses it inside a job, and brings the record
/// out.
template <typename Record>
Record parsed(const char *source)
{
    return PythonExecutor::primary().queue().sync([source] {
        return PythonExecutor::runThrowing([source] {
            const PythonObject scope = Python().attr("dict")();
            return Record::parse(Python().attr("eval")(source, scope, scope));
        });
    });
}

bool isUuid(const QString &text)
{
    return !QUuid::fromString(text).isNull();
}

}

class TestMediaInfo : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void aPageIsReadWhole();
    void missingKeysHaveTheirDefaults();
    void keysOfAnotherTypeHaveTheirDefaults();
    void aPlaylistKeepsItsReadableEntriesInOrder();
    void whatIsNoDictionaryIsRefused();
    void aFormatSaysWhatItCarries_data();
    void aFormatSaysWhatItCarries();
    void aFormatFillsInWhatItCan();
    void aFormatsLabelTellsWhatMatters_data();
    void aFormatsLabelTellsWhatMatters();
};

void TestMediaInfo::initTestCase()
{
    PythonExecutor::primary().queue().sync([] {
        PythonExecutor::prepareEnvironment();
        PythonExecutor::releaseStartupThreadState();
    });
}

void TestMediaInfo::aPageIsReadWhole()
{
    const auto info = parsed<MediaInfo>(R"({
        'id': 'x1', 'title': 'Größe \u202e<b>', 'uploader': 'U', 'duration': 12,
        'thumbnail': 'http://127.0.0.1/t.jpg', 'webpage_url': 'http://127.0.0.1/p?a=b%20c',
        'extractor_key': 'Generic',
        'formats': [{'format_id': '1', 'ext': 'webm'}, {'format_id': '0', 'ext': 'mp4'}],
        'subtitles': {'en': [{'ext': 'vtt', 'url': 'http://127.0.0.1/en.vtt'}, {'ext': 'srv3'}],
                      7: [{'ext': 'vtt'}]},
        'automatic_captions': {'de': [{'ext': None, 'url': ''}]}})");
    QCOMPARE(info.id, QStringLiteral("x1"));
    QCOMPARE(info.title, QStringLiteral("Größe \u202e<b>"));
    QCOMPARE(info.uploader, QStringLiteral("U"));
    QCOMPARE(info.durationSeconds, 12.0);
    QCOMPARE(info.thumbnailURL, QUrl(QStringLiteral("http://127.0.0.1/t.jpg")));
    QCOMPARE(info.webpageURL, QUrl(QStringLiteral("http://127.0.0.1/p?a=b%20c")));
    QCOMPARE(info.extractor, QStringLiteral("Generic"));
    QCOMPARE(info.formats.size(), std::size_t(2));
    QCOMPARE(info.formats[0].id, QStringLiteral("1")); // the order is the page's
    QVERIFY(!info.isPlaylist);
    QCOMPARE(info.subtitles.size(), std::size_t(3));
    QCOMPARE(info.subtitles[0].id(), QStringLiteral("en-vtt"));
    QCOMPARE(info.subtitles[1].id(), QStringLiteral("en-srv3"));
    QVERIFY(!info.subtitles[1].url);
    const Subtitle automatic{QStringLiteral("de"), QStringLiteral("vtt"), std::nullopt, true};
    QCOMPARE(info.subtitles[2], automatic);
}

void TestMediaInfo::missingKeysHaveTheirDefaults()
{
    MediaInfo expected;
    expected.title = QStringLiteral("Untitled");
    expected.uploader = QString();
    expected.extractor = QString();
    QCOMPARE(parsed<MediaInfo>("{}"), expected);
}

void TestMediaInfo::keysOfAnotherTypeHaveTheirDefaults()
{
    const auto info = parsed<MediaInfo>(R"({
        '_type': 3, 'id': 5, 'title': None, 'uploader': None, 'duration': 'long',
        'thumbnail': [], 'webpage_url': 'http://[', 'extractor_key': {}, 'formats': 'abc',
        'subtitles': ['en'], 'automatic_captions': {'en': 'text', 'fr': [None]}})");
    QVERIFY(isUuid(info.id));
    QCOMPARE(info.title, QStringLiteral("Untitled"));
    QVERIFY(!info.uploader && !info.extractor && !info.durationSeconds);
    QVERIFY(!info.thumbnailURL && !info.webpageURL);
    QVERIFY(info.formats.empty());
    QCOMPARE(info.subtitles.size(), std::size_t(1));
    QCOMPARE(info.subtitles[0].id(), QStringLiteral("fr-vtt"));
}

void TestMediaInfo::aPlaylistKeepsItsReadableEntriesInOrder()
{
    const auto info = parsed<MediaInfo>(R"({
        '_type': 'playlist', 'id': 'p', 'title': 'List', 'formats': [{'format_id': '1'}],
        'entries': [{'id': 'a', 'title': 'A'}, None, {'id': 'b', '_type': 'playlist',
                    'entries': [{'id': 'c'}]}],
        'subtitles': {'en': [{'ext': 'vtt'}]}})");
    QVERIFY(info.isPlaylist);
    QVERIFY(info.formats.empty());
    QCOMPARE(info.playlistEntries.size(), std::size_t(2));
    QCOMPARE(info.playlistEntries[0].title, QStringLiteral("A"));
    QCOMPARE(info.playlistEntries[1].playlistEntries.at(0).id, QStringLiteral("c"));
    QCOMPARE(info.subtitles.size(), std::size_t(1));
    QVERIFY(parsed<MediaInfo>("{'_type': 'playlist'}").playlistEntries.empty());
}

void TestMediaInfo::whatIsNoDictionaryIsRefused()
{
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, parsed<MediaInfo>("None"));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, parsed<MediaInfo>("[1]"));
}

void TestMediaInfo::aFormatSaysWhatItCarries_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<bool>("audioOnly");
    QTest::addColumn<bool>("videoOnly");
    const auto row = [](const char *why, const char *codecs, bool audio, bool video) {
        QTest::newRow(why) << QByteArray("{'format_id': '1', 'ext': 'x', ") + codecs + '}' << audio
                           << video;
    };
    row("sound", "'vcodec': 'none', 'acodec': 'mp4a.40.2'", true, false);
    row("picture", "'vcodec': 'avc1', 'acodec': 'none'", false, true);
    row("neither", "'vcodec': 'none', 'acodec': 'none'", false, false);
    row("both", "'vcodec': 'avc1', 'acodec': 'mp4a.40.2'", false, false);
    row("an unnamed picture codec is none", "'acodec': 'opus'", true, false);
    row("an unnamed sound codec is unknown", "'vcodec': 'vp9'", false, false);
    row("a picture codec that is no text", "'vcodec': None, 'acodec': 'opus'", false, false);
    row("a sound codec that is no text", "'vcodec': 'none', 'acodec': None", false, false);
}

void TestMediaInfo::aFormatSaysWhatItCarries()
{
    QFETCH(QByteArray, source);
    const auto format = parsed<Format>(source.constData());
    QTEST(format.isAudioOnly, "audioOnly");
    QTEST(format.isVideoOnly, "videoOnly");
}

void TestMediaInfo::aFormatFillsInWhatItCan()
{
    const auto sparse = parsed<Format>("{'format_id': 3}");
    QVERIFY(isUuid(sparse.id));
    QCOMPARE(sparse.ext, QStringLiteral("mp4"));
    QCOMPARE(sparse.resolution, QString());
    QVERIFY(!sparse.fps && !sparse.filesizeBytes && !sparse.bitrateKbps);

    const auto derived = parsed<Format>(R"({'format_id': '1', 'ext': 'mp4', 'resolution': None,
        'height': 1080, 'filesize': None, 'filesize_approx': 123456, 'tbr': 129, 'fps': 25,
        'format_note': 'HD'})");
    QCOMPARE(derived.resolution, QStringLiteral("1080p"));
    QCOMPARE(derived.filesizeBytes, 123456);
    QCOMPARE(derived.bitrateKbps, 129.0);
    QCOMPARE(derived.note, QStringLiteral("HD"));
    QVERIFY(!parsed<Format>("{'resolution': None, 'height': 1.5}").resolution);
    QVERIFY(!parsed<Format>("{'filesize': 1.5, 'filesize_approx': 2**70}").filesizeBytes);
}

void TestMediaInfo::aFormatsLabelTellsWhatMatters_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("label");
    row("everything",
        "{'format_id':'1','ext':'mp4','resolution':'1920x1080','fps':60,'vcodec':None,'filesize':"
        "1200000000}",
        "1920x1080 • 60fps • mp4 • 1.2 GB");
    row("an ordinary frame rate is not told",
        "{'format_id':'1','ext':'mp4','resolution':'360p','fps':30.0,'vcodec':None}", "360p • mp4");
    row("frame rates are cut",
        "{'format_id':'1','ext':'mp4','resolution':'360p','fps':59.94,'vcodec':None}",
        "360p • 59fps • mp4");
    row("an endless frame rate is left out",
        "{'format_id':'1','ext':'mp4','resolution':'360p','fps':float('inf'),'vcodec':None}",
        "360p • mp4");
    row("sound", "{'format_id':'1','ext':'m4a','vcodec':'none','acodec':'mp4a','tbr':129.9}",
        "Audio • m4a 129 kbps");
    row("sound of an unknown rate", "{'format_id':'1','ext':'m4a','vcodec':'none','acodec':'mp4a'}",
        "Audio • m4a ");
}

void TestMediaInfo::aFormatsLabelTellsWhatMatters()
{
    QFETCH(QString, source);
    QFETCH(QString, label);
    QCOMPARE(parsed<Format>(qUtf8Printable(source)).label(), label);
}

QTEST_GUILESS_MAIN(TestMediaInfo)
#include "tst_media_info.moc"
