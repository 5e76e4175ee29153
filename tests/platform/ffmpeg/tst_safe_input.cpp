// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/locale_scope.h"
#include "platform/ffmpeg/safe_input.h"
#include "platform/ffmpeg/session_log.h"
#include "tests/platform/ffmpeg/runner_support.h"

#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <string>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

namespace {

// Sees whether anybody, in whatever process, opens a file.
class OpeningWatch {
public:
    explicit OpeningWatch(const QString &file)
        : m_queue(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
        , m_watching(inotify_add_watch(m_queue, qPrintable(file), IN_OPEN) >= 0)
    {}
    ~OpeningWatch() { close(m_queue); }
    OpeningWatch(const OpeningWatch &) = delete;
    OpeningWatch &operator=(const OpeningWatch &) = delete;

    [[nodiscard]] bool isWatching() const { return m_watching; }
    /// Whether it happened since the last call.
    [[nodiscard]] bool wasOpened() const
    {
        std::array<char, 4096> events{};
        return read(m_queue, events.data(), events.size()) > 0;
    }

private:
    const int m_queue;
    const bool m_watching;
};

}

class TestSafeInput : public QObject {
    Q_OBJECT

    [[nodiscard]] std::string path(const char *name) const
    {
        return m_folder.filePath(QString::fromLatin1(name)).toStdString();
    }

    QTemporaryDir m_folder;
    LocaleScope m_locale;

private Q_SLOTS:
    void initTestCase();
    void knowsWhatANameStandsFor_data();
    void knowsWhatANameStandsFor();
    void opensNothingThatAFileNames_data();
    void opensNothingThatAFileNames();
    void isNotTalkedIntoItByOptions_data();
    void isNotTalkedIntoItByOptions();
    void refusesADemuxerThatFollowsNames();
    void doesNotWaitAtAPipe();
    void readsASinglePictureWhoseNameStandsForASeries();
    void takesOptionsAndLeavesWhatNobodyKnows();
    void decodesNoPictureBeyondTheLimit();
    void decodesNoPictureBeyondTheLimitOfAStreamThatAppearsLate();
};

void TestSafeInput::initTestCase()
{
    const auto file = [this](const char *name) { return QString::fromStdString(path(name)); };
    QVERIFY(makeMedia(u"-f lavfi -i testsrc2=d=0.4:s=160x90 -c:v mpeg2video target.ts"
                      " -frames:v 1 picture.jpg -frames:v 1 picture.png"_s,
                      m_folder.path()));
    QVERIFY(writeFile(file("playlist.mp4"),
                      "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:1,\ntarget.ts\n#EXT-X-ENDLIST\n"));
    QVERIFY(writeFile(file("script.mp4"), "ffconcat version 1.0\nfile target.ts\n"));
    QVERIFY(writeFile(file("session.mp4"),
                      "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\n"
                      "m=audio 5004 RTP/AVP 0\n"));
}

void TestSafeInput::knowsWhatANameStandsFor_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<InputKind>("kind");
    QTest::addColumn<QByteArray>("path");
    const auto row = [](const char *why, const char *name, InputKind kind,
                        const char *path = nullptr) {
        QTest::newRow(why) << QByteArray(name) << kind << QByteArray(path ? path : name);
    };
    row("a plain path", "/a/b.mp4", InputKind::localFile);
    row("the prefix for any name", "file:-a: b.mp4", InputKind::localFile, "-a: b.mp4");
    row("the prefix twice", "file:file:x", InputKind::localFile, "file:x");
    row("a blank before the colon", "a b: c.mp4", InputKind::localFile);
    row("a slash before the colon", "/a/b:c.mp4", InputKind::localFile);
    row("a word before the colon", "b:c.mp4", InputKind::other);
    row("a web address", "https://127.0.0.1/x", InputKind::network);
    row("a stream", "rtmp://127.0.0.1/x", InputKind::network);
    row("a chain", "concat:a.ts|b.ts", InputKind::other);
    row("data", "data:text/plain,x", InputKind::other);
    row("standard input", "-", InputKind::standard);
    row("a descriptor", "pipe:0", InputKind::standard);
    row("nothing", "", InputKind::localFile);
}

