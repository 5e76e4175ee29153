// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/runner_support.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <barrier>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

// Sessions as such: how they end, what they leave, and that they do not meet.
class TestRunnerSession : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void runsAndProbesAtOnceKeepTheirLogsApart();
    void conversionsAtOnceGiveTheFileThatOneGives();
    void aSessionCancelledBeforeItsRunDoesNothing();
    void cancellingALargeConversionEndsItSoon();
    void reportsHowFarItIs();
    void leavesNothingWhenTheDiskIsFull_data();
    void leavesNothingWhenTheDiskIsFull();
    void leavesNothingOfAFormatWithManyFiles_data();
    void leavesNothingOfAFormatWithManyFiles();
    void noInputIsWrittenOver_data();
    void noInputIsWrittenOver();
    void neverRemovesWhatIsNoRegularFile();
    void readsNumbersWithAPointUnderACommaLocale();
    void obeysTheLevelOfItsLog();
    void doesNotGrowWithTheNumberOfRuns();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

namespace {

constexpr int atOnce = 4;

QStringList copying(const QString &input, const QString &output)
{
    return {u"-y"_s, u"-i"_s, input, u"-c"_s, u"copy"_s, output};
}

/// Whether texts name the files of one of the runs at once, and of no other.
bool isOnlyOf(int number, const std::string &texts)
{
    for (int other = 0; other < atOnce; ++other) {
        const bool isNamed = texts.find("own" + std::to_string(other)) != std::string::npos;
        if (isNamed != (other == number)) {
            return false;
        }
    }
    return true;
}

/// Files of this process cannot grow over a size while it lives; writing more fails.
class FileSizeLimit {
public:
    explicit FileSizeLimit(qint64 bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_previous);
        const rlimit limit{static_cast<rlim_t>(bytes), m_previous.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_previous); }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_previous = {};
};

}

void TestRunnerSession::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QVERIFY(makeMedia(u"-f lavfi -i testsrc2=d=4:s=320x180:r=25 -f lavfi -i sine=d=4"
                      " -c:v libx264 -preset ultrafast -c:a aac av.mp4 av.ts"_s,
                      m_folder.path()));
}

