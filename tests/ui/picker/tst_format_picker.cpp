// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/format_picker.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace veltro;

namespace {

Format videoFormat(const char *id, const char *codec)
{
    Format format;
    format.id = QString::fromLatin1(id);
    format.ext = QStringLiteral("mp4");
    format.resolution = QStringLiteral("1280x720");
    format.vcodec = QString::fromLatin1(codec);
    return format;
}

Format audioFormat(const char *id, const char *ext, std::optional<QString> codec)
{
    Format format;
    format.id = QString::fromLatin1(id);
    format.ext = QString::fromLatin1(ext);
    format.acodec = std::move(codec);
    format.isAudioOnly = true;
    return format;
}

/// A page in the order that pages have: nothing here is sorted by anything.
MediaInfo mixedPage()
{
    MediaInfo info;
    info.title = QStringLiteral("A page");
    info.webpageURL = QUrl(QStringLiteral("https://video.example/1"));
    info.formats = {audioFormat("opus", "webm", QStringLiteral("opus")),
                    audioFormat("aac", "m4a", QStringLiteral("mp4a.40.2")),
                    videoFormat("high", "avc1.640028"), videoFormat("vp9", "vp9"),
                    videoFormat("low", "avc1.42001E")};
    return info;
}

QVariant requestFor(const MediaInfo &info)
{
    return QVariant::fromValue(FormatPickRequest{
        QUuid::createUuid(), QUrl(QStringLiteral("https://video.example/asked")), info});
}

QStringList texts(const QAbstractItemModel &model, int role)
{
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row) {
        all << model.index(row, 0).data(role).toString();
    }
    return all;
}

QStringList listedIds(FormatPicker &picker)
{
    QStringList ids;
    for (const Format &format : picker.rows()->formats()) {
        ids << format.id;
    }
    return ids;
}

}

class TestFormatPicker : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void onlyWhatThePlayerTakesIsListed_data();
    void onlyWhatThePlayerTakesIsListed();
    void listsAreFilteredAndCountsAreNot();
    void aRowShowsItsLabelExtensionAndSize();
    void theSecondLineIsTheUploaderOrTheHost();
    void eachRequestOpensOnVideo();
    void aPickHandsOverThatRowsFormat();
    void aListThatPlaysNothingSaysSoAndOffersTheBest();
    void aPageWithoutFormatsOffersTheItemItself();
    void aPlaylistOffersItsEntriesOnTheWeb();
    void entriesHaveALengthLikeAClocks();
};

void TestFormatPicker::onlyWhatThePlayerTakesIsListed_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<bool>("plays");
    for (const char *codec : {"avc1.640028", "AVC1.42", "h264", "H265", "hvc1.1.6"}) {
        QTest::newRow(codec) << videoFormat("v", codec) << true;
    }
    for (const char *codec : {"vp9", "av01.0.05M.08", "hev1.1.6", "none", "xavc1", ""}) {
        QTest::addRow("video codec '%s'", codec) << videoFormat("v", codec) << false;
    }
    Format without = videoFormat("v", "");
    without.vcodec = std::nullopt;
    QTest::newRow("video without a codec") << without << false;
    // The container says nothing about a picture.
    without.ext = QStringLiteral("m4a");
    QTest::newRow("video in a container for sound") << without << false;

    const auto sound = [](const char *ext, std::optional<QString> codec) {
        return audioFormat("a", ext, std::move(codec));
    };
    QTest::newRow("AAC") << sound("mp4", QStringLiteral("MP4A.40.2")) << true;
    QTest::newRow("AAC by its other name") << sound("ts", QStringLiteral("aac")) << true;
    QTest::newRow("Opus in WebM") << sound("webm", QStringLiteral("opus")) << false;
    QTest::newRow("no codec in M4A") << sound("M4A", std::nullopt) << true;
    QTest::newRow("MP3 by its extension") << sound("mp3", QStringLiteral("mp3")) << true;
    QTest::newRow("an extension that only begins so") << sound("mp3x", std::nullopt) << false;
    QTest::newRow("no codec in MP4") << sound("mp4", std::nullopt) << false;
}

void TestFormatPicker::onlyWhatThePlayerTakesIsListed()
{
    QFETCH(Format, format);
    QTEST(playsInPlayer(format), "plays");
}