void TestSafeInput::knowsWhatANameStandsFor()
{
    QFETCH(QByteArray, name);
    QFETCH(InputKind, kind);
    QFETCH(QByteArray, path);
    const InputName seen = classifyInput(name.toStdString());
    QCOMPARE(seen.kind, kind);
    QCOMPARE(seen.path, path.toStdString());
}

void TestSafeInput::opensNothingThatAFileNames_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("toolFollows"); // so that the check is known to see an opening
    QTest::newRow("a playlist") << u"playlist.mp4"_s << true;
    QTest::newRow("a concat script") << u"script.mp4"_s << true;
    QTest::newRow("a session description") << u"session.mp4"_s << false;
}

void TestSafeInput::opensNothingThatAFileNames()
{
    QFETCH(QString, file);
    QFETCH(bool, toolFollows);
    const OpeningWatch target(m_folder.filePath(u"target.ts"_s));
    QVERIFY(target.isWatching());
    static_cast<void>(runTool(u"ffprobe"_s, {m_folder.filePath(file)}));
    QCOMPARE(target.wasOpened(), toolFollows);

    SessionLog log;
    const SessionLog::Scope scope(log);
    for (const std::string &prefix : {std::string(), std::string("file:")}) {
        InputContextPtr input;
        const std::string name = prefix + m_folder.filePath(file).toStdString();
        QCOMPARE(openLocalInput(name, {}, input), AVERROR_INVALIDDATA);
        QVERIFY(!input);
        QVERIFY(!target.wasOpened());
    }
}

void TestSafeInput::isNotTalkedIntoItByOptions_data()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("formats") << QByteArray("format_whitelist") << QByteArray("hls,concat,mpegts");
    QTest::newRow("protocols") << QByteArray("protocol_whitelist") << QByteArray("file,crypto");
    QTest::newRow("flags replaced") << QByteArray("fflags") << QByteArray("genpts");
}

void TestSafeInput::isNotTalkedIntoItByOptions()
{
    QFETCH(QByteArray, option);
    QFETCH(QByteArray, value);
    SessionLog log;
    const SessionLog::Scope scope(log);
    for (const char *name : {"script.mp4", "playlist.mp4", "missing.mp4", "target.ts"}) {
        const OpeningWatch target(m_folder.filePath(u"target.ts"_s));
        AVDictionary *raw = nullptr;
        av_dict_set(&raw, option.constData(), value.constData(), 0);
        DictionaryPtr options(raw);
        LocalInputOptions how;
        how.options = &options;
        InputContextPtr input;
        const bool isMedia = name == std::string_view("target.ts");
        QCOMPARE(openLocalInput(path(name), how, input) == 0, isMedia);
        QCOMPARE(target.wasOpened(), isMedia);
        QVERIFY(!input || readStreamInformation(*input) >= 0);
    }
}

void TestSafeInput::refusesADemuxerThatFollowsNames()
{
    for (const char *name : {"hls", "concat", "sdp", "image2", "dash", "lavfi"}) {
        LocalInputOptions how;
        how.format = av_find_input_format(name);
        if (!how.format) {
            continue; // not in this build of the libraries
        }
        InputContextPtr input;
        QCOMPARE(openLocalInput(path("target.ts"), how, input), AVERROR_INVALIDDATA);
    }
    LocalInputOptions how;
    how.format = av_find_input_format("mpegts");
    InputContextPtr input;
    QCOMPARE(openLocalInput(path("target.ts"), how, input), 0);
    QCOMPARE(input->nb_streams, 1U);
}

void TestSafeInput::doesNotWaitAtAPipe()
{
    const std::string pipe = path("pipe.mp4");
    QCOMPARE(mkfifo(pipe.c_str(), 0600), 0);
    InputContextPtr input;
    QCOMPARE(openLocalInput(pipe, {}, input), AVERROR_INVALIDDATA);
    QCOMPARE(openLocalInput("/dev/zero", {}, input), AVERROR_INVALIDDATA);
    QCOMPARE(openLocalInput(m_folder.path().toStdString(), {}, input), AVERROR(EISDIR));
    QCOMPARE(openLocalInput(path("missing.mp4"), {}, input), AVERROR(ENOENT));
}