void TestRunnerSession::runsAndProbesAtOnceKeepTheirLogsApart()
{
    constexpr int rounds = 10;
    std::array<std::string, atOnce> faults;
    std::barrier start(atOnce);
    std::vector<std::thread> threads;
    for (int i = 0; i < atOnce; ++i) {
        const QString own = path(u"own%1"_s.arg(i));
        QVERIFY(QFile::copy(path(u"av.ts"_s), own + u".ts"_s));
        QVERIFY(writeFile(own + u".bad.mp4"_s, QByteArray("no film ").repeated(100 + i)));
        threads.emplace_back([i, own, &faults, &start] {
            for (int round = 0; round < rounds; ++round) {
                start.arrive_and_wait();
                const bool isBad = (round + i) % 2 == 0;
                const ToolAnswer run = runInProcess(
                    copying(own + (isBad ? u".bad.mp4"_s : u".ts"_s), own + u".mp4"_s));
                const CommandResult probed = mediaTools().probe(argumentsOf({own + u".bad.mp4"_s}));
                const std::string logs = run.log.toStdString() + probed.log;
                if (run.code != (isBad ? 1 : 0) || probed.code != 1 || !isOnlyOf(i, logs)) {
                    faults[std::size_t(i)] = logs;
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (const std::string &fault : faults) {
        QVERIFY2(fault.empty(), fault.c_str());
    }
}

// Which thread of a run is faster must not show in the file; several runs at once make that vary.
void TestRunnerSession::conversionsAtOnceGiveTheFileThatOneGives()
{
    const auto convert = [this](const QString &output) {
        return runInProcess(QStringList{u"-y"_s, u"-i"_s, path(u"av.mp4"_s)} +
                            wordsOf("-vf scale=160:-2 -preset ultrafast -c:a libopus -fflags "
                                    "+bitexact") +
                            QStringList{path(output)})
            .code;
    };
    QCOMPARE(convert(u"alone.mkv"_s), 0);
    std::array<int, 3> codes{};
    std::vector<std::thread> runners;
    for (std::size_t i = 0; i < codes.size(); ++i) {
        runners.emplace_back([&, i] { codes[i] = convert(u"once%1.mkv"_s.arg(i)); });
    }
    for (std::thread &runner : runners) {
        runner.join();
    }
    const QByteArray expected = contentOf(path(u"alone.mkv"_s));
    QVERIFY(!expected.isEmpty());
    for (std::size_t i = 0; i < codes.size(); ++i) {
        QCOMPARE(codes[i], 0);
        QVERIFY(contentOf(path(u"once%1.mkv"_s.arg(i))) == expected);
    }
}

void TestRunnerSession::aSessionCancelledBeforeItsRunDoesNothing()
{
    const auto session = mediaTools().makeSession();
    session->cancel();
    const QString output = path(u"never.mp4"_s);
    QCOMPARE(session->run(argumentsOf(copying(path(u"av.mp4"_s), output))), 255);
    QVERIFY(!QFile::exists(output));
}

void TestRunnerSession::cancellingALargeConversionEndsItSoon()
{
    // One key frame again and again: a clip that takes long to convert and not to make.
    for (const QString &command :
         {u"-f lavfi -i testsrc2=s=3840x2160:r=10 -frames:v 1 -c:v mjpeg one.mkv"_s,
          u"-stream_loop 600 -i one.mkv -c copy large.mkv"_s}) {
        QVERIFY(makeMedia(command, m_folder.path()));
    }
    const QString output = path(u"converted.mp4"_s);
    BackgroundRun run(playbackCommand(path(u"large.mkv"_s), output));
    QVERIFY(run.hasBegun());
    const double position = run.positionSeconds();
    QCOMPARE(run.cancel(), 255);
    // Of a minute's film, and as told by how far it is, not by the clock of a busy machine.
    QVERIFY2(run.positionSeconds() < position + 6,
             qPrintable(QString::number(run.positionSeconds())));
    QVERIFY(!QFile::exists(output));
}

void TestRunnerSession::reportsHowFarItIs()
{
    const QString output = path(u"progress.mp4"_s);
    const auto session = mediaTools().makeSession();
    QCOMPARE(session->progress().bytesWritten, 0);
    QCOMPARE(session->run(argumentsOf(copying(path(u"av.ts"_s), output))), 0);
    QVERIFY(session->progress().positionSeconds > 3.8);
    QVERIFY(session->progress().positionSeconds < 4.2);
    QVERIFY(session->progress().bytesWritten > QFile(output).size() * 9 / 10);
}

void TestRunnerSession::leavesNothingWhenTheDiskIsFull_data()
{
    QTest::addColumn<double>("share");
    QTest::addColumn<bool>("isRearranged");
    QTest::newRow("at the beginning") << 0.0 << false;
    QTest::newRow("in the middle") << 0.5 << false;
    QTest::newRow("in the index at the end") << 0.999 << false;
    QTest::newRow("while the index moves to the front") << 0.999 << true;
}

void TestRunnerSession::leavesNothingWhenTheDiskIsFull()
{
    QFETCH(const double, share);
    QFETCH(const bool, isRearranged);
    const QString output = path(u"full.mp4"_s);
    QStringList command = copying(path(u"av.mp4"_s), output);
    if (isRearranged) {
        command.insert(command.size() - 1, u"-movflags"_s);
        command.insert(command.size() - 1, u"+faststart"_s);
    }
    QCOMPARE(runInProcess(command).code, 0);
    const qint64 whole = QFile(output).size();
    ToolAnswer answer;
    {
        const FileSizeLimit limit(static_cast<qint64>(static_cast<double>(whole) * share));
        answer = runInProcess(command);
    }
    QCOMPARE(answer.code, 1);
    QVERIFY2(lastLineOf(answer.log).endsWith(": File too large"), answer.log.constData());
    QVERIFY(!QFile::exists(output));
}

void TestRunnerSession::leavesNothingOfAFormatWithManyFiles_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("files");
    QTest::newRow("pictures") << u"-frames:v 3"_s << u"%03d.png"_s << 3;
    QTest::newRow("the planes of a picture") << u"-frames:v 1"_s << u"a.y"_s << 3;
    QTest::newRow("segments and their list")
        << u"-c copy -t 1 -f hls -hls_flags temp_file"_s << u"list.m3u8"_s << 2;
    QTest::newRow("segments alone") << u"-c copy -t 1 -f segment"_s << u"%d.ts"_s << 1;
}

void TestRunnerSession::leavesNothingOfAFormatWithManyFiles()
{
    QFETCH(const QString, options);
    QFETCH(const QString, name);
    const QTemporaryDir folder;
    const QDir here(folder.path());
    const QString whole = here.filePath(u"whole.mp4"_s);
    const QStringList command = QStringList{u"-y"_s, u"-i"_s, path(u"av.mp4"_s), u"-an"_s} +
                                wordsOf(qPrintable(options)) +
                                QStringList{here.filePath(name), u"-c"_s, u"copy"_s, whole};
    QCOMPARE(runInProcess(command).code, 0);
    QTEST(int(here.entryList(QDir::Files).size()) - 1, "files");
    ToolAnswer answer;
    {
        const FileSizeLimit limit(QFile(whole).size() * 9 / 10);
        answer = runInProcess(command);
    }
    QCOMPARE(answer.code, 1);
    QCOMPARE(here.entryList(QDir::Files), QStringList());
}

// "@" stands for a folder with the pictures 1 to 3, two streams, and a script that names these.
void TestRunnerSession::noInputIsWrittenOver_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("output");
    QTest::addColumn<bool>("isRefused");
    const auto row = [](const char *why, const char *input, const char *output, bool isRefused) {
        QTest::newRow(why) << QString::fromLatin1(input) << QString::fromLatin1(output)
                           << isRefused;
    };
    row("a file", "-i @a.ts", "-c copy @a.ts", true);
    row("a picture by a series", "-i @1.png", "-s 32x32 @%d.png", true);
    row("a series by itself", "-f image2 -i @%d.png", "-s 32x32 @%d.png", true);
    row("from its middle on", "-f image2 -i @%d.png", "-s 32x32 -start_number 2 @%d.png", true);
    row("by its last picture", "-f image2 -start_number 2 -i @%d.png",
        "-s 32x32 -start_number 3 @%01d.png", true);
    row("one of a series", "-f image2 -i file:@%d.png", "-s 32x32 -update 1 @2.png", true);
    row("pictures that fit", "-f image2 -pattern_type glob -i @[12].png", "-s 32x32 @%d.png", true);
    row("behind a series", "-f image2 -i @%d.png", "-s 32x32 -start_number 4 @%d.png", false);
    row("a picture before a series", "-f image2 -start_number 2 -i @%d.png",
        "-s 32x32 -frames:v 1 @%d.png", false);
    row("pictures of another kind", "-f image2 -i @%d.png", "-s 32x32 @%d.jpg", false);
    row("a part of a script", "-f concat -safe 0 -i @parts.ffconcat", "-c copy @b.ts", true);
    row("a script", "-f concat -safe 0 -i @parts.ffconcat", "-c copy -f mpegts @parts.ffconcat",
        true);
    row("beside a script's parts", "-f concat -safe 0 -i @parts.ffconcat", "-c copy @c.ts", false);
    row("a part of a chain", "-i concat:@a.ts|@b.ts", "-c copy @b.ts", true);
}

void TestRunnerSession::noInputIsWrittenOver()
{
    QFETCH(const QString, input);
    QFETCH(const QString, output);
    QFETCH(const bool, isRefused);
    const QTemporaryDir folder;
    const QDir here(folder.path());
    QVERIFY(makeMedia(wordsOf("-f lavfi -i testsrc2=s=64x48 -frames:v 3") +
                      QStringList{here.filePath(u"%d.png"_s)}));
    for (const QString &name : {u"a.ts"_s, u"b.ts"_s}) {
        QVERIFY(QFile::copy(path(u"av.ts"_s), here.filePath(name)));
    }
    QVERIFY(writeFile(here.filePath(u"parts.ffconcat"_s),
                      "ffconcat version 1.0\n file a.ts\nduration 4\nfile 'b.ts'\n"));
    const QStringList names = here.entryList(QDir::Files);
    const auto contents = [&] {
        QByteArrayList all;
        for (const QString &name : names) {
            all << contentOf(here.filePath(name));
        }
        return all;
    };
    const QByteArrayList before = contents();
    QString command = u"-y "_s + input + u' ' + output;
    command.replace(u'@', folder.path() + u'/');
    const ToolAnswer answer = runInProcess(command.split(u' '));
    if (isRefused) {
        QCOMPARE(answer.code, 1);
        QCOMPARE(lastLineOf(answer.log), "FFmpeg cannot edit existing files in-place.");
        QVERIFY(answer.log.contains(" same as Input #0 - exiting"));
        QCOMPARE(here.entryList(QDir::Files), names);
    } else {
        QVERIFY2(answer.code == 0, answer.log.constData());
    }
    // The one picture that may be written in an allowed row is no input there.
    QCOMPARE(contents().mid(isRefused ? 0 : 1), before.mid(isRefused ? 0 : 1));
}

void TestRunnerSession::neverRemovesWhatIsNoRegularFile()
{
    const QString pipe = path(u"pipe.ts"_s);
    QCOMPARE(mkfifo(pipe.toUtf8().constData(), 0600), 0);
    // The header is refused when the pipe is open already.
    std::thread reader([&pipe] { static_cast<void>(contentOf(pipe)); });
    const ToolAnswer answer = runInProcess(
        {u"-y"_s, u"-i"_s, path(u"av.mp4"_s), u"-c"_s, u"copy"_s, u"-f"_s, u"mp4"_s, pipe});
    reader.join();
    QCOMPARE(answer.code, 1);
    struct stat now = {};
    QCOMPARE(lstat(pipe.toUtf8().constData(), &now), 0);
    QVERIFY(S_ISFIFO(now.st_mode));
}

void TestRunnerSession::readsNumbersWithAPointUnderACommaLocale()
{
    const auto made = [this] {
        const QString output = path(u"numbers.mp4"_s);
        const ToolAnswer answer =
            runInProcess(wordsOf("-y -ss 0.5 -i") + QStringList{path(u"av.mp4"_s)} +
                         wordsOf("-vf setpts=PTS*1.5,scale=iw*0.5:-2 -t 1.5 -preset ultrafast") +
                         QStringList{output});
        return answer.code == 0 ? contentOf(output) : answer.log;
    };
    const QByteArray expected = made();
    const CommaLocale comma;
    QVERIFY(CommaLocale::isInForce());
    const QByteArray content = made();
    QVERIFY(CommaLocale::isInForce());
    QVERIFY(content.contains("moov") && content == expected);
}

void TestRunnerSession::obeysTheLevelOfItsLog()
{
    const QStringList command = copying(path(u"av.mp4"_s), path(u"quiet.mp4"_s));
    const auto logAt = [&command](const QString &level) {
        return runInProcess(QStringList{u"-hide_banner"_s, u"-loglevel"_s, level} + command).log;
    };
    QVERIFY(logAt(u"quiet"_s).isEmpty());
    QVERIFY(logAt(u"error"_s).isEmpty());
    const QByteArray usual = logAt(u"repeat+info"_s);
    QVERIFY(usual.startsWith("Input #0, mov,mp4"));
    QVERIFY(usual.contains("Stream #0:0 -> #0:0 (copy)\n"));
    QVERIFY(logAt(u"verbose"_s).size() >= usual.size());
}

void TestRunnerSession::doesNotGrowWithTheNumberOfRuns()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("a sanitizer keeps freed memory; the address sanitizer counts the leaks itself");
#endif
    const QStringList command = copying(path(u"av.mp4"_s), path(u"many.mp4"_s));
    const auto runOften = [&command](int count) {
        for (int i = 0; i < count; ++i) {
            static_cast<void>(runInProcess(command));
        }
        return residentBytes();
    };
    const qint64 before = runOften(20);
    const qint64 grown = runOften(60) - before;
    QVERIFY2(grown < qint64{10} * 1024 * 1024, qPrintable(QString::number(grown)));
}

QTEST_GUILESS_MAIN(TestRunnerSession)
#include "tst_runner_session.moc"