void TestFormatPicker::listsAreFilteredAndCountsAreNot()
{
    FormatPicker picker;
    const QAbstractItemModelTester tester(picker.rows());
    picker.setRequest(requestFor(mixedPage()));
    QCOMPARE(picker.sectionTitles(), (QStringList{QStringLiteral("Video"), QStringLiteral("Audio"),
                                                  QStringLiteral("All")}));
    QCOMPARE(picker.counts(), (QList<int>{3, 2, 5}));
    QCOMPARE(listedIds(picker), (QStringList{QStringLiteral("high"), QStringLiteral("low")}));
    picker.setSection(FormatPicker::Audio);
    QCOMPARE(listedIds(picker), QStringList{QStringLiteral("aac")});
    picker.setSection(FormatPicker::All);
    QCOMPARE(listedIds(picker),
             (QStringList{QStringLiteral("aac"), QStringLiteral("high"), QStringLiteral("low")}));
    QCOMPARE(picker.counts(), (QList<int>{3, 2, 5}));
    QCOMPARE(picker.emptyReason(), QString());
    QCOMPARE(picker.offer(), QString());
}

void TestFormatPicker::aRowShowsItsLabelExtensionAndSize()
{
    MediaInfo info;
    info.formats = {videoFormat("v", "h264"), videoFormat("w", "h264")};
    info.formats[0].filesizeBytes = 3'000'000;
    FormatPicker picker;
    picker.setRequest(requestFor(info));
    QCOMPARE(
        texts(*picker.rows(), FormatRowsModel::label),
        (QStringList{QStringLiteral("1280x720 • mp4 • 3 MB"), QStringLiteral("1280x720 • mp4")}));
    QCOMPARE(texts(*picker.rows(), FormatRowsModel::extension),
             (QStringList{QStringLiteral("MP4"), QStringLiteral("MP4")}));
    QCOMPARE(texts(*picker.rows(), FormatRowsModel::size),
             (QStringList{QStringLiteral("3 MB"), QString()}));
}

void TestFormatPicker::theSecondLineIsTheUploaderOrTheHost()
{
    MediaInfo info = mixedPage();
    FormatPicker picker;
    picker.setRequest(requestFor(info));
    QCOMPARE(picker.source(), QStringLiteral("video.example"));
    info.uploader = QStringLiteral("Someone");
    picker.setRequest(requestFor(info));
    QCOMPARE(picker.source(), QStringLiteral("Someone"));
    info.uploader = std::nullopt;
    info.webpageURL = std::nullopt;
    picker.setRequest(requestFor(info));
    QCOMPARE(picker.source(), QString());
}

void TestFormatPicker::eachRequestOpensOnVideo()
{
    FormatPicker picker;
    picker.setRequest(requestFor(mixedPage()));
    picker.setSection(FormatPicker::Audio);
    QSignalSpy changed(&picker, &FormatPicker::sectionChanged);
    picker.setRequest(requestFor(mixedPage()));
    QCOMPARE(picker.section(), FormatPicker::Video);
    QCOMPARE(listedIds(picker), (QStringList{QStringLiteral("high"), QStringLiteral("low")}));
    QCOMPARE(changed.size(), 1);
}

void TestFormatPicker::aPickHandsOverThatRowsFormat()
{
    const MediaInfo info = mixedPage();
    FormatPicker picker;
    picker.setRequest(requestFor(info));
    QSignalSpy picked(&picker, &FormatPicker::picked);
    picker.pick(1);
    QCOMPARE(picked.size(), 1);
    QCOMPARE(picked[0][0].toUrl(), QUrl(QStringLiteral("https://video.example/asked")));
    QCOMPARE(picked[0][1].value<Format>(), info.formats[4]);
    picker.pick(2);
    picker.pick(-1);
    picker.pickOffer();
    QCOMPARE(picked.size(), 1);
}

void TestFormatPicker::aListThatPlaysNothingSaysSoAndOffersTheBest()
{
    MediaInfo info = mixedPage();
    info.formats = {videoFormat("low", "vp9"), videoFormat("high", "av01.0.05M.08"),
                    audioFormat("opus", "webm", QStringLiteral("opus"))};
    FormatPicker picker;
    picker.setRequest(requestFor(info));
    QSignalSpy picked(&picker, &FormatPicker::picked);
    QCOMPARE(picker.rows()->count(), 0);
    QCOMPARE(picker.counts(), (QList<int>{2, 1, 3}));
    QVERIFY(picker.emptyReason().contains(QStringLiteral("None of the 2 video formats")));
    QVERIFY(!picker.offer().isEmpty());
    picker.pickOffer();
    QCOMPARE(picked.takeFirst()[1].value<Format>().id, QStringLiteral("high"));
    picker.setSection(FormatPicker::Audio);
    QVERIFY(picker.emptyReason().contains(QStringLiteral("one audio format")));
    picker.pickOffer();
    QCOMPARE(picked.takeFirst()[1].value<Format>().id, QStringLiteral("opus"));

    // What generic pages yield: one format whose codecs are not told.
    info.formats = {videoFormat("0", "")};
    info.formats[0].vcodec = std::nullopt;
    info.formats[0].resolution = std::nullopt;
    picker.setRequest(requestFor(info));
    QVERIFY(picker.emptyReason().contains(QStringLiteral("does not tell")));
    QCOMPARE(picker.offer(), QStringLiteral("Save mp4"));
    picker.pickOffer();
    QCOMPARE(picked.takeFirst()[1].value<Format>().id, QStringLiteral("0"));

    info.formats = {videoFormat("only", "avc1")};
    picker.setRequest(requestFor(info));
    picker.setSection(FormatPicker::Audio);
    QVERIFY(!picker.emptyReason().isEmpty());
    QCOMPARE(picker.offer(), QString());
    picker.pickOffer();
    QVERIFY(picked.isEmpty());
}