void TestSafeInput::readsASinglePictureWhoseNameStandsForASeries()
{
    InputContextPtr input;
    QCOMPARE(openLocalInput(path("picture.jpg"), {}, input), 0);
    QVERIFY(readStreamInformation(*input) >= 0);
    QCOMPARE(input->nb_streams, 1U);
    QCOMPARE(input->streams[0]->codecpar->codec_id, AV_CODEC_ID_MJPEG);
    QCOMPARE(input->streams[0]->codecpar->width, 160);
}

void TestSafeInput::takesOptionsAndLeavesWhatNobodyKnows()
{
    AVDictionary *raw = nullptr;
    av_dict_set(&raw, "probesize", "100000", 0);
    av_dict_set(&raw, "scan_all_pmts", "1", 0);    // the demuxer's own
    av_dict_set(&raw, "max_streams", "100000", 0); // within our own limit
    av_dict_set(&raw, "nonsense", "1", 0);
    DictionaryPtr options(raw);
    LocalInputOptions how;
    how.options = &options;
    InputContextPtr input;
    QCOMPARE(openLocalInput(path("target.ts"), how, input), 0);
    QCOMPARE(input->probesize, 100000);
    QCOMPARE(input->max_streams, maxStreams);
    QCOMPARE(av_dict_count(options.get()), 1);
    QVERIFY(av_dict_get(options.get(), "nonsense", nullptr, 0));
}

void TestSafeInput::decodesNoPictureBeyondTheLimit()
{
    QByteArray content = contentOf(m_folder.filePath(u"picture.png"_s));
    // The width and height of a PNG stand at 16, with the highest byte first: 8193 by 8192.
    content.replace(16, 8, QByteArray::fromHex("0000200100002000"));
    QVERIFY(writeFile(QString::fromStdString(path("huge.png")), content));

    SessionLog log;
    const SessionLog::Scope scope(log);
    InputContextPtr input;
    QCOMPARE(openLocalInput(path("huge.png"), {}, input), 0);
    static_cast<void>(readStreamInformation(*input));
    QCOMPARE(input->nb_streams, 1U);
    QCOMPARE(input->streams[0]->codecpar->width, 0); // known only to who has decoded
}

void TestSafeInput::decodesNoPictureBeyondTheLimitOfAStreamThatAppearsLate()
{
    QVERIFY(makeMedia(u"-i target.ts -c copy late.mpg"_s, m_folder.path()));
    QByteArray content = contentOf(m_folder.filePath(u"late.mpg"_s));
    // A sequence tells the lower twelve bits of its width and height, its extension two more of
    // each: 12287 by 12287.
    const qsizetype sequence = content.indexOf(QByteArray::fromHex("000001b3"));
    const qsizetype extension = content.indexOf(QByteArray::fromHex("000001b5"), sequence);
    QVERIFY(sequence > 0 && extension > 0);
    QVERIFY(content.count(QByteArray::fromHex("000001b3")) == 1);
    content.replace(sequence + 4, 3, QByteArray::fromHex("ffffff"));
    content[extension + 5] = static_cast<char>(content[extension + 5] | 0x01);
    content[extension + 6] = static_cast<char>((content[extension + 6] & 0x1f) | 0x40);
    QVERIFY(writeFile(QString::fromStdString(path("huge.mpg")), content));

    SessionLog log;
    const SessionLog::Scope scope(log);
    for (const char *name : {"late.mpg", "huge.mpg"}) {
        InputContextPtr input;
        QCOMPARE(openLocalInput(path(name), {}, input), 0);
        QCOMPARE(input->nb_streams, 0U);
        QVERIFY(readStreamInformation(*input) >= 0);
        QCOMPARE(input->nb_streams, 1U);
        const bool isHuge = name == std::string_view("huge.mpg");
        QCOMPARE(input->streams[0]->codecpar->width, isHuge ? 0 : 160);
        QCOMPARE(input->streams[0]->codecpar->format,
                 static_cast<int>(isHuge ? AV_PIX_FMT_NONE : AV_PIX_FMT_YUV420P));
    }
}

QTEST_GUILESS_MAIN(TestSafeInput)
#include "tst_safe_input.moc"
