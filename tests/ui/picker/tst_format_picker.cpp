// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/format_picker.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace veltro;

namespace {

Format videoFormat(const char *id, const char *codec)
{
    Format format;
    format.id = QString::fromLatin1(id);
    format.ext = u"mp4"_s;
    format.resolution = u"1280x720"_s;
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
    info.title = u"A page"_s;
    info.webpageURL = QUrl(u"https://video.example/1"_s);
    info.formats = {audioFormat("opus", "webm", u"opus"_s),
                    audioFormat("aac", "m4a", u"mp4a.40.2"_s), videoFormat("high", "avc1.640028"),
                    videoFormat("vp9", "vp9"), videoFormat("low", "avc1.42001E")};
    return info;
}

/// What the rows have in that role, with a bar between two.
QString texts(const QAbstractItemModel &model, int role)
{
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row) {
        all << model.index(row, 0).data(role).toString();
    }
    return all.join(u'|');
}

}

class TestFormatPicker : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_picker = std::make_unique<FormatPicker>();
        m_picked = std::make_unique<QSignalSpy>(m_picker.get(), &FormatPicker::picked);
    }
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

private:
    void ask(const MediaInfo &info)
    {
        m_picker->setRequest(QVariant::fromValue(
            FormatPickRequest{QUuid::createUuid(), QUrl(u"https://video.example/asked"_s), info}));
    }
    [[nodiscard]] QString listedIds() const
    {
        QStringList ids;
        for (const Format &format : m_picker->rows()->formats()) {
            ids << format.id;
        }
        return ids.join(u'|');
    }
    /// The format that is picked with what is offered; none when nothing is.
    [[nodiscard]] std::optional<Format> pickOffer()
    {
        m_picker->pickOffer();
        return m_picked->isEmpty() ? std::nullopt
                                   : std::optional(m_picked->takeFirst()[1].value<Format>());
    }

    std::unique_ptr<FormatPicker> m_picker;
    std::unique_ptr<QSignalSpy> m_picked;
};

void TestFormatPicker::onlyWhatThePlayerTakesIsListed()
{
    for (const char *codec : {"avc1.640028", "AVC1.42", "h264", "H265", "hvc1.1.6"}) {
        QVERIFY2(playsInPlayer(videoFormat("v", codec)), codec);
    }
    for (const char *codec : {"vp9", "av01.0.05M.08", "hev1.1.6", "none", "xavc1", ""}) {
        QVERIFY2(!playsInPlayer(videoFormat("v", codec)), codec);
    }
    Format without = videoFormat("v", "");
    without.vcodec = std::nullopt;
    QVERIFY(!playsInPlayer(without));
    without.ext = u"m4a"_s; // which says nothing about a picture
    QVERIFY(!playsInPlayer(without));

    const auto plays = [](const char *ext, std::optional<QString> codec) {
        return playsInPlayer(audioFormat("a", ext, std::move(codec)));
    };
    QVERIFY(plays("mp4", u"MP4A.40.2"_s));
    QVERIFY(plays("ts", u"aac"_s));
    QVERIFY(plays("M4A", std::nullopt));
    QVERIFY(plays("mp3", u"mp3"_s));
    QVERIFY(!plays("webm", u"opus"_s));
    QVERIFY(!plays("mp3x", std::nullopt));
    QVERIFY(!plays("mp4", std::nullopt));
}

void TestFormatPicker::listsAreFilteredAndCountsAreNot()
{
    const QAbstractItemModelTester tester(m_picker->rows());
    ask(mixedPage());
    QCOMPARE(m_picker->sectionTitles().join(u'|'), u"Video|Audio|All"_s);
    QCOMPARE(m_picker->counts(), (QList<int>{3, 2, 5}));
    QCOMPARE(listedIds(), u"high|low"_s);
    m_picker->setSection(FormatPicker::Audio);
    QCOMPARE(listedIds(), u"aac"_s);
    m_picker->setSection(FormatPicker::All);
    QCOMPARE(listedIds(), u"aac|high|low"_s);
    QCOMPARE(m_picker->counts(), (QList<int>{3, 2, 5}));
    QCOMPARE(m_picker->emptyReason(), QString());
    QCOMPARE(m_picker->offer(), QString());
}

void TestFormatPicker::aRowShowsItsLabelExtensionAndSize()
{
    MediaInfo info;
    info.formats = {videoFormat("v", "h264"), videoFormat("w", "h264")};
    info.formats[0].filesizeBytes = 3'000'000;
    ask(info);
    const FormatRowsModel &rows = *m_picker->rows();
    QCOMPARE(texts(rows, FormatRowsModel::label), u"1280x720 • mp4 • 3 MB|1280x720 • mp4"_s);
    QCOMPARE(texts(rows, FormatRowsModel::extension), u"MP4|MP4"_s);
    QCOMPARE(texts(rows, FormatRowsModel::size), u"3 MB|"_s);
}

void TestFormatPicker::theSecondLineIsTheUploaderOrTheHost()
{
    MediaInfo info = mixedPage();
    ask(info);
    QCOMPARE(m_picker->source(), u"video.example"_s);
    info.uploader = u"Someone"_s;
    ask(info);
    QCOMPARE(m_picker->source(), u"Someone"_s);
    info.uploader = std::nullopt;
    info.webpageURL = std::nullopt;
    ask(info);
    QCOMPARE(m_picker->source(), QString());
}