void TestFormatPicker::aPageWithoutFormatsOffersTheItemItself()
{
    MediaInfo info = mixedPage();
    info.formats.clear();
    FormatPicker picker;
    picker.setRequest(requestFor(info));
    QSignalSpy picked(&picker, &FormatPicker::picked);
    for (const auto section : {FormatPicker::Video, FormatPicker::Audio, FormatPicker::All}) {
        picker.setSection(section);
        QVERIFY(!picker.emptyReason().isEmpty());
        QVERIFY(!picker.offer().isEmpty());
    }
    picker.pickOffer();
    QCOMPARE(picked.size(), 1);
    const Format format = picked[0][1].value<Format>();
    QCOMPARE(format.id, QStringLiteral("best"));
    QVERIFY(!format.isVideoOnly && !format.isAudioOnly);
}

void TestFormatPicker::aPlaylistOffersItsEntriesOnTheWeb()
{
    const auto entry = [](const char *title, const char *address) {
        MediaInfo info;
        info.title = QString::fromLatin1(title);
        info.webpageURL = QUrl(QString::fromLatin1(address));
        return info;
    };
    MediaInfo info = mixedPage();
    info.formats.clear();
    info.isPlaylist = true;
    info.playlistEntries = {entry("one", "https://video.example/a b?c=d e"),
                            entry("local", "file:///etc/passwd"), MediaInfo(),
                            entry("two", "http://video.example/2"),
                            entry("script", "javascript:alert(1)")};
    info.playlistEntries[0].durationSeconds = 245.9;
    FormatPicker picker;
    const QAbstractItemModelTester tester(picker.entries());
    picker.setRequest(requestFor(info));
    QVERIFY(picker.isPlaylist());
    QCOMPARE(texts(*picker.entries(), PlaylistEntriesModel::title),
             (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    QCOMPARE(texts(*picker.entries(), PlaylistEntriesModel::duration),
             (QStringList{QStringLiteral("4:05"), QString()}));
    QCOMPARE(picker.offer(), QStringLiteral("Save all 2 entries"));

    QSignalSpy saved(&picker, &FormatPicker::entriesPicked);
    QSignalSpy picked(&picker, &FormatPicker::picked);
    picker.pickOffer();
    QCOMPARE(saved.takeFirst()[0].toString(),
             QStringLiteral("https://video.example/a%20b?c=d%20e\nhttp://video.example/2"));
    picker.saveEntry(1);
    QCOMPARE(saved.takeFirst()[0].toString(), QStringLiteral("http://video.example/2"));
    picker.saveEntry(2);
    QVERIFY(saved.isEmpty() && picked.isEmpty());

    info.playlistEntries.clear();
    picker.setRequest(requestFor(info));
    QVERIFY(!picker.emptyReason().isEmpty());
    QCOMPARE(picker.offer(), QString());
    picker.pickOffer();
    QVERIFY(saved.isEmpty() && picked.isEmpty());
}

void TestFormatPicker::entriesHaveALengthLikeAClocks()
{
    QCOMPARE(clockText(7.9), QStringLiteral("0:07"));
    QCOMPARE(clockText(3599), QStringLiteral("59:59"));
    QCOMPARE(clockText(3723), QStringLiteral("1:02:03"));
    QCOMPARE(clockText(-1), QString());
    QCOMPARE(clockText(std::nan("")), QString());
    QCOMPARE(clockText(1e300), QString());
    QCOMPARE(clockText(std::nullopt), QString());
}

QTEST_GUILESS_MAIN(TestFormatPicker)
#include "tst_format_picker.moc"