void TestFormatPicker::eachRequestOpensOnVideo()
{
    ask(mixedPage());
    m_picker->setSection(FormatPicker::Audio);
    const QSignalSpy changed(m_picker.get(), &FormatPicker::sectionChanged);
    ask(mixedPage());
    QCOMPARE(m_picker->section(), FormatPicker::Video);
    QCOMPARE(listedIds(), u"high|low"_s);
    QCOMPARE(changed.size(), 1);
}

void TestFormatPicker::aPickHandsOverThatRowsFormat()
{
    const MediaInfo info = mixedPage();
    ask(info);
    m_picker->pick(1);
    QCOMPARE(m_picked->size(), 1);
    QCOMPARE(m_picked->first()[0].toUrl(), QUrl(u"https://video.example/asked"_s));
    QCOMPARE(m_picked->first()[1].value<Format>(), info.formats[4]);
    m_picker->pick(2);
    m_picker->pick(-1);
    m_picker->pickOffer();
    QCOMPARE(m_picked->size(), 1);
}

void TestFormatPicker::aListThatPlaysNothingSaysSoAndOffersTheBest()
{
    MediaInfo info = mixedPage();
    info.formats = {videoFormat("low", "vp9"), videoFormat("high", "av01.0.05M.08"),
                    audioFormat("opus", "webm", u"opus"_s)};
    ask(info);
    QCOMPARE(listedIds(), QString());
    QCOMPARE(m_picker->counts(), (QList<int>{2, 1, 3}));
    QVERIFY(m_picker->emptyReason().contains(u"None of the 2 video formats"_s));
    QVERIFY(!m_picker->offer().isEmpty());
    QCOMPARE(pickOffer(), info.formats[1]);
    m_picker->setSection(FormatPicker::Audio);
    QVERIFY(m_picker->emptyReason().contains(u"one audio format"_s));
    QCOMPARE(pickOffer(), info.formats[2]);

    // What generic pages yield: one format whose codecs are not told.
    info.formats = {videoFormat("0", "")};
    info.formats[0].vcodec = std::nullopt;
    info.formats[0].resolution = std::nullopt;
    ask(info);
    QVERIFY(m_picker->emptyReason().contains(u"does not tell"_s));
    QCOMPARE(m_picker->offer(), u"Save mp4"_s);
    QCOMPARE(pickOffer(), info.formats[0]);

    info.formats = {videoFormat("only", "avc1")};
    ask(info);
    m_picker->setSection(FormatPicker::Audio);
    QVERIFY(!m_picker->emptyReason().isEmpty());
    QCOMPARE(m_picker->offer(), QString());
    QVERIFY(!pickOffer());
}

void TestFormatPicker::aPageWithoutFormatsOffersTheItemItself()
{
    MediaInfo info = mixedPage();
    info.formats.clear();
    ask(info);
    for (const auto section : {FormatPicker::Video, FormatPicker::Audio, FormatPicker::All}) {
        m_picker->setSection(section);
        QVERIFY(!m_picker->emptyReason().isEmpty());
        QVERIFY(!m_picker->offer().isEmpty());
    }
    const Format format = pickOffer().value();
    QCOMPARE(format.id, u"best"_s);
    QVERIFY(!format.isVideoOnly && !format.isAudioOnly);
}

void TestFormatPicker::aPlaylistOffersItsEntriesOnTheWeb()
{
    const auto entry = [](const QString &title, const QString &address) {
        MediaInfo info;
        info.title = title;
        info.webpageURL = QUrl(address);
        return info;
    };
    MediaInfo info = mixedPage();
    info.formats.clear();
    info.isPlaylist = true;
    info.playlistEntries = {entry(u"one"_s, u"https://video.example/a b?c=d e"_s),
                            entry(u"local"_s, u"file:///etc/passwd"_s), MediaInfo(),
                            entry(u"two"_s, u"http://video.example/2"_s),
                            entry(u"script"_s, u"javascript:alert(1)"_s)};
    info.playlistEntries[0].durationSeconds = 245.9;
    const QAbstractItemModelTester tester(m_picker->entries());
    ask(info);
    QVERIFY(m_picker->isPlaylist());
    QCOMPARE(texts(*m_picker->entries(), PlaylistEntriesModel::title), u"one|two"_s);
    QCOMPARE(texts(*m_picker->entries(), PlaylistEntriesModel::duration), u"4:05|"_s);
    QCOMPARE(m_picker->offer(), u"Save all 2 entries"_s);

    QSignalSpy saved(m_picker.get(), &FormatPicker::entriesPicked);
    QVERIFY(!pickOffer());
    QCOMPARE(saved.takeFirst()[0].toString(),
             u"https://video.example/a%20b?c=d%20e\nhttp://video.example/2"_s);
    m_picker->saveEntry(1);
    QCOMPARE(saved.takeFirst()[0].toString(), u"http://video.example/2"_s);
    m_picker->saveEntry(2);
    QVERIFY(saved.isEmpty() && m_picked->isEmpty());

    info.playlistEntries.clear();
    ask(info);
    QVERIFY(!m_picker->emptyReason().isEmpty());
    QCOMPARE(m_picker->offer(), QString());
    QVERIFY(!pickOffer() && saved.isEmpty());
}

void TestFormatPicker::entriesHaveALengthLikeAClocks()
{
    QCOMPARE(clockText(7.9), u"0:07"_s);
    QCOMPARE(clockText(3599), u"59:59"_s);
    QCOMPARE(clockText(3723), u"1:02:03"_s);
    QCOMPARE(clockText(-1), QString());
    QCOMPARE(clockText(std::nan("")), QString());
    QCOMPARE(clockText(1e300), QString());
    QCOMPARE(clockText(std::nullopt), QString());
}

QTEST_GUILESS_MAIN(TestFormatPicker)
#include "tst_format_picker.moc"
